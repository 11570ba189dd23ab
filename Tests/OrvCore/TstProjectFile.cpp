#include "Tests/Support/OrvTestProject.h"

#include "OrvCore/Layers/OrvChainEditing.h"
#include "OrvCore/Network/OrvSnPassNode.h"
#include "OrvCore/Object/OrvObjectReferenceManager.h"
#include "OrvCore/Project/OrvProjectFile.h"

#include "OrvDdi/Files/OrvBlockStore.h"

#include <QtCore/QDirIterator>
#include <QtCore/QLockFile>
#include <QtCore/QProcess>
#include <QtCore/QRandomGenerator>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QUndoStack>

#include <functional>

namespace {

OrvProjectManager& projects()
{
    return OrvProjectManager::instance();
}

QJsonObject readJson(const QString& Path)
{
    QFile File(Path);
    return File.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(File.readAll()).object() : QJsonObject();
}

void writeFile(const QString& Path, const QByteArray& Bytes)
{
    QFile File(Path);
    if (File.open(QIODevice::WriteOnly))
        File.write(Bytes);
}

/// The nodes of the first object of a manifest, changed by a function.
void editNodes(const QString& Manifest, const std::function<void(QJsonArray&)>& Change)
{
    QJsonObject Json = readJson(Manifest);
    QJsonArray Entities = Json.value("entities").toArray();
    QJsonObject Entity = Entities[0].toObject();
    QJsonArray Nodes = Entity.value("nodes").toArray();
    Change(Nodes);
    Entity.insert("nodes", Nodes);
    Entities[0] = Entity;
    Json.insert("entities", Entities);
    writeFile(Manifest, QJsonDocument(Json).toJson());
}

int indexOfType(const QJsonArray& Nodes, const QString& Type, int Skip = 0)
{
    for (int Index = 0; Index < Nodes.size(); ++Index) {
        if (Nodes[Index].toObject().value("type") == Type && Skip-- == 0)
            return Index;
    }
    return -1;
}

void change(QJsonArray& Nodes, int Index, const QString& Key, const QJsonValue& Value)
{
    QJsonObject Node = Nodes[Index].toObject();
    Node.insert(Key, Value);
    Nodes[Index] = Node;
}

QString mark(int Number)
{
    return QStringLiteral("Number %1").arg(Number);
}

/// Saves without end, each time another picture whose number stands in a name too; killed from outside. It
/// rests for some milliseconds each time.
int saveForEver(const QString& Path, int Rest)
{
    QString Error;
    if (!projects().openProject(Path, Error))
        return 1;
    OrvShaderInput* pChannel = OrvTestProject::channel("Diffuse");
    OrvImageSet* pImages = pChannel->layerList().last()->paintImageSet();
    for (int Number = 1;; ++Number) {
        pChannel->layerList().last()->setName(mark(Number));
        const QRect Whole = pImages->extent();
        std::vector<float> Pixels(std::size_t(Whole.width()) * Whole.height() * 4, float(Number));
        pImages->buffer().write(Whole, pImages->format(), Pixels.data());
        OrvTestProject::fill(pImages, QRect(Number % 64, 0, 1, 1), OrvColor(-1, -1, -1, -1)); // blocks differ
        pImages->pixelsWritten(Whole);
        if (!projects().saveProject(Error))
            return 2;
        puts("saved");
        fflush(stdout);
        if (Rest > 0)
            QTest::qSleep(Rest);
    }
}

} // namespace

