#include "Tests/Support/OrvTestProject.h"

#include "OrvCore/Layers/OrvLayerStack.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Network/OrvSnOperationNode.h"
#include "OrvCore/Shelf/OrvMaterialDescription.h"
#include "OrvCore/Shelf/OrvMaterialPaintManager.h"
#include "OrvCore/Shelf/OrvProceduralFile.h"
#include "OrvCore/Shelf/OrvShelfDirectories.h"
#include "OrvCore/Shelf/OrvShelfThumbnailer.h"
#include "OrvCore/Shelf/OrvSnCustomProceduralNode.h"

#include <QtCore/QMimeData>
#include <QtCore/QUrl>
#include <QtTest/QtTest>
#include <QtWidgets/QUndoStack>

namespace {

/// Test texts quote with ' what files quote with ".
QByteArray json(const char* pText)
{
    return QByteArray(pText).replace('\'', '"');
}

/// A red that is laid over blue by an amount, both of which are shown as parameters.
const QByteArray TwoColors = json(
    "{\n"
    "    'orvproc': 1, 'name': 'Two Colors', 'type': 'color',\n"
    "    'parameters': [\n"
    "        {'name': 'share', 'label': 'Share', 'type': 'real', 'range': [0, 10], 'default': 5,\n"
    "         'binds': [{'to': 'mixed.amount', 'factor': -0.1, 'offset': 1}]},\n"
    "        {'name': 'over', 'type': 'color', 'default': [1, 0, 0], 'binds': ['red.value']},\n"
    "        {'name': 'mode', 'type': 'enumeration', 'choices': ['Normal', 'Add'], 'default': 'Normal',\n"
    "         'binds': ['mixed.blend']}\n"
    "    ],\n"
    "    'nodes': [\n"
    "        {'id': 'red', 'operation': 'Procedural/Basic/Solid Color', 'values': {'value': [1, 0, 0]}},\n"
    "        {'id': 'blue', 'operation': 'gegl:color', 'values': {'value': [0, 0, 1]}},\n"
    "        {'id': 'mixed', 'blend': 'Normal', 'base': 'blue', 'over': 'red'}\n"
    "    ],\n"
    "    'output': 'mixed'\n"
    "}\n");

/// The text with one piece replaced.
QByteArray changed(const char* pPiece, const char* pBy)
{
    QByteArray Text = TwoColors;
    return Text.replace(json(pPiece), json(pBy));
}

OrvMaterialPaintManager& shelf()
{
    return OrvMaterialPaintManager::instance();
}

} // namespace

