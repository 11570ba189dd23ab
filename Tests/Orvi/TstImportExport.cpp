#include "Tests/Orvi/OrvTestAnswers.h"
#include "Tests/Orvi/OrvTestDocument.h"

#include "Orvi/OrvChannelExport.h"
#include "Orvi/OrvExportCommands.h"
#include "Orvi/OrvExportDialog.h"
#include "Orvi/OrvExportNames.h"
#include "Orvi/OrvExportRun.h"
#include "Orvi/OrvImageImport.h"
#include "Orvi/OrvImportExport.h"
#include "Orvi/OrvLayerImageExport.h"
#include "Orvi/OrvProjectCommands.h"

#include "OrvDdi/Files/OrvImageFiles.h"
#include "OrvCore/Network/OrvSnNames.h"
#include "OrvCoreModules/DragAndDrop/OrvDragAndDropManager.h"
#include "OrvCoreModules/Window/OrvApplication.h"
#include "OrvCoreModules/Window/OrvStatusManager.h"

#include <QtCore/QMimeData>
#include <QtCore/QUrl>
#include <QtGui/QPainter>
#include <QtTest/QtTest>

namespace {

const QSize ImageSize(48, 32);

/// A picture whose every pixel differs from its neighbours.
QImage pattern(const QSize& Size, QImage::Format Format = QImage::Format_RGBA8888)
{
    QImage Image(Size, Format);
    for (int Y = 0; Y < Size.height(); ++Y) {
        for (int X = 0; X < Size.width(); ++X)
            Image.setPixelColor(
                X, Y, QColor(X * 5 % 256, Y * 7 % 256, (X + Y) * 3 % 256, 255 - (X * Y) % 97));
    }
    return Image;
}

QImage filled(const QColor& Color, QImage::Format Format = QImage::Format_RGB888)
{
    QImage Image(ImageSize, Format);
    Image.fill(Color);
    return Image;
}

} // namespace