/// Projects on disk: whole after a round trip, refused by name when damaged, never half written.
class TstProjectFile : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_pFolder = std::make_unique<QTemporaryDir>();
        m_Path = m_pFolder->filePath("Hero.orvi");
        m_Manifest = m_Path + "/" + OrvProjectFile::ManifestName;
    }
    void cleanup() { projects().closeProject(); }

    void savedProjectsComeBackWhole()
    {
        QByteArray Saved;
        QString Identity;
        OrvColor Seen;
        {
            OrvTestProject Project(QSize(600, 40));
            fillWithEverything(Project);
            Project.layer("Layer")->makeCurrent(false, true);
            projects().currentProject()->addGeoEntity("Body")->setUdimTiles({1001, 1012});
            QVERIFY(projects().isModified());
            qRegisterMetaType<OrvProject*>();
            QSignalSpy Done(&projects(), &OrvProjectManager::onProjectSaved);
            QVERIFY2(projects().saveProjectAs(m_Path, m_Error), qPrintable(m_Error));
            QCOMPARE(Done.size(), 1);
            QVERIFY(!projects().isModified());
            Saved = Project.document();
            Identity = Project.layer("Layer")->blendNode()->uuidString();
            Seen = Project.pixel({599, 20});
        }
        QVERIFY(!OrvObjectReferenceManager::instance().getPointer(Identity));
        QStringList Signals;
        const QMetaObject::Connection Current
            = connect(&projects(), &OrvProjectManager::onMakeProjectCurrent, [&](OrvProject* pProject) {
                  Signals.append(pProject && OrvObjectReferenceManager::instance().getPointer(Identity)
                          ? "current"
                          : "none");
              });
        const QMetaObject::Connection Completed = connect(&projects(),
            &OrvProjectManager::projectOpenAbsolutelyCompleted, [&] { Signals.append("completed"); });
        QVERIFY2(projects().openProject(m_Path, m_Error), qPrintable(m_Error));
        disconnect(Current);
        disconnect(Completed);
        QCOMPARE(Signals, QStringList({"current", "completed"}));
        QCOMPARE(projects().currentProject()->name(), QString("Hero"));
        QCOMPARE(OrvTestProject::document(), Saved);
        OrvShaderInput* pChannel = OrvTestProject::channel("Diffuse");
        QVERIFY(OrvTestProject::same(OrvTestProject::pixel(pChannel->node(), {599, 20}), Seen, 0.001f));
        QCOMPARE(OrvShaderInputManager::instance().currentShaderInput(), pChannel);
        QCOMPARE(OrvLayerManager::instance().currentLayer()->blendNode()->uuidString(), Identity);
        QVERIFY(OrvLayerManager::instance().currentLayer()->isSelected());
        QCOMPARE(projects().currentProject()->geoEntities().last()->udimTiles(), QVector<int>({1001, 1012}));
        QVERIFY(!projects().isModified() && !OrvUndoManager::instance().stack()->canUndo());

        // Unchanged pixels are not written again.
        QSet<QString> Before = files();
        pChannel->layerList().first()->setName("Renamed");
        QVERIFY(projects().saveProject(m_Error));
        QCOMPARE(files(), Before);
        OrvTestProject::fill(
            OrvTestProject::layer("Layer", pChannel)->paintImageSet(), QRect(0, 0, 9, 9), OrvColor::white());
        QVERIFY(projects().saveProject(m_Error));
        QSet<QString> New = files();
        QCOMPARE(New.subtract(Before).size(), 1); // of two blocks, one
        QCOMPARE(files().size(), Before.size()); // and the one whose place it takes is gone
    }

    void blocksThatNobodyNeedsGo()
    {
        OrvTestProject Project(QSize(640, 64));
        OrvImageSet* pImages = Project.paint("Layer", OrvColor(0, 0, 0))->paintImageSet();
        const auto paint
            = [&](float Value) { Project.fill(pImages, QRect(3, 3, 20, 20), OrvColor(Value, 0, 0)); };
        paint(1);
        QVERIFY(projects().saveProjectAs(m_Path, m_Error));
        const QSet<QString> First = blocks();
        QCOMPARE(First, namedBlocks());
        // Not while a save fails, be it cancelled or at its last step.
        paint(2);
        QVERIFY(!projects().saveProjectAs(m_Path, m_Error, [](int, int) { return false; }));
        QVERIFY(blocks().contains(First));
        QVERIFY(QFile::rename(m_Manifest, m_Manifest + ".aside") && QDir().mkpath(m_Manifest));
        QVERIFY(!projects().saveProject(m_Error));
        QVERIFY(blocks().contains(First));
        QVERIFY(QDir().rmdir(m_Manifest) && QFile::rename(m_Manifest + ".aside", m_Manifest));
        // Not what a copy of the manifest names, be it of an unknown version; nor what is no block.
        const QString Foreign = m_Path + "/blocks/notes.txt";
        writeFile(Foreign, "mine");
        for (const QString& Name : {m_Path + "/before.json", m_Manifest + ".bak", m_Manifest + "~"}) {
            QVERIFY(QFile::copy(m_Manifest, Name));
            const QSet<QString> Kept = namedBlocks();
            paint(float(Name.size()));
            QVERIFY(projects().saveProject(m_Error));
            QVERIFY(blocks().contains(Kept) && blocks().contains(namedBlocks()));
            QVERIFY(QFile::remove(Name));
        }
        QVERIFY(projects().saveProject(m_Error));
        QCOMPARE(blocks(), namedBlocks());
        QVERIFY(!blocks().intersects(First) && QFile::exists(Foreign));
        // What the history holds is written anew when it is needed again.
        Project.channel()->deleteLayers(Project.channel()->layerList());
        QVERIFY(projects().saveProject(m_Error));
        QVERIFY(blocks().isEmpty());
        OrvTestProject::undo();
        QVERIFY(projects().saveProject(m_Error));
        QVERIFY(!blocks().isEmpty());
        const QByteArray Saved = Project.document();
        QVERIFY2(projects().openProject(m_Path, m_Error), qPrintable(m_Error));
        QCOMPARE(OrvTestProject::document(), Saved);
    }

    void twoProgramsDoNotSaveAtOnce()
    {
        OrvTestProject Project(QSize(64, 64));
        QVERIFY(projects().saveProjectAs(m_Path, m_Error));
        const QString LockPath = m_Path + "/" + OrvProjectFile::LockName;
        QVERIFY(!QFile::exists(LockPath));
        {
            QLockFile Other(LockPath);
            QVERIFY(Other.tryLock());
            QVERIFY(!projects().saveProject(m_Error));
            QVERIFY2(m_Error.contains(OrvProjectFile::LockName), qPrintable(m_Error));
        }
        QVERIFY2(projects().saveProject(m_Error), qPrintable(m_Error));

        // Two of them on one project, while a third one reads.
        {
            OrvTestProject Painted(QSize(640, 64));
            Painted.paint(mark(0), OrvColor(0, 0, 0, 0));
            QVERIFY(projects().saveProjectAs(m_Path, m_Error));
        }
        QProcess Savers[2];
        for (QProcess& Saver : Savers) {
            Saver.start(QCoreApplication::applicationFilePath(), {"--save-for-ever", m_Path, "60"});
            QVERIFY(Saver.waitForReadyRead(30000));
        }
        for (int Round = 0; Round < 20; ++Round) {
            QVERIFY2(projects().openProject(m_Path, m_Error), qPrintable(m_Error));
            QTest::qSleep(15);
        }
        for (QProcess& Saver : Savers) {
            QCOMPARE(Saver.state(), QProcess::Running); // else saving failed
            Saver.kill();
            QVERIFY(Saver.waitForFinished());
        }
        QVERIFY2(projects().openProject(m_Path, m_Error), qPrintable(m_Error));
        QVERIFY2(projects().saveProject(m_Error), qPrintable(m_Error)); // the locks of the dead do not count
        QCOMPARE(blocks(), namedBlocks());
    }

    void damagedProjectsAreRefusedByName_data()
    {
        QTest::addColumn<int>("Which");
        for (int Which = 0; Which < damages().size(); ++Which)
            QTest::newRow(damages()[Which].Name) << Which;
    }

    void damagedProjectsAreRefusedByName()
    {
        QFETCH(int, Which);
        {
            OrvTestProject Project(QSize(64, 64));
            fillWithEverything(Project);
            QVERIFY(projects().saveProjectAs(m_Path, m_Error));
        }
        damages()[Which].Do(*this);
        const QSet<QString> Files = files();
        OrvTestProject Open;
        Open.paint("Open", OrvColor(1, 0, 0));
        const QByteArray Before = Open.document();
        QSignalSpy Closed(&projects(), &OrvProjectManager::projectClosed);
        QVERIFY(!projects().openProject(m_Path, m_Error));
        QVERIFY2(m_Error.contains(damages()[Which].Expected), qPrintable(m_Error));
        QCOMPARE(Closed.size(), 0);
        QCOMPARE(Open.document(), Before);
        QVERIFY(Open.same(Open.pixel(), OrvColor(1, 0, 0)));
        QCOMPARE(files(), Files);
    }

    void openingCanBeCancelled()
    {
        {
            OrvTestProject Project(QSize(64, 64));
            fillWithEverything(Project);
            QVERIFY(!projects().saveProjectAs(m_Path, m_Error, [](int, int) { return false; }));
            QVERIFY(m_Error.contains("cancelled") && !QFile::exists(m_Path));
            QVERIFY(projects().saveProjectAs(m_Path, m_Error));
        }
        int Steps = 0, Total = 0;
        QVERIFY(!projects().openProject(m_Path, m_Error, [&](int Done, int All) {
            Steps = Done;
            Total = All;
            return Done < 2;
        }));
        QCOMPARE(Steps, 2);
        QVERIFY(Total > 2 && m_Error.contains("cancelled") && !projects().currentProject());
    }

    void nodesOfUnknownTypeAreKept()
    {
        {
            OrvTestProject Project;
            Project.paint("Layer", OrvColor(1, 0, 0));
            QVERIFY(projects().saveProjectAs(m_Path, m_Error));
        }
        QJsonObject Strange;
        editNodes(m_Manifest, [&](QJsonArray& Nodes) {
            const int Merge = indexOfType(Nodes, "Merge");
            QJsonObject Inputs = Nodes[Merge].toObject().value("inputs").toObject();
            Strange = QJsonObject{{"id", "strange-1"}, {"type", "Hologram"}, {"name", "From the future"},
                {"depth of field", QJsonArray{1, "two"}},
                {"inputs", QJsonObject{{"Source", Inputs.value("Over")}}}};
            Inputs.insert("Over", "strange-1");
            change(Nodes, Merge, "inputs", Inputs);
            Nodes.append(Strange);
        });
        const QJsonObject Before = readJson(m_Manifest);
        QVERIFY2(projects().openProject(m_Path, m_Error), qPrintable(m_Error));
        OrvLayer* pLayer = OrvTestProject::channel("Diffuse")->layerList().first();
        QVERIFY(!pLayer->isPaintableLayer() && pLayer->contentNode()->typeLabel().contains("Hologram"));
        QVERIFY(OrvTestProject::same(
            OrvTestProject::pixel(OrvTestProject::channel("Diffuse")->node()), OrvColor(1, 0, 0)));
        QVERIFY(projects().saveProject(m_Error));
        QCOMPARE(readJson(m_Manifest), Before);
        // What fed it may go; the project can still be opened.
        OrvSnBaseNode* pPaint = pLayer->contentNode()->inputNode("Source");
        OrvTestProject::network()->removeNode(pPaint);
        QVERIFY(projects().saveProject(m_Error));
        QVERIFY2(projects().openProject(m_Path, m_Error), qPrintable(m_Error));
    }

    void placesThatCannotBeWrittenAreNamed()
    {
        OrvTestProject Project(QSize(64, 64));
        QVERIFY(!projects().saveProject(m_Error)); // has no place yet
        OrvLayer* pLayer = Project.paint("Layer", OrvColor(1, 0, 0));
        Project.fill(pLayer->paintImageSet(), QRect(0, 0, 9, 9), OrvColor::white());
        const QString File = m_pFolder->filePath("file");
        writeFile(File, "occupied");
        QVERIFY(!projects().saveProjectAs(File, m_Error) && m_Error.contains(File));
        QVERIFY(!projects().saveProjectAs(File + "/Hero.orvi", m_Error) && m_Error.contains(File));
        QDir().mkpath(m_Manifest); // a folder where the manifest goes
        QVERIFY(!projects().saveProjectAs(m_Path, m_Error) && m_Error.contains(m_Manifest));
        QDir(m_Path).removeRecursively();
        QDir().mkpath(m_Path);
        writeFile(m_Path + "/blocks", "occupied");
        QVERIFY(!projects().saveProjectAs(m_Path, m_Error) && m_Error.contains("blocks"));
        QVERIFY(!QFile::exists(m_Manifest));
        QVERIFY(projects().isModified() && projects().currentProject()->path().isEmpty());
        // The trouble gone, it can be saved.
        QVERIFY(QFile::remove(m_Path + "/blocks"));
        QVERIFY2(projects().saveProjectAs(m_Path, m_Error), qPrintable(m_Error));
    }

    void aLockThatNobodyHoldsGivesWay()
    {
        OrvTestProject Project(QSize(64, 64));
        QVERIFY(projects().saveProjectAs(m_Path, m_Error));
        writeFile(m_Path + "/project.lock", "");
        QVERIFY2(projects().saveProject(m_Error), qPrintable(m_Error));
        QVERIFY(!entries().contains("project.lock"));
    }

    void aKillWhileSavingLeavesAWholeProject()
    {
        {
            OrvTestProject Project(QSize(640, 64));
            Project.paint(mark(0), OrvColor(0, 0, 0, 0));
            QVERIFY(projects().saveProjectAs(m_Path, m_Error));
        }
        int Highest = 0;
        for (int Round = 0; Round < 12; ++Round) {
            QProcess Saver;
            Saver.start(QCoreApplication::applicationFilePath(), {"--save-for-ever", m_Path});
            QVERIFY(Saver.waitForReadyRead(30000)); // the first save is done
            QTest::qSleep(1 + QRandomGenerator::global()->bounded(60));
            Saver.kill();
            QVERIFY(Saver.waitForFinished());
            QVERIFY2(projects().openProject(m_Path, m_Error), qPrintable(m_Error));
            const OrvLayer* pLayer = OrvTestProject::channel("Diffuse")->layerList().last();
            const float Number = OrvTestProject::pixel(pLayer->paintNode(), {630, 60}).red();
            QCOMPARE(pLayer->name(), mark(int(Number)));
            Highest = qMax(Highest, int(Number));
            // Nothing is missing, and what the interrupted save left over goes with the next.
            QVERIFY(blocks().contains(namedBlocks()));
            QVERIFY(projects().saveProject(m_Error)); // and can be worked on
            QCOMPARE(blocks(), namedBlocks());
            QCOMPARE(entries(), QStringList({"blocks", "project.json"}));
            projects().closeProject();
        }
        QVERIFY(Highest > 0);
    }