/// Files of the shelf, and the layers and masks that are made of them.
class TstShelf : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_pDirectory = std::make_unique<QTemporaryDir>();
        qputenv("XDG_DATA_HOME", QFile::encodeName(m_pDirectory->filePath("data")));
        m_File = write("Two Colors.orvproc", TwoColors);
    }
    void cleanup() { m_pDirectory.reset(); }

    void aLayerShowsWhatItsParametersSay()
    {
        OrvTestProject Project;
        OrvLayer* pLayer = create(Project.channel());
        QVERIFY(pLayer && pLayer->isCustomProceduralLayer() && !pLayer->isProceduralLayer());
        QCOMPARE(pLayer->name(), QStringLiteral("Two Colors"));
        OrvSnBaseNode* pNode = pLayer->customProceduralNode();
        QVERIFY(Project.same(Project.pixel(), {0.5f, 0.0f, 0.5f}));
        QVERIFY(Project.same(Project.pixel(QPoint(40, 1)), OrvColor::clear())); // the channel ends here
        pNode->setUserAttributeValue("share", 10.0);
        QVERIFY(Project.same(Project.pixel(), {0.0f, 0.0f, 1.0f}));
        pNode->setUserAttributeValue("share", 0.0);
        pNode->setUserAttributeValue("over", QVariant::fromValue(OrvColor(0.0f, 1.0f, 0.0f)));
        QVERIFY(Project.same(Project.pixel(), {0.0f, 1.0f, 0.0f}));
        pNode->setUserAttributeValue("mode", "Add");
        QVERIFY(Project.same(Project.pixel(), {0.0f, 1.0f, 1.0f}));
        for (int Step = 0; Step < 3; ++Step)
            Project.undo();
        QVERIFY(Project.same(Project.pixel(), {0.0f, 0.0f, 1.0f}));
        pNode->removeUserAttribute("share");
        QVERIFY(Project.same(Project.pixel(), {0.5f, 0.0f, 0.5f}));
        pNode->setEnabledAsBool(false);
        QVERIFY(Project.same(Project.pixel(), OrvColor::clear()));
        QVERIFY(pLayer->cost() > 0.0);
    }

    void makingOneIsOneUndoStep()
    {
        OrvTestProject Project;
        Project.paint("Base", OrvColor::white());
        OrvUndoManager::instance().clear();
        const QByteArray Before = Project.document();
        create(Project.channel());
        const QByteArray After = Project.document();
        QCOMPARE(OrvUndoManager::instance().stack()->count(), 1);
        for (int Round = 0; Round < 2; ++Round) {
            Project.undo();
            QCOMPARE(Project.document(), Before);
            QVERIFY(Project.same(Project.pixel(), OrvColor::white()));
            Project.redo();
            QCOMPARE(Project.document(), After);
            QVERIFY(Project.same(Project.pixel(), {0.5f, 0.0f, 0.5f}));
        }
    }

    void itStandsWhereItWasDropped()
    {
        OrvTestProject Project;
        Project.paint("Base");
        OrvLayer* pInner = Project.paint("Inner");
        OrvLayer* pGroup = Project.group("Group", {pInner});
        const OrvLayerStack* pInside = OrvLayerStreamUtils::groupStack(pGroup);
        QVERIFY(create(Project.channel(), Project.layer("Base")->blendNode()));
        QVERIFY(create(Project.channel(), pInner->blendNode()));
        QVERIFY(create(Project.channel(), pInside->bottomNode()));
        QVERIFY(create(Project.channel(), Project.channel()->bottomNode()));
        QCOMPARE(Project.tree(),
            QStringLiteral("Group[Two Colors 2 Inner Two Colors 3] Two Colors Base Two Colors 4"));
    }

    void itIsKeptInTheProjectWithoutTheFile()
    {
        const QString Folder = m_pDirectory->filePath("Kept.orvi");
        QString Error;
        {
            OrvTestProject Project;
            create(Project.channel())->customProceduralNode()->setUserAttributeValue("share", 2.0);
            QVERIFY(
                Project.layer("Two Colors")->customProceduralNode()->userAttribute("share").value() == 2.0);
            QVERIFY2(OrvProjectManager::instance().saveProjectAs(Folder, Error), qPrintable(Error));
            QVERIFY(QFile::remove(m_File));
            QVERIFY2(OrvProjectManager::instance().openProject(Folder, Error), qPrintable(Error));
            const OrvShaderInput* pChannel = OrvTestProject::channel("Diffuse");
            OrvLayer* pLayer = OrvTestProject::layer("Two Colors", pChannel);
            QVERIFY(pLayer && pLayer->isCustomProceduralLayer());
            QVERIFY(Project.same(Project.pixel(pChannel->node()), {0.8f, 0.0f, 0.2f}));
            pLayer->customProceduralNode()->setUserAttributeValue("share", 10.0);
            QVERIFY(Project.same(Project.pixel(pChannel->node()), {0.0f, 0.0f, 1.0f}));
        }
    }

    void damagedFilesAreRefusedInWords_data()
    {
        QTest::addColumn<QByteArray>("Text");
        QTest::addColumn<QString>("Reason");
        const auto row = [](const char* pName, const QByteArray& Text, const char* pReason) {
            QTest::newRow(pName) << Text << QString::fromLatin1(pReason);
        };
        row("cut off", TwoColors.left(300), "Line ");
        row("a list", "[1]", "list");
        row("empty", "", "Line 1");
        row("no version", changed("'orvproc': 1, ", ""), "orvproc");
        row("newer version", changed("'orvproc': 1", "'orvproc': 2"), "newer");
        row("no name", changed("'name': 'Two Colors',", ""), "name");
        row("unknown type", changed("'type': 'color',\n    'p", "'type': 'tint',\n    'p"), "tint");
        row("misspelt entry", changed("'values': {'value': [0", "'valuse': {'value': [0"), "valuse");
        row("unknown operation", changed("gegl:color", "gegl:colour"), "gegl:colour");
        row("value of another type", changed("{'value': [0, 0, 1]}", "{'value': 3}"), "color");
        row("unknown parameter", changed("{'value': [0, 0, 1]}", "{'vale': [0, 0, 1]}"), "vale");
        row("beyond the limits", changed("'base': 'blue'", "'base': 'blue', 'amount': 7"), "amount");
        row("two nodes of one id", changed("'id': 'blue'", "'id': 'red'"), "red");
        row("no such source", changed("'over': 'red'}", "'over': 'green'}"), "green");
        row("reads itself", changed("'base': 'blue'", "'base': 'mixed'"), "circle");
        row("no output", changed("'output': 'mixed'", "'output': 'mix'"), "mix");
        row("bound to nothing", changed("mixed.amount", "mixed.mount"), "mixed.mount");
        row("bound twice", changed("'mixed.blend'", "'mixed.blend', 'mixed.blend'"), "twice");
        row("bound to another type", changed("['red.value']", "['mixed.amount']"), "mixed.amount");
        row("driven beyond the limits", changed("'factor': -0.1", "'factor': 1"), "mixed.amount");
        row("no default", changed("'default': 5,", ""), "default");
        row("default beyond the range", changed("'default': 5", "'default': 50"), "default");
        row("no range", changed("'range': [0, 10], ", ""), "range");
        row("reserved name", changed("'name': 'share'", "'name': '_Extent'"), "_Extent");
        row("included file is missing",
            changed("'operation': 'gegl:color', 'values': {'value': [0, 0, 1]}",
                "'procedural': 'Nowhere.orvproc'"),
            "Nowhere.orvproc");
    }

    void damagedFilesAreRefusedInWords()
    {
        QFETCH(QByteArray, Text);
        QFETCH(QString, Reason);
        OrvTestProject Project;
        const QByteArray Before = Project.document();
        const QString File = write("Damaged.orvproc", Text);
        QString Error;
        QVERIFY(!Project.channel()->createCustomProceduralLayer(File, nullptr, 30, Error));
        QVERIFY2(Error.startsWith("Damaged.orvproc: ") && Error.contains(Reason), qPrintable(Error));
        QCOMPARE(Project.document(), Before);
        QVERIFY(!OrvUndoManager::instance().stack()->canUndo());
    }

    void whatIsNoTextIsRefusedToo()
    {
        OrvTestProject Project;
        QString Error;
        for (const QString& Path : {m_pDirectory->path() + "/None.orvproc", QStringLiteral("No/Such Entry"),
                 m_pDirectory->path(), write("Huge.orvproc", QByteArray(3 << 20, ' ')), QString()}) {
            Error.clear();
            QVERIFY(!Project.channel()->createCustomProceduralLayer(Path, nullptr, 30, Error));
            QVERIFY(!Error.isEmpty());
        }
        OrvLayer* pLayer = create(Project.channel());
        const QByteArray Before = Project.document();
        // A damaged text in a project: the node keeps it, and yields nothing.
        pLayer->customProceduralNode()->setUserAttributeValue(
            OrvSnCustomProceduralNode::ProceduralAttribute, QStringLiteral("{\"orvproc\""));
        QVERIFY(Project.same(Project.pixel(), OrvColor::clear()));
        Project.undo();
        QCOMPARE(Project.document(), Before);
        QVERIFY(Project.same(Project.pixel(), {0.5f, 0.0f, 0.5f}));
    }

    void proceduralsIncludeOthersButNotThemselves()
    {
        const auto including = [](const QByteArray& File) {
            return json("{'orvproc': 1, 'name': 'Outer', 'type': 'color', 'parameters': [{'name': 'less',"
                        "'type': 'real', 'range': [0, 10], 'default': 10, 'binds': ['in.share']}], 'nodes': ["
                        "{'id': 'in', 'procedural': 'FILE', 'values': {'over': '#ffffff'}}], 'output': 'in'}")
                .replace("FILE", File);
        };
        OrvTestProject Project;
        const QString Outer = write("Outer.orvproc", including("Two Colors.orvproc"));
        QString Error;
        OrvLayer* pLayer = Project.channel()->createCustomProceduralLayer(Outer, nullptr, 30, Error);
        QVERIFY2(pLayer, qPrintable(Error));
        QVERIFY(Project.same(Project.pixel(), {0.0f, 0.0f, 1.0f}));
        pLayer->customProceduralNode()->setUserAttributeValue("less", 0.0);
        QVERIFY(Project.same(Project.pixel(), OrvColor::white()));
        QVERIFY(Project.same(Project.pixel(QPoint(40, 1)), OrvColor::clear()));

        const QByteArray Before = Project.document();
        write("First.orvproc", including("Second.orvproc"));
        write("Second.orvproc", including("First.orvproc"));
        for (const QString& File :
            {write("Self.orvproc", including("Self.orvproc")), m_pDirectory->filePath("First.orvproc")}) {
            QVERIFY(!Project.channel()->createCustomProceduralLayer(File, nullptr, 30, Error));
            QVERIFY2(Error.contains("include itself"), qPrintable(Error));
        }
        QCOMPARE(Project.document(), Before);
    }

    void inclusionsThatMultiplyEnd()
    {
        QByteArray Name = "Two Colors.orvproc";
        for (int Level = 0; Level < 15; ++Level) {
            const QByteArray Next = QByteArray::number(Level) + ".orvproc";
            write(QString::fromLatin1(Next),
                json("{'orvproc': 1, 'name': 'N', 'type': 'color', 'nodes': [{'id': 'a', 'procedural': "
                     "'FILE'},"
                     "{'id': 'b', 'procedural': 'FILE'}, {'id': 'c', 'blend': 'Add', 'base': 'a', 'over': "
                     "'b'}],"
                     "'output': 'c'}")
                    .replace("FILE", Name));
            Name = Next;
        }
        QByteArray Text;
        QString Error;
        QVERIFY(!OrvProceduralFile::read(m_pDirectory->filePath(QString::fromLatin1(Name)), Text, Error));
        QVERIFY2(Error.contains("4 MiB"), qPrintable(Error));
    }

    void missingGeometryChannelsAreTold()
    {
        OrvTestProject Project;
        OrvLayer* pLayer = create(Project.channel());
        QVERIFY(!pLayer->hasMissingGeoChannels());
        QSignalSpy Missing(pLayer, &OrvLayer::missingGeoChannelsRefreshed);
        QSignalSpy Type(pLayer, &OrvLayer::proceduralTypeChanged);
        const QByteArray Needy
            = changed("'type': 'color',\n    'p", "'type': 'mask', 'channels': ['Curvature'],\n    'p");
        pLayer->customProceduralNode()->setUserAttributeValue(
            OrvSnCustomProceduralNode::ProceduralAttribute, QString::fromUtf8(Needy));
        QVERIFY(pLayer->hasMissingGeoChannels());
        QCOMPARE(Missing.last().first().toString(), QStringLiteral("Curvature"));
        QCOMPARE(Type.last().first().toInt(), int(OrvProceduralDescription::Mask));
        Project.undo();
        QVERIFY(!pLayer->hasMissingGeoChannels());
        QCOMPARE(Missing.last().first().toString(), QString());
    }

    void aProceduralCanBeAMask()
    {
        OrvTestProject Project;
        OrvLayer* pLayer = Project.paint("Masked", OrvColor::white());
        const QByteArray Before = Project.document();
        QString Error;
        QVERIFY2(pLayer->addMaskCustomProcedural(m_File, Error), qPrintable(Error));
        QVERIFY(pLayer->hasMask() && pLayer->hasMaskCustomProcedural() && !pLayer->hasMaskImageSet());
        QVERIFY(!pLayer->hasMaskStack());
        const float Masked = Project.pixel().alpha();
        QVERIFY(Masked > 0.05f && Masked < 0.95f);
        pLayer->maskCustomProceduralNode()->setUserAttributeValue(
            "over", QVariant::fromValue(OrvColor::white()));
        QVERIFY(Project.pixel().alpha() > Masked + 0.1f);
        QVERIFY(!pLayer->addMaskCustomProcedural(m_File, Error) && !Error.isEmpty());
        Project.undo();
        Project.undo();
        QCOMPARE(Project.document(), Before);
    }

    void duplicatesAndOtherSizesKeepWorking()
    {
        OrvTestProject Project;
        OrvLayer* pLayer = create(Project.channel());
        Project.select({pLayer});
        Project.channel()->duplicateLayers();
        OrvLayer* pCopy = Project.channel()->layerList().first();
        QVERIFY(pCopy != pLayer && pCopy->isCustomProceduralLayer());
        pCopy->customProceduralNode()->setUserAttributeValue("share", 10.0);
        QVERIFY(Project.same(Project.pixel(), {0.0f, 0.0f, 1.0f}));
        pCopy->setVisible(false);
        QVERIFY(Project.same(Project.pixel(), {0.5f, 0.0f, 0.5f}));
        pLayer->customProceduralNode()->setUserAttributeValue(
            OrvSnOperationNode::ExtentAttribute, QSize(8, 8));
        QVERIFY(Project.same(Project.pixel(QPoint(20, 1)), {0.5f, 0.0f, 0.5f}));
        QVERIFY(Project.same(Project.pixel(), {0.5f, 0.0f, 0.5f}));
    }

    void theShelfFollowsItsFiles()
    {
        const QString User = OrvShelfDirectories::user();
        QVERIFY(User.startsWith(m_pDirectory->path()));
        shelf().reload();
        QSignalSpy Changed(&shelf(), &OrvMaterialPaintManager::shelfChanged);
        QVERIFY(QDir().mkpath(User + "/My Own"));
        QVERIFY(QFile::copy(m_File, User + "/My Own/Stripes.orvproc"));
        QTRY_VERIFY(!Changed.isEmpty());
        const auto Procedurals = shelf().customProceduralsFromShelf();
        QCOMPARE(Procedurals.value("My Own/Stripes").first, QStringLiteral("Two Colors"));
        OrvTestProject Project;
        QString Error;
        QVERIFY(Project.channel()->createCustomProceduralLayer("My Own/Stripes", nullptr, 30, Error));
        // A damaged file is on the shelf, but not in menus.
        Changed.clear();
        QFile File(User + "/My Own/Stripes.orvproc");
        QVERIFY(File.open(QIODevice::WriteOnly));
        File.write("{");
        File.close();
        QTRY_VERIFY(!Changed.isEmpty());
        QVERIFY(!shelf().customProceduralsFromShelf().contains("My Own/Stripes"));
        QVERIFY(shelf().entry("My Own/Stripes") && !shelf().entry("My Own/Stripes")->Error.isEmpty());
    }

    void whatIsShippedIsInOrder()
    {
        shelf().reload();
        int Procedurals = 0;
        for (const OrvShelfEntry& Entry : shelf().entries()) {
            QVERIFY2(Entry.Error.isEmpty(), qPrintable(Entry.Error));
            QVERIFY2(!Entry.MissesGeoChannels, qPrintable(Entry.Key));
            if (Entry.What != OrvShelfEntry::CustomProcedural)
                continue;
            ++Procedurals;
            QString Error;
            const QImage Picture = OrvShelfThumbnailer::render(Entry.Text, Error);
            QSet<QRgb> Colors;
            for (int Place = 8; Place < Picture.width(); Place += 8) {
                Colors.insert(Picture.pixel(Place, Place));
                QCOMPARE(qAlpha(Picture.pixel(Place, Place)), 255);
            }
            QVERIFY2(Colors.size() >= 4, qPrintable(Entry.Key));
        }
        QVERIFY(Procedurals >= 8);
        QVERIFY(!shelf().materialsFromShelf().isEmpty());
    }

    void thumbnailsComeFromAnotherThread()
    {
        OrvShelfThumbnailer Thumbnailer;
        QSignalSpy Ready(&Thumbnailer, &OrvShelfThumbnailer::ready);
        Thumbnailer.request("A", TwoColors);
        Thumbnailer.request("Damaged", "{");
        Thumbnailer.request("B", changed("[1, 0, 0]", "[0, 1, 0]"));
        QVERIFY(!Thumbnailer.isIdle());
        QTRY_VERIFY(Thumbnailer.isIdle());
        QCOMPARE(Ready.size(), 2);
        QCOMPARE(Ready[0][0].toString(), QStringLiteral("A"));
        QCOMPARE(
            Ready[0][1].value<QImage>().pixelColor(9, 9).red(), 188); // half of red, as a screen shows it
        QCOMPARE(Ready[1][1].value<QImage>().pixelColor(9, 9).green(), 188);
        Thumbnailer.request("Dropped", TwoColors);
        QCoreApplication::processEvents(); // destroyed while its thread may be at work
    }

    void materialsNameTheirStreams()
    {
        const QByteArray Good
            = json("{'orvmat': 1, 'name': 'Brick', 'streams': {"
                   "'Base Color': {'procedural': 'Two Colors.orvproc', 'values': {'share': 3}},"
                   "'Normal': {'image': 'normal.png'}, 'Roughness': {'value': 0.25}, 'Tint': {'color': "
                   "'#ff0000'}}}");
        write("normal.png", "pixels");
        OrvMaterialDescription Material;
        QString Error;
        QVERIFY2(
            OrvMaterialDescription::read(write("Brick.orvmat", Good), Material, Error), qPrintable(Error));
        QCOMPARE(Material.Streams.size(), 4);
        QCOMPARE(Material.Streams[0].ProceduralValues.value("share").toDouble(), 3.0);
        QCOMPARE(Material.Streams[1].ImagePath, m_pDirectory->filePath("normal.png"));
        QCOMPARE(Material.Streams[2].Fill, OrvColor(0.25f, 0.25f, 0.25f));
        QCOMPARE(Material.Streams[3].Fill, OrvColor(1.0f, 0.0f, 0.0f));
        const QVector<QPair<QByteArray, QByteArray>> Faults{{"normal.png", "none.png"},
            {"\"share\": 3", "\"share\": 30"}, {"\"share\"", "\"part\""}, {"0.25", "\"rough\""},
            {"#ff0000", "red"}, {"{\"color\": \"#ff0000\"}", "{}"}, {"Two Colors", "Three Colors"},
            {"\"orvmat\": 1", "\"orvmat\": 9"}};
        for (const auto& Fault : Faults) {
            QByteArray Bad = Good;
            Bad.replace(Fault.first, Fault.second);
            Error.clear();
            QVERIFY2(
                !OrvMaterialDescription::read(write("Brick.orvmat", Bad), Material, Error), Fault.second);
            QVERIFY2(Error.startsWith("Brick.orvmat: "), qPrintable(Error));
        }
    }

    void draggedFilesAreKnownByName()
    {
        const auto with = [](const QString& Path) {
            auto pData = std::make_unique<QMimeData>();
            pData->setUrls({QUrl::fromLocalFile(Path)});
            return pData;
        };
        QVERIFY(shelf().isMimeDataCustomProceduralFile(with("/a/Rust.OrvProc").get()));
        QVERIFY(!shelf().isMimeDataCustomProceduralFile(with("/a/Rust.orvmat").get()));
        QVERIFY(shelf().isMimeDataMaterialFile(with("/a/Rust.orvmat").get()));
        QVERIFY(!shelf().isMimeDataMaterialFile(with("/a/orvmat.png").get()));
        QCOMPARE(
            shelf().pathListFromMimeData(with("/a/Rust 1.orvproc").get()), QStringList{"/a/Rust 1.orvproc"});
        const QMimeData Empty;
        QVERIFY(!shelf().isMimeDataCustomProceduralFile(&Empty) && !shelf().isMimeDataMaterialFile(nullptr));
    }

private:
    QString write(const QString& Name, const QByteArray& Text)
    {
        const QString Path = m_pDirectory->filePath(Name);
        QFile File(Path);
        if (File.open(QIODevice::WriteOnly))
            File.write(Text);
        return Path;
    }

    OrvLayer* create(OrvLayerStack* pStack, OrvSnBaseNode* pTarget = nullptr)
    {
        QString Error;
        OrvLayer* pLayer = pStack->createCustomProceduralLayer(m_File, pTarget, 30, Error);
        if (!pLayer)
            qWarning("%s", qPrintable(Error));
        return pLayer;
    }

    std::unique_ptr<QTemporaryDir> m_pDirectory;
    QString m_File;
};

QTEST_MAIN(TstShelf)
#include "TstShelf.moc"