/// Image files in and out, good ones and bad ones.
class TstImportExport : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { OrvApplication::appInstance().setPopupsAllowed(false); }
    void init()
    {
        m_pNetwork = m_Document.newProject();
        m_Error.clear();
    }
    void cleanup() { OrvProjectManager::instance().closeProject(); }

    void anImageBecomesAChannelAndComesOutAsItWas()
    {
        const QImage Image = pattern(ImageSize);
        OrvShaderInput* pChannel = import(save(QStringLiteral("rusty hull.png"), Image));
        QVERIFY2(pChannel, qPrintable(m_Error));
        QCOMPARE(pChannel->name(), QStringLiteral("rusty hull"));
        QCOMPARE(pChannel->imageSetSize(), ImageSize);
        QVERIFY(pChannel->imageSetDepth() == GL_UNSIGNED_BYTE && !pChannel->isScalar());
        QCOMPARE(pixels(baseOf(pChannel)), Image);

        const QImage Out(exported(pChannel, "out.png"));
        QVERIFY(areAlike(Out.convertToFormat(QImage::Format_RGBA8888), Image));

        // One undo step, there and back.
        QCOMPARE(OrvTestDocument::historyLength(), 1);
        OrvUndoManager::instance().undo();
        QVERIFY(channels().isEmpty());
        OrvUndoManager::instance().redo();
        QCOMPARE(channels().size(), 1);
        QCOMPARE(pixels(baseOf(channels().first())), Image);
        // A second file of that name gets a name of its own.
        QVERIFY(import(m_Document.filePath(QStringLiteral("rusty hull.png"))));
        QVERIFY(channels()[0]->name() != channels()[1]->name());
    }

    void numbersAreNotTakenForColors_data()
    {
        QTest::addColumn<QString>("Name");
        QTest::addColumn<bool>("Gray");
        QTest::newRow("gray") << QStringLiteral("anything") << true;
        QTest::newRow("normals") << QStringLiteral("hull_Normal") << false;
    }
    void numbersAreNotTakenForColors()
    {
        QFETCH(QString, Name);
        QFETCH(bool, Gray);
        const QImage Image
            = filled(QColor(128, 128, 128), Gray ? QImage::Format_Grayscale8 : QImage::Format_RGB888);
        OrvShaderInput* pChannel = import(save(Name + QStringLiteral(".png"), Image));
        QVERIFY2(pChannel, qPrintable(m_Error));
        QCOMPARE(pChannel->isScalar(), Gray);
        // 128 of 255 is the number 0.502, not light of 0.216.
        const float Value = OrvTestDocument::scalarAt(baseOf(pChannel)->paintImageSet(), {5, 5});
        QVERIFY2(std::abs(Value - 128.0f / 255.0f) < 0.002f, qPrintable(QString::number(double(Value))));
        QCOMPARE(QImage(exported(pChannel, "numbers.png")).pixelColor(5, 5).red(), 128);
    }

    void floatsKeepWhatNoByteHolds()
    {
        OrvShaderInput* pChannel = m_Document.newChannel(ImageSize, GL_HALF_FLOAT);
        m_pNetwork = pChannel->network();
        m_Document.newPaintLayer(pChannel, OrvColor(4.0f, 0.25f, 0.0f));
        for (const char* pFile : {"hdr.exr", "hdr.tif"}) {
            OrvShaderInput* pBack = import(exported(pChannel, pFile));
            QVERIFY2(pBack, qPrintable(m_Error));
            QVERIFY(int(pBack->imageSetDepth()) != GL_UNSIGNED_BYTE);
            float Rgba[4] = {};
            baseOf(pBack)->paintImageSet()->buffer().read(
                QRect(3, 3, 1, 1), {GL_FLOAT, OrvPixelFormat::Rgba, OrvPixelFormat::Linear}, Rgba);
            QVERIFY(
                std::abs(Rgba[0] - 4.0f) < 0.01f && std::abs(Rgba[1] - 0.25f) < 0.001f && Rgba[3] == 1.0f);
        }
    }

    void tilesAreOneImage()
    {
        for (const int Tile : {1001, 1002, 1012})
            save(QStringLiteral("grid.%1.png").arg(Tile), filled(QColor(Tile % 100 * 20, 40, 0)));
        // Naming one brings its brothers along.
        const QList<OrvUdimSet> Sets
            = OrvImageImport::imageSets({m_Document.filePath(QStringLiteral("grid.1002.png"))});
        QCOMPARE(Sets.size(), 1);
        OrvImageImport::takeTiles(m_pNetwork->geoEntity(), Sets);
        OrvShaderInput* pChannel = OrvImageImport::importChannel(m_pNetwork, Sets.first(), {}, m_Error);
        QVERIFY2(pChannel, qPrintable(m_Error));
        QCOMPARE(pChannel->name(), QStringLiteral("grid"));
        QCOMPARE(pChannel->layout().tiles(), QVector<int>({1001, 1002, 1012}));
        const QImage Pixels = pixels(baseOf(pChannel));
        for (const int Tile : {1001, 1002, 1012})
            QCOMPARE(Pixels.pixelColor(pChannel->layout().tileRect(Tile).center()).red(), Tile % 100 * 20);

        exported(pChannel, "o_<UDIM>.png");
        QCOMPARE(QImage(m_Document.filePath(QStringLiteral("o_1012.png"))).pixelColor(1, 1).red(), 12 * 20);
        QVERIFY(!QFile::exists(m_Document.filePath(QStringLiteral("o_1011.png"))));
    }

    void tilesThatTheObjectLacksAreAdded()
    {
        OrvShaderInput* pChannel = m_Document.newChannel(ImageSize);
        m_pNetwork = pChannel->network();
        OrvLayer* pPainted = m_Document.newPaintLayer(pChannel);
        const quint32 Red = 0xff0000ff;
        pPainted->paintImageSet()->buffer().write(
            QRect(5, 6, 1, 1), {GL_UNSIGNED_BYTE, OrvPixelFormat::Rgba, OrvPixelFormat::Srgb}, &Red);
        pPainted->paintImageSet()->pixelsWritten(QRect(5, 6, 1, 1));
        OrvLayer* pFilled = m_Document.newPaintLayer(pChannel, OrvColor(0.0f, 1.0f, 0.0f));
        const int Steps = OrvTestDocument::historyLength();
        save(QStringLiteral("more.1001.png"), filled(Qt::blue));
        OrvLayer* pLayer = importLayer(pChannel, save(QStringLiteral("more.1012.png"), filled(Qt::blue)));
        QVERIFY2(pLayer, qPrintable(m_Error));

        const QVector<int> Tiles{1001, 1012};
        QCOMPARE(pChannel->layout().tiles(), Tiles);
        QCOMPARE(m_pNetwork->geoEntity()->udimTiles(), Tiles);
        const QRect Old = pChannel->layout().tileRect(1001), New = pChannel->layout().tileRect(1012);
        QCOMPARE(Old.topLeft(), QPoint(0, ImageSize.height()));
        QCOMPARE(pixels(pLayer).pixelColor(New.center()), QColor(Qt::blue));
        const QImage Painted = pixels(pPainted);
        QCOMPARE(Painted.pixelColor(Old.topLeft() + QPoint(5, 6)), QColor(Qt::red));
        QCOMPARE(Painted.pixelColor(New.topLeft() + QPoint(5, 6)).alpha(), 0);
        QCOMPARE(pixels(pFilled).pixelColor(New.center()), QColor(Qt::green));

        QCOMPARE(OrvTestDocument::historyLength(), Steps + 1);
        OrvUndoManager::instance().undo();
        QCOMPARE(pChannel->layout().tiles(), QVector<int>{1001});
        QCOMPARE(m_pNetwork->geoEntity()->udimTiles(), QVector<int>{1001});
        QCOMPARE(pixels(pPainted).pixelColor(5, 6), QColor(Qt::red));
        OrvUndoManager::instance().redo();
        QCOMPARE(pixels(pPainted), Painted);
        OrvUndoManager::instance().undo();

        // A file that cannot be read adds nothing.
        QVERIFY(!importLayer(pChannel, save(QStringLiteral("bad.1013.png"), "bad")));
        QCOMPARE(pChannel->layout().tiles(), QVector<int>{1001});
    }

    void layersAreScaledToTheirChannel()
    {
        OrvShaderInput* pChannel = m_Document.newChannel(QSize(64, 64));
        QImage Halves(7, 16, QImage::Format_RGBA8888);
        Halves.fill(Qt::transparent);
        QPainter(&Halves).fillRect(0, 0, 7, 8, QColor(200, 100, 50));
        OrvLayer* pLayer = importLayer(pChannel, save(QStringLiteral("halves.png"), Halves));
        QVERIFY2(pLayer, qPrintable(m_Error));
        QCOMPARE(pLayer->name(), QStringLiteral("halves"));
        QVERIFY(pLayer->isCurrent());
        const QImage Pixels = pixels(pLayer);
        QCOMPARE(Pixels.pixelColor(0, 0), QColor(200, 100, 50));
        QCOMPARE(Pixels.pixelColor(63, 20), QColor(200, 100, 50));
        QCOMPARE(Pixels.pixelColor(30, 60).alpha(), 0);
        // Between the halves colour fades by alpha and does not darken.
        for (int Y = 0; Y < 64; ++Y) {
            const QColor Color = Pixels.pixelColor(30, Y);
            QVERIFY(Color.alpha() < 12 || std::abs(Color.red() - 200) <= 4);
        }
        // Shrinking averages: a fine checker becomes an even gray, in linear light.
        QImage Checker(256, 256, QImage::Format_RGB888);
        for (int Y = 0; Y < 256; ++Y) {
            for (int X = 0; X < 256; ++X)
                Checker.setPixelColor(X, Y, (X + Y) % 2 ? Qt::white : Qt::black);
        }
        OrvLayer* pGray = importLayer(pChannel, save(QStringLiteral("checker.png"), Checker));
        QVERIFY(std::abs(pixels(pGray).pixelColor(31, 33).red() - 188) <= 2);
    }

    void badFilesAreNamedAndLeaveNothing_data()
    {
        QTest::addColumn<QString>("Name");
        QTest::addColumn<QByteArray>("Contents");
        QTest::newRow("missing") << QStringLiteral("missing.png") << QByteArray();
        QTest::newRow("empty") << QStringLiteral("empty.exr") << QByteArray("");
        QTest::newRow("text") << QStringLiteral("text.png") << QByteArray("This is no image.");
        QTest::newRow("cut off") << QStringLiteral("cut.png") << QByteArray();
        QTest::newRow("unknown type") << QStringLiteral("unknown.xyz") << QByteArray("xyz");
    }
    void badFilesAreNamedAndLeaveNothing()
    {
        QFETCH(QString, Name);
        QFETCH(QByteArray, Contents);
        const QString Path = m_Document.filePath(Name);
        if (!Contents.isNull()) {
            save(Name, Contents);
        } else if (Name == QLatin1String("cut.png")) {
            save(Name, pattern(QSize(200, 200)));
            QVERIFY(QFile::resize(Path, QFileInfo(Path).size() / 2));
        }
        OrvShaderInput* pChannel = m_Document.newChannel(ImageSize);
        m_pNetwork = pChannel->network();
        m_Document.newPaintLayer(pChannel);
        const int Steps = OrvTestDocument::historyLength();
        QVERIFY(!import(Path));
        QVERIFY2(m_Error.contains(Name), qPrintable(m_Error));
        m_Error.clear();
        QVERIFY(!importLayer(pChannel, Path));
        QVERIFY2(m_Error.contains(Name), qPrintable(m_Error));
        QCOMPARE(channels().size(), 1);
        QCOMPARE(pChannel->layerList().size(), 1);
        QCOMPARE(OrvTestDocument::historyLength(), Steps);
    }

    void theGoodOnesAmongBadOnesOpen()
    {
        OrvProjectCommands Projects;
        OrvImportExport Commands(&Projects);
        const QString Bad = save(QStringLiteral("bad.png"), "bad");
        const QString FolderName = QFileInfo(Bad).absolutePath();
        Commands.openImagesAsProject(
            {FolderName, Bad, save(QStringLiteral("first.png"), pattern(ImageSize)),
                m_Document.filePath(QStringLiteral("nowhere.png")),
                save(QStringLiteral("second.png"), pattern(ImageSize))});
        m_pNetwork = OrvProjectManager::instance().currentProject()->currentGeoEntity()->shaderNetwork();
        QCOMPARE(channels().size(), 2);
        QCOMPARE(OrvShaderInputManager::instance().currentShaderInput()->name(), QStringLiteral("first"));
        QCOMPARE(OrvProjectManager::instance().currentProject()->name(), QStringLiteral("first"));
        // Without any good one there is no project.
        Commands.openImagesAsProject({Bad});
        QVERIFY(!OrvProjectManager::instance().currentProject());
        // A folder alone leaves what is open alone.
        m_Document.newProject();
        Commands.openImagesAsProject({FolderName});
        QCOMPARE(OrvProjectManager::instance().currentProject()->name(), QStringLiteral("Test"));
    }

    void exportingOverFilesAsksOnce()
    {
        OrvExportCommands Commands;
        import(save(QStringLiteral("one.png"), pattern(ImageSize)));
        import(save(QStringLiteral("two.png"), pattern(ImageSize)));
        const QTemporaryDir Folder;
        const QStringList Files{Folder.filePath("one.tif"), Folder.filePath("two.tif")};
        const auto exportAnswering = [&](const QString& Button) {
            return answering(
                Button, [&] { Commands.exportAllChannelsTo(Folder.path(), QStringLiteral("tif")); });
        };
        QCOMPARE(exportAnswering(QStringLiteral("Cancel")), QStringList());
        QVERIFY(QFileInfo::exists(Files[0]) && QFileInfo::exists(Files[1]));
        QVERIFY(OrvStatusManager::instance().text().contains(Folder.path()));

        for (const QString& File : Files)
            QVERIFY(QFile::resize(File, 3));
        const QStringList Refused = exportAnswering(QStringLiteral("Cancel"));
        QCOMPARE(Refused.size(), 1);
        QVERIFY2(Refused.first().contains(QLatin1Char('2')), qPrintable(Refused.first()));
        QCOMPARE(QFileInfo(Files[0]).size(), 3);
        QCOMPARE(exportAnswering(QStringLiteral("Replace")).size(), 1);
        for (const QString& File : Files)
            QVERIFY(QFileInfo(File).size() > 3);
    }

    void everyChannelOfEveryObjectHasAFileOfItsOwn()
    {
        OrvExportCommands Commands;
        OrvProject* pProject = OrvProjectManager::instance().currentProject();
        const auto channel = [&](const QString& Name, const QColor& Color) {
            OrvShaderInput* pChannel = import(save(QStringLiteral("plain.png"), filled(Color)));
            pChannel->node()->setName(Name);
            return pChannel;
        };
        const auto exportedFiles = [&](const QTemporaryDir& Folder) {
            Commands.exportAllChannelsTo(Folder.path(), QStringLiteral("png"));
            const QStringList Files = QDir(Folder.path()).entryList(QDir::Files);
            return QSet<QString>(Files.begin(), Files.end());
        };
        const QTemporaryDir One;
        channel("Base", Qt::red);
        channel("Base", Qt::green);
        channel("bASE", Qt::blue);
        channel("A/B", Qt::red);
        channel("A_B", Qt::red);
        // Tiles are told apart by the ends of their names, which a channel's own can look like.
        channel("Wall.1001", Qt::yellow);
        channel("Wall", Qt::red)->node()->setUserAttributeValue("ImageTiles", QVariantList{1001, 1002});
        QCOMPARE(exportedFiles(One),
            QSet<QString>({"Base.png", "Base 2.png", "bASE 3.png", "A_B.png", "A_B 2.png", "Wall.1001.png",
                "Wall 2.1001.png", "Wall 2.1002.png"}));
        QCOMPARE(QImage(One.filePath("Base.png")).pixelColor(1, 1), QColor(Qt::red));
        QCOMPARE(QImage(One.filePath("Base 2.png")).pixelColor(1, 1), QColor(Qt::green));
        QCOMPARE(QImage(One.filePath("Wall.1001.png")).pixelColor(1, 1), QColor(Qt::yellow));

        // Of several objects all are exported, without what only shaders show.
        m_pNetwork = m_Document.newProject();
        pProject = OrvProjectManager::instance().currentProject();
        channel("Base", Qt::red);
        OrvGeoEntity* pSecond = pProject->addGeoEntity(QStringLiteral("Lid"));
        QVERIFY(pSecond);
        m_pNetwork = pSecond->shaderNetwork();
        channel("Base", Qt::green);
        channel("Material", Qt::black)->node()->addTag(OrvSnNames::MaterialShaderInputTag);
        const QTemporaryDir Two;
        const QString First = pProject->geoEntities().first()->name();
        QCOMPARE(exportedFiles(Two),
            QSet<QString>({First + ".Base.png", QStringLiteral("Lid.Base.png")}));
        QCOMPARE(QImage(Two.filePath("Lid.Base.png")).pixelColor(1, 1), QColor(Qt::green));
    }

    void aTypedSuffixDecidesTheType_data()
    {
        QTest::addColumn<QString>("Typed");
        QTest::addColumn<QString>("Filter");
        QTest::addColumn<QString>("Path");
        const QString Any = OrvImageFiles::writeFilter().section(QStringLiteral(";;"), 0, 0);
        QTest::newRow("its own") << "/x/a.PNG" << "TIFF (*.tif *.tiff)" << "/x/a.PNG";
        QTest::newRow("the chosen") << "/x/a" << "TIFF (*.tif *.tiff)" << "/x/a.tif";
        QTest::newRow("the usual") << "/x/a" << Any << "/x/a.exr";
        QTest::newRow("a version") << "/x/a v1.2" << "PNG (*.png)" << "/x/a v1.2.png";
        QTest::newRow("one that is only read") << "/x/a.jpg" << "PNG (*.png)" << "/x/a.jpg";
    }

    void aTypedSuffixDecidesTheType()
    {
        QFETCH(QString, Typed);
        QFETCH(QString, Filter);
        QTEST(OrvExportNames::typedPath(Typed, Filter, QStringLiteral("exr")), "Path");
    }

    void theExportDialogMakesTheFolder()
    {
        OrvExportDialog Dialog(QStringLiteral("Export"), QString(), m_Document.filePath("new/deep"), QString());
        Dialog.accept();
        QCOMPARE(Dialog.result(), int(QDialog::Accepted));
        QVERIFY(QFileInfo(m_Document.filePath("new/deep")).isDir());
        // Where a file stands in the way, the dialog stays.
        OrvExportDialog Blocked(
            QStringLiteral("Export"), QString(), save("file", QByteArray("x")) + "/below", QString());
        Blocked.accept();
        QCOMPARE(Blocked.result(), int(QDialog::Rejected));
    }

    void layersAreExportedAsTheyAreStored()
    {
        const QImage Image = pattern(ImageSize);
        OrvShaderInput* pChannel = import(save(QStringLiteral("hull.png"), Image));
        OrvLayer* pBase = baseOf(pChannel);
        // Neither blending nor what lies above is in the files.
        pBase->blendNode()->setUserAttributeValue(OrvMergeAttributes::Amount, 0.25);
        OrvLayer* pSecond = importLayer(pChannel, save(QStringLiteral("Base.png"), Image.mirrored()));
        pSecond->blendNode()->setName(QStringLiteral("Base"));
        QVERIFY(OrvImageImport::importMask(
            pSecond, OrvImageImport::imageSets({save("dots.png", pattern(ImageSize))}).first(), {}, m_Error));
        QString Error;
        QVERIFY(pChannel->groupLayers(Error, 0, {pSecond}, nullptr, QStringLiteral("Group")));

        const QTemporaryDir Folder;
        OrvExportNames Names(Folder.path());
        QVERIFY(OrvExportRun::run("Export", OrvLayerImageExport::jobsOf(pChannel, {}, {}, Names)));
        QCOMPARE(QDir(Folder.path()).entryList(QDir::Files),
            QStringList({"hull.Base 2.png", "hull.Base.Mask.png", "hull.Base.png"}));
        const auto file = [&](const char* pName) {
            return QImage(Folder.filePath(QLatin1String(pName))).convertToFormat(QImage::Format_RGBA8888);
        };
        QCOMPARE(file("hull.Base 2.png"), Image);
        QCOMPARE(file("hull.Base.png"), Image.mirrored());
        // Masks are numbers: they come in again as they went out.
        const QByteArray Mask = maskBytes(pSecond);
        QVERIFY(OrvImageImport::importMask(pSecond,
            OrvImageImport::imageSets({Folder.filePath("hull.Base.Mask.png")}).first(), {}, m_Error));
        QCOMPARE(maskBytes(pSecond), Mask);

        QVERIFY(pChannel->convertDepthTo(GL_HALF_FLOAT, OrvShaderInput::AllImages));
        const QTemporaryDir Deep;
        OrvExportNames DeepNames(Deep.path());
        QVERIFY(OrvExportRun::run("Export",
            OrvLayerImageExport::jobsOf({pSecond}, pChannel, OrvLayerImageExport::Masks, {}, DeepNames)));
        QCOMPARE(QDir(Deep.path()).entryList(QDir::Files), QStringList("hull.Base.Mask.exr"));
    }

    void tilesAndComputedLayersAreExportedToo()
    {
        OrvShaderInput* pChannel = m_Document.newChannel(ImageSize);
        pChannel->node()->setUserAttributeValue("ImageTiles", QVariantList{1001, 1012});
        OrvLayer* pPaint = m_Document.newPaintLayer(pChannel, OrvColor(1.0f, 0.0f, 0.0f));
        OrvLayer* pPattern
            = pChannel->createProceduralLayer("Procedural/Pattern/Checkerboard", OrvTestDocument::LayerFlags);
        QVERIFY(pPattern);
        const QTemporaryDir Folder;
        OrvExportNames Names(Folder.path());
        QVERIFY(OrvExportRun::run("Export",
            OrvLayerImageExport::jobsOf(
                {pPaint, pPattern}, pChannel, OrvLayerImageExport::Everything, "png", Names)));
        const QStringList Files = QDir(Folder.path()).entryList(QDir::Files);
        QCOMPARE(Files.size(), 4);
        QCOMPARE(Files.filter("1012").size(), 2);
        QCOMPARE(QImage(Folder.filePath(Files.filter(pPaint->name()).last())).pixelColor(3, 3), QColor(255, 0, 0));
    }

    void aMaskThatCannotBeReadLeavesTheOldOne()
    {
        OrvShaderInput* pChannel = m_Document.newChannel(ImageSize);
        OrvLayer* pLayer = m_Document.newPaintLayer(pChannel);
        pLayer->addMaskImageSetAndFillBlack();
        const QString Bad = save(QStringLiteral("bad mask.png"), "bad");
        const int Steps = OrvTestDocument::historyLength();
        const auto Set = OrvImageImport::imageSets({Bad}).first();
        QVERIFY(!OrvImageImport::importMask(pLayer, Set, {}, m_Error));
        QVERIFY(m_Error.contains("bad mask.png"));
        QVERIFY(pLayer->maskImageSet() && pLayer->maskImageSet()->isUniform());
        pLayer->setLocked(true);
        QVERIFY(!OrvImageImport::importMask(pLayer, Set, {}, m_Error));
        QVERIFY(m_Error.contains("locked"));
        QCOMPARE(OrvTestDocument::historyLength(), Steps + 1);
    }

    void dropsBecomeLayersAboveTheOneUnderThePointer()
    {
        OrvProjectCommands Projects;
        const OrvImportExport Commands(&Projects);
        OrvShaderInput* pChannel = m_Document.newChannel(ImageSize);
        OrvLayer* pLower = m_Document.newPaintLayer(pChannel);
        OrvLayer* pUpper = m_Document.newPaintLayer(pChannel);
        QMimeData Data;
        Data.setUrls({QUrl::fromLocalFile(save(QStringLiteral("one.png"), pattern(ImageSize))),
            QUrl::fromLocalFile(save(QStringLiteral("two.png"), pattern(ImageSize)))});
        OrvDragAndDropManager& Drops = OrvDragAndDropManager::instance();
        QVERIFY(Drops.acceptDragEnter(&Data, OrvDragAndDropManager::LayerTreeTarget));
        QVERIFY(Drops.drop(&Data, OrvDragAndDropManager::LayerTreeTarget,
            {{QStringLiteral("LayerStack"), QVariant::fromValue<OrvLayerStack*>(pChannel)},
                {QStringLiteral("LayerBelow"), QVariant::fromValue(pLower)}}));
        QTRY_COMPARE(pChannel->layerList().size(), 4);
        const QList<OrvLayer*> Layers = pChannel->layerList();
        QCOMPARE(Layers.first(), pUpper);
        QCOMPARE(Layers[1]->name(), QStringLiteral("two"));
        QCOMPARE(Layers[2]->name(), QStringLiteral("one"));
        OrvUndoManager::instance().undo();
        QCOMPARE(pChannel->layerList().size(), 2);

        // Below all rows is the bottom; onto a row, whatever that holds, is above its layer.
        const auto dropAt = [&](OrvSnBaseNode* pTarget) {
            return Drops.drop(&Data, OrvDragAndDropManager::LayerTreeTarget,
                {{QStringLiteral("LayerStack"), QVariant::fromValue<OrvLayerStack*>(pChannel)},
                    {QStringLiteral("TargetNode"), QVariant::fromValue(pTarget)}});
        };
        QVERIFY(dropAt(pChannel->bottomNode()));
        QTRY_COMPARE(pChannel->layerList().size(), 4);
        QCOMPARE(pChannel->layerList().mid(0, 2), QList<OrvLayer*>({pUpper, pLower}));
        QCOMPARE(pChannel->layerList().last()->name(), QStringLiteral("one"));
        OrvUndoManager::instance().undo();
        QVERIFY(dropAt(pLower->paintNode()));
        QTRY_COMPARE(pChannel->layerList().size(), 4);
        QCOMPARE(pChannel->layerList().last(), pLower);
        OrvUndoManager::instance().undo();

        // A project opens, and the drop is over before this one goes.
        QString Error;
        const QString Project = m_Document.filePath(QStringLiteral("dropped.orvi"));
        QVERIFY(OrvProjectManager::instance().saveProjectAs(Project, Error));
        m_Document.newProject();
        QMimeData Folder;
        Folder.setUrls({QUrl::fromLocalFile(Project)});
        for (const int Target :
            {OrvDragAndDropManager::CanvasTarget, OrvDragAndDropManager::LayerTreeTarget}) {
            QVERIFY(Drops.acceptDragEnter(&Folder, Target));
            QVERIFY(Drops.drop(&Folder, Target, {}));
            QVERIFY(OrvProjectManager::instance().currentProject()->path().isEmpty());
            QTRY_COMPARE(OrvProjectManager::instance().currentProject()->path(), Project);
            m_Document.newProject();
        }

        QMimeData Text;
        Text.setUrls({QUrl::fromLocalFile(QStringLiteral("/nowhere/notes.txt"))});
        QVERIFY(!Drops.acceptDragEnter(&Text, OrvDragAndDropManager::CanvasTarget));
    }

    void cancellingLeavesNothing()
    {
        const QString Path = save(QStringLiteral("large.png"), pattern(QSize(300, 300)));
        const OrvUdimSet Set = OrvImageImport::imageSets({Path}).first();
        QVERIFY(!OrvImageImport::importChannel(
            m_pNetwork, Set, [](int, int) { return false; }, m_Error));
        QVERIFY(channels().isEmpty());
        QCOMPARE(OrvTestDocument::historyLength(), 0);
        OrvShaderInput* pChannel = import(Path);
        const QString Out = m_Document.filePath(QStringLiteral("cancelled.png"));
        QVERIFY(!OrvChannelExport::writeChannel(
            pChannel, Out, [](int, int) { return false; }, m_Error));
        QVERIFY(!QFile::exists(Out));
    }

    void progressGrowsToItsEnd()
    {
        OrvShaderInput* pChannel = import(save(QStringLiteral("steps.png"), pattern(QSize(300, 700))));
        int Last = -1, End = 0;
        QVERIFY(OrvChannelExport::writeChannel(
            pChannel, m_Document.filePath(QStringLiteral("steps.tif")),
            [&](int Done, int Total) {
                const bool Grows = Done >= Last && Done <= Total;
                Last = Done;
                End = Total;
                return Grows;
            },
            m_Error));
        QCOMPARE(Last, End);
    }