private:
    QSet<QString> files() const
    {
        QSet<QString> Found;
        for (QDirIterator File(m_Path, QDir::Files, QDirIterator::Subdirectories); File.hasNext();)
            Found.insert(File.next());
        return Found;
    }

    QStringList entries() const
    {
        return QDir(m_Path).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
    }

    /// Blocks, and what interrupted writers left of them.
    QSet<QString> blocks() const
    {
        QSet<QString> Found;
        for (const QString& File : files()) {
            if (File.contains("/blocks/") && !File.endsWith(".txt"))
                Found.insert(File);
        }
        return Found;
    }
    QSet<QString> namedBlocks() const
    {
        QFile File(m_Manifest);
        QSet<QString> Named;
        if (File.open(QIODevice::ReadOnly)) {
            const OrvBlockStore Store(m_Path + "/blocks");
            for (const QByteArray& Key : OrvBlockStore::keysIn(File.readAll()))
                Named.insert(Store.blockPath(Key));
        }
        return Named;
    }
    static void fillWithEverything(OrvTestProject& Project)
    {
        OrvShaderInput* pBump = Project.addChannel("Bump", QSize(16, 16), GL_UNSIGNED_BYTE, true);
        Project.paint("Bumps", OrvColor(0.5f, 0.5f, 0.5f), pBump);
        OrvLayer* pLayer = Project.paint("Layer", OrvColor(0.25f, 0.5f, 0.75f));
        const QRect Extent = pLayer->paintImageSet()->extent();
        Project.fill(pLayer->paintImageSet(), QRect(3, 3, 5, 7), OrvColor(2.0f, -1.0f, 0.0f));
        Project.fill(pLayer->paintImageSet(), QRect(Extent.right() - 3, 3, 2, 2), OrvColor::white());
        pLayer->addMaskImageSet();
        pLayer->convertMaskToMaskStack();
        pLayer->addLayerAdjustmentLayerFromKey("Filter/Blur/Box Blur");
        pLayer->setColor(Qt::red);
        OrvLayer* pInvert = Project.channel()->createAdjustmentLayer("Filter/Adjust/Invert Linear", 0);
        pInvert->setVisible(false);
        OrvLayer* pGroup = Project.group("Group \"quoted\" \u00e4\u03a9", {pLayer, pInvert});
        pGroup->setLocked(true);
        Project.channel()
            ->createProceduralLayer("Procedural/Pattern/Checkerboard", 0, nullptr)
            ->blendNode()
            ->setUserAttributeValue(OrvMergeAttributes::BlendMode, "Soft Light");
        OrvLayer* pGraph = Project.channel()->createGraphLayer(0);
        OrvShaderNetwork* pNested = pGraph->graphNode()->nestedNetwork();
        OrvSnBaseNode* pInside = OrvChainEditing::addNode<OrvSnBaseNode>(
            pNested, std::make_unique<OrvSnPassNode>(), "Inside", nullptr, 0, 0);
        pNested->nodes().first()->connectInput("Input", pInside);
        OrvLayerStreamUtils::createLayerNodeAfter(
            Project.channel()->topNode(), pBump->node(), QString(), QString(), true);
        Project.channel()->shareLayer(Project.layer("Bump"), 0);
    }

    struct Damage {
        const char* Name;
        QString Expected; ///< in the message
        std::function<void(const TstProjectFile&)> Do;
    };
    static const QVector<Damage>& damages()
    {
        const auto manifest = [](const std::function<QByteArray(QByteArray)>& Change) {
            return [Change](const TstProjectFile& Test) {
                QFile File(Test.m_Manifest);
                QVERIFY(File.open(QIODevice::ReadOnly));
                const QByteArray Bytes = File.readAll();
                File.close();
                writeFile(Test.m_Manifest, Change(Bytes));
            };
        };
        const auto key = [](const QString& Key, const QJsonValue& Value) {
            return [=](const TstProjectFile& Test) {
                QJsonObject Json = readJson(Test.m_Manifest);
                Json.insert(Key, Value);
                writeFile(Test.m_Manifest, QJsonDocument(Json).toJson());
            };
        };
        const auto nodes = [](const std::function<void(QJsonArray&)>& Change) {
            return [Change](const TstProjectFile& Test) { editNodes(Test.m_Manifest, Change); };
        };
        const auto blocks = [](const std::function<void(const QString&)>& Change) {
            return [Change](const TstProjectFile& Test) {
                for (const QString& File : Test.files()) {
                    if (File.contains("/blocks/"))
                        Change(File);
                }
            };
        };
        static const QVector<Damage> All{
            {"no project", "project.json",
                [](const TstProjectFile& Test) { QFile::remove(Test.m_Manifest); }},
            {"empty", "damaged", manifest([](const QByteArray&) { return QByteArray(); })},
            {"cut short", "damaged",
                manifest([](const QByteArray& Bytes) { return Bytes.left(Bytes.size() / 2); })},
            {"no JSON", "damaged", manifest([](const QByteArray&) { return QByteArray("<xml/>"); })},
            {"something else", "no Orvi project", key("format", "shopping list")},
            {"newer", "format 99", key("version", 99)},
            {"no version", "another version", key("version", "one")},
            {"no object", "no object", key("entities", QJsonArray())},
            {"missing block", "'Layer'", blocks([](const QString& File) { QFile::remove(File); })},
            {"block cut short", "'Layer'", blocks([](const QString& File) { QFile::resize(File, 30); })},
            {"block of other contents", "'Layer'", blocks([](const QString& File) {
                 QFile Block(File);
                 QVERIFY(Block.open(QIODevice::ReadWrite));
                 Block.seek(Block.size() - 2);
                 Block.write("xx");
             })},
            {"cycle", "lies on a cycle", nodes([](QJsonArray& Nodes) {
                 const int First = indexOfType(Nodes, "Merge", 1), Second = indexOfType(Nodes, "Merge", 2);
                 change(Nodes, First, "inputs", QJsonObject{{"Base", Nodes[Second].toObject().value("id")}});
                 change(Nodes, Second, "inputs", QJsonObject{{"Base", Nodes[First].toObject().value("id")}});
             })},
            {"dangling connection", "'nowhere'", nodes([](QJsonArray& Nodes) {
                 change(Nodes, indexOfType(Nodes, "Merge"), "inputs", QJsonObject{{"Over", "nowhere"}});
             })},
            {"two of one identity", "Two nodes", nodes([](QJsonArray& Nodes) { Nodes.append(Nodes[0]); })},
            {"node without type", "'Lost'", nodes([](QJsonArray& Nodes) {
                 Nodes.append(QJsonObject{{"id", "x"}, {"name", "Lost"}});
             })},
            {"damage inside a graph", "'nowhere'", nodes([](QJsonArray& Nodes) {
                 const int Graph = indexOfType(Nodes, "Graph");
                 QJsonArray Inside = Nodes[Graph].toObject().value("nodes").toArray();
                 change(Inside, 0, "inputs", QJsonObject{{"Input", "nowhere"}});
                 change(Nodes, Graph, "nodes", Inside);
             })},
            {"images without size", "size or depth", nodes([](QJsonArray& Nodes) {
                 const int Images = indexOfType(Nodes, "ImageSet");
                 change(Nodes, Images, "images", QJsonObject{{"size", QJsonArray{-4, 4}}, {"depth", 5126}});
             })},
        };
        return All;
    }

    std::unique_ptr<QTemporaryDir> m_pFolder;
    QString m_Path, m_Manifest, m_Error;
};

int main(int ArgumentCount, char** pArguments)
{
    QApplication Application(ArgumentCount, pArguments);
    const QStringList Arguments = Application.arguments();
    if (Arguments.value(1) == "--save-for-ever")
        return saveForEver(Arguments.value(2), Arguments.value(3).toInt());
    TstProjectFile Test;
    return QTest::qExec(&Test, ArgumentCount, pArguments);
}

#include "TstProjectFile.moc"