private:
    QString save(const QString& Name, const QImage& Image) const
    {
        const QString Path = m_Document.filePath(Name);
        if (!Image.save(Path))
            qWarning("%s", qPrintable(Path));
        return Path;
    }
    QString save(const QString& Name, const QByteArray& Contents) const
    {
        QFile File(m_Document.filePath(Name));
        if (!File.open(QIODevice::WriteOnly) || File.write(Contents) != Contents.size())
            qWarning("%s", qPrintable(File.fileName()));
        return File.fileName();
    }
    QString exported(OrvShaderInput* pChannel, const QString& Name)
    {
        const QString Path = m_Document.filePath(Name);
        if (!OrvChannelExport::writeChannel(pChannel, Path, {}, m_Error))
            qWarning("%s", qPrintable(m_Error));
        return Path;
    }
    OrvShaderInput* import(const QString& Path)
    {
        return OrvImageImport::importChannel(
            m_pNetwork, OrvImageImport::imageSets({Path}).first(), {}, m_Error);
    }
    OrvLayer* importLayer(OrvLayerStack* pStack, const QString& Path)
    {
        return OrvImageImport::importPaintLayer(pStack, nullptr, OrvImageImport::AboveCurrent,
            OrvImageImport::imageSets({Path}).first(), {}, m_Error);
    }
    QList<OrvShaderInput*> channels() const
    {
        return OrvShaderInputManager::instance().getShaderInputsFromNetwork(m_pNetwork);
    }
    static QByteArray maskBytes(const OrvLayer* pLayer)
    {
        const OrvImageSet* pMask = pLayer->maskImageSet();
        QByteArray Bytes(pMask->extent().width() * pMask->extent().height(), '\0');
        pMask->snapshot().read(pMask->extent(), pMask->format(), Bytes.data());
        return Bytes;
    }
    static QImage pixels(const OrvLayer* pLayer)
    {
        return OrvTestDocument::pixelsOf(pLayer->paintImageSet());
    }
    static OrvLayer* baseOf(const OrvShaderInput* pChannel) { return pChannel->layerList().last(); }
    static bool areAlike(const QImage& One, const QImage& Other)
    {
        if (One.size() != Other.size())
            return false;
        for (int Y = 0; Y < One.height(); ++Y) {
            for (int X = 0; X < One.width(); ++X) {
                const QColor A = One.pixelColor(X, Y), B = Other.pixelColor(X, Y);
                if (std::abs(A.red() - B.red()) > 1 || std::abs(A.green() - B.green()) > 1
                    || std::abs(A.blue() - B.blue()) > 1 || A.alpha() != B.alpha())
                    return false;
            }
        }
        return true;
    }

    OrvTestDocument m_Document;
    OrvShaderNetwork* m_pNetwork = nullptr;
    QString m_Error;
};

QTEST_MAIN(TstImportExport)
#include "TstImportExport.moc"
