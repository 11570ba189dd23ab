#include "Tests/Orvi/OrvTestDocument.h"

#include "Orvi/OrvBrushTool.h"
#include "Orvi/OrvCanvas.h"
#include "Orvi/OrvCanvasSelection.h"
#include "Orvi/OrvCanvasTools.h"
#include "Orvi/OrvSelectionCommands.h"
#include "Orvi/OrvSelectionCoverage.h"
#include "Orvi/OrvSelectionGroups.h"
#include "Orvi/OrvSelectionPalette.h"
#include "Orvi/OrvToolBar.h"

#include "OrvCoreModules/Window/OrvApplication.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QRandomGenerator>
#include <QtTest/QtTest>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QMenu>
#include <QtWidgets/QToolButton>

namespace {

const QSize PictureSize(200, 160);
const QSize CanvasSize(480, 400);

QPainterPath rectangle(int X, int Y, int Width, int Height)
{
    QPainterPath Path;
    Path.addRect(X, Y, Width, Height);
    return Path;
}

} // namespace

/// Selections made by the mouse on a real canvas, and what the document does with them.
class TstSelection : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_pTools = std::make_unique<OrvCanvasTools>();
        m_pCanvas = std::make_unique<OrvCanvas>(m_pTools.get());
        m_pCanvas->resize(CanvasSize);
        m_pCanvas->show();
        m_pChannel = m_Document.newChannel(PictureSize);
        m_pLayer = m_Document.newPaintLayer(m_pChannel);
        settle();
    }
    void cleanup()
    {
        m_pCanvas.reset();
        m_pTools.reset();
        OrvProjectManager::instance().closeProject();
    }

    void keysSayHowRectanglesCombine_data()
    {
        QTest::addColumn<int>("Modifiers");
        QTest::addColumn<QString>("Selected"); // only in the first, in both, only in the second, in none
        QTest::addColumn<QString>("ToolTip");
        QTest::newRow("anew") << int(Qt::NoModifier) << "-XX-" << "anew";
        QTest::newRow("add") << int(Qt::ShiftModifier) << "XXX-" << "(Shift)";
        QTest::newRow("subtract") << int(Qt::AltModifier) << "X---" << "(Alt)";
        QTest::newRow("intersect") << int(Qt::ShiftModifier | Qt::AltModifier) << "-X--" << "(Shift+Alt)";
    }
    void keysSayHowRectanglesCombine()
    {
        QFETCH(int, Modifiers);
        QFETCH(QString, Selected);
        QFETCH(QString, ToolTip);
        const int Steps = OrvTestDocument::historyLength();
        m_pTools->takeRectangle();
        drag({{20, 20}, {50, 40}, {100, 100}});
        drag({{140, 140}, {60, 60}}, Qt::KeyboardModifiers(Modifiers));
        QString Found;
        for (const QPoint& Pixel : {QPoint(30, 30), QPoint(80, 80), QPoint(120, 120), QPoint(180, 10)})
            Found += coverageAt(Pixel) == 255 ? QLatin1Char('X') : QLatin1Char('-');
        QCOMPARE(Found, Selected);
        QCOMPARE(OrvTestDocument::historyLength(), Steps);
        // The same by the buttons of the tool bar.
        const QImage ByKeys = coverage();
        m_pTools->selection()->selectNone();
        OrvToolBar Bar(m_pTools.get());
        drag({{20, 20}, {100, 100}});
        for (QToolButton* pButton : Bar.findChildren<QToolButton*>()) {
            if (pButton->toolTip().contains(ToolTip))
                pButton->click();
        }
        drag({{60, 60}, {140, 140}});
        QCOMPARE(coverage(), ByKeys);
    }

    void rectanglesTakeWholePixelsWithinTheTiles()
    {
        m_pTools->takeRectangle();
        drag({{-30.4, 99.7}, {50.3, 400}});
        QImage Expected(PictureSize, QImage::Format_Grayscale8);
        Expected.fill(0);
        for (int Y = 100; Y < PictureSize.height(); ++Y)
            std::fill_n(Expected.scanLine(Y), 50, uchar(255));
        QCOMPARE(coverage(), Expected);
        // A click deselects; one that was to add changes nothing; a drag beside the picture selects nothing.
        drag({{10, 10}, {10, 10}}, Qt::ShiftModifier);
        QCOMPARE(coverage(), Expected);
        drag({{10, 10}, {10, 10}});
        QVERIFY(area().isEmpty());
        drag({{-30, -30}, {-10, 190}});
        QVERIFY(area().isEmpty());
    }

    void lassosEncloseEveryLoopWithSoftEdges()
    {
        m_pTools->takeLasso();
        // A figure of two loops that a line drawn over itself makes.
        drag({{20, 20}, {100, 120}, {100, 20}, {20, 120}});
        QCOMPARE(coverageAt({30, 60}), 255);
        QCOMPARE(coverageAt({90, 60}), 255);
        QCOMPARE(coverageAt({60, 30}), 0);
        int Partly = 0;
        const QImage Coverage = coverage();
        for (int X = 0; X < 60; ++X)
            Partly += Coverage.constScanLine(30)[X] % 255 != 0;
        QVERIFY(Partly >= 1 && Partly <= 3);
        // Escape and leaving the tool lose nothing.
        press({150, 100});
        moveTo({190, 150});
        QTest::keyClick(m_pCanvas.get(), Qt::Key_Escape);
        release({190, 150});
        QCOMPARE(coverage(), Coverage);
    }

    void anyCombinationIsWhatPixelsSay()
    {
        QRandomGenerator Random(7);
        const OrvUdimLayout Layout = m_pChannel->layout();
        for (int Round = 0; Round < 40; ++Round) {
            OrvSelectionArea Area;
            QImage Expected(PictureSize, QImage::Format_Grayscale8);
            Expected.fill(0);
            for (int Step = 0; Step < 8; ++Step) {
                const QRect Rect(
                    Random.bounded(180), Random.bounded(140), 1 + Random.bounded(90), 1 + Random.bounded(70));
                const auto How = OrvSelectionArea::Combination(Step ? 1 + Random.bounded(3) : 0);
                if (How == OrvSelectionArea::Intersect && Step % 2)
                    continue;
                Area = Area.combinedWith(
                    OrvSelectionArea::fromPlane(
                        rectangle(Rect.x(), Rect.y(), Rect.width(), Rect.height()), Layout),
                    How);
                for (int Y = 0; Y < PictureSize.height(); ++Y) {
                    for (int X = 0; X < PictureSize.width(); ++X) {
                        uchar& Pixel = Expected.scanLine(Y)[X];
                        const bool Was = Pixel > 0, Is = Rect.contains(X, Y);
                        const bool Becomes = How == OrvSelectionArea::Replace ? Is
                            : How == OrvSelectionArea::Add                    ? Was || Is
                            : How == OrvSelectionArea::Subtract               ? Was && !Is
                                                                              : Was && Is;
                        Pixel = Becomes ? 255 : 0;
                    }
                }
            }
            QCOMPARE(OrvSelectionCoverage(Area, Layout).raster(Layout.extent()), Expected);
            OrvSelectionArea Stored;
            QVERIFY(OrvSelectionArea::fromJson(
                QJsonDocument::fromJson(QJsonDocument(Area.toJson()).toJson()).array(), Stored));
            QCOMPARE(OrvSelectionCoverage(Stored, Layout).raster(Layout.extent()), Expected);
        }
    }

    void allNoneAndInvertKnowTheTilesAndEverySize()
    {
        OrvShaderNetwork* pNetwork = m_Document.newProject();
        pNetwork->geoEntity()->setUdimTiles({1001, 1002, 1011});
        auto* pLarge = OrvShaderInputUtils::create(pNetwork, "Large", QSize(64, 64), GL_UNSIGNED_BYTE);
        auto* pSmall = OrvShaderInputUtils::create(pNetwork, "Small", QSize(16, 16), GL_UNSIGNED_BYTE);
        OrvShaderInputManager::instance().makeShaderInputCurrent(pLarge, true);
        OrvCanvasSelection& Selection = *m_pTools->selection();
        Selection.invert();
        QCOMPARE(coverageAt({32, 32}, pLarge), 255); // tile 1011
        QCOMPARE(coverageAt({96, 32}, pLarge), 0); // no tile
        QCOMPARE(coverageAt({127, 127}, pLarge), 255);
        Selection.invert();
        QVERIFY(Selection.area().isEmpty());
        Selection.selectAll();
        Selection.setArea(Selection.area().combinedWith(
            OrvSelectionArea::fromPlane(rectangle(0, 64, 64, 64), pLarge->layout()),
            OrvSelectionArea::Subtract));
        Selection.invert();
        for (OrvShaderInput* pChannel : {pLarge, pSmall}) {
            const QRect First = pChannel->layout().tileRect(1001);
            QCOMPARE(coverageAt(First.topLeft(), pChannel), 255);
            QCOMPARE(coverageAt(First.topRight() + QPoint(1, 0), pChannel), 0);
            QCOMPARE(coverageAt(First.topLeft() - QPoint(0, 1), pChannel), 0);
        }
        // Another object has a selection of its own.
        OrvProject* pProject = OrvProjectManager::instance().currentProject();
        OrvGeoEntity* pFirst = pProject->currentGeoEntity();
        pProject->setCurrentGeoEntity(pProject->addGeoEntity(QStringLiteral("Other")));
        QVERIFY(Selection.area().isEmpty());
        pProject->setCurrentGeoEntity(pFirst);
        QVERIFY(!Selection.area().isEmpty());
        OrvProjectManager::instance().closeProject();
        QVERIFY(Selection.area().isEmpty());
    }

    void theBrushStaysWithinTheSelection()
    {
        OrvBrush Brush;
        Brush.setSize(60);
        Brush.setHardness(1.0);
        Brush.setColor(Qt::red);
        m_pTools->brushTool()->setBrush(Brush);
        m_pTools->takeRectangle();
        drag({{40, 30}, {120, 90}});
        m_pTools->takeBrush();
        drag({{10, 60}, {100, 60}, {190, 60}});
        const QImage Painted = painted();
        for (int Y = 0; Y < PictureSize.height(); ++Y) {
            for (int X = 0; X < PictureSize.width(); ++X)
                QVERIFY(Painted.pixelColor(X, Y).alpha() == 0 || QRect(40, 30, 80, 60).contains(X, Y));
        }
        QCOMPARE(Painted.pixelColor(40, 60), QColor(Qt::red));
        QCOMPARE(Painted.pixelColor(119, 40), QColor(Qt::red));

        // Where nothing is selected nothing is painted, and there is nothing to undo.
        const int Steps = OrvTestDocument::historyLength();
        drag({{160, 140}, {190, 150}});
        QCOMPARE(OrvTestDocument::historyLength(), Steps);
        // Half a pixel selected is painted by half.
        QPainterPath Half;
        Half.addRect(150.5, 100, 20, 20);
        m_pTools->selection()->setArea(OrvSelectionArea::fromPlane(Half, m_pChannel->layout()));
        drag({{150, 110}, {160, 110}});
        const int Edge = painted().pixelColor(150, 110).alpha();
        QVERIFY2(std::abs(Edge - 128) <= 4, qPrintable(QString::number(Edge)));
        m_pTools->selection()->selectNone();
        drag({{160, 140}, {190, 150}});
        QVERIFY(painted().pixelColor(180, 145).alpha() > 0);
        for (int Step = 0; Step < 3; ++Step)
            OrvUndoManager::instance().undo();
        QCOMPARE(painted().pixelColor(80, 60).alpha(), 0);
    }

    void theOutlineIsOnePixelWideAtAnyZoom_data()
    {
        QTest::addColumn<double>("Zoom");
        for (const double Zoom : {0.5, 1.0, 8.0, 60.0})
            QTest::newRow(qPrintable(QString::number(Zoom))) << Zoom;
    }
    void theOutlineIsOnePixelWideAtAnyZoom()
    {
        QFETCH(double, Zoom);
        m_pLayer->paintImageSet()->buffer().fill(OrvColor(0.3f, 0.3f, 0.3f));
        m_pLayer->paintImageSet()->pixelsWritten(m_pLayer->paintImageSet()->extent());
        m_pCanvas->showActualSize();
        while (m_pCanvas->zoom() < Zoom / 1.01)
            m_pCanvas->zoomIn();
        while (m_pCanvas->zoom() > Zoom * 1.01)
            m_pCanvas->zoomOut();
        // The middle of the picture stays in the middle of the canvas.
        m_pTools->selection()->setArea(
            OrvSelectionArea::fromPlane(rectangle(100, 20, 60, 120), m_pChannel->layout()));
        settle();
        const QImage Shown = m_pCanvas->grab().toImage();
        const QPointF OnEdge = m_pCanvas->toWidget(QPointF(100, 80));
        const int Column = int(std::floor(OnEdge.x() + 1e-6));
        int Dark = 0, Light = 0;
        for (int Row = int(OnEdge.y()) - 12; Row < int(OnEdge.y()) + 12; ++Row) {
            const QRgb Line = Shown.pixel(Column, Row);
            Dark += Line == qRgb(0, 0, 0);
            Light += Line == qRgb(255, 255, 255);
            const QColor Left = Shown.pixelColor(Column - 1, Row), Right = Shown.pixelColor(Column + 1, Row);
            QVERIFY(qAbs(Left.red() - Right.red()) <= 2 && Left.red() > 20 && Left.red() < 235);
        }
        QCOMPARE(Dark, 12);
        QCOMPARE(Light, 12);
        // The ants march.
        QTRY_VERIFY(m_pCanvas->grab().toImage() != Shown);
    }

    void groupsAreKeptWithTheProject()
    {
        OrvSelectionCommands Commands(m_pTools.get());
        OrvSelectionPalette Palette(&Commands);
        auto* pList = Palette.findChild<QListWidget*>();
        m_pTools->takeRectangle();
        drag({{20, 20}, {90, 70}});
        const OrvSelectionArea Saved = area();
        OrvApplication::appInstance().setPopupsAllowed(true);
        QTimer::singleShot(0, this, [] {
            QWidget* pDialog = QApplication::activeModalWidget();
            QVERIFY(pDialog);
            auto* pName = pDialog->findChild<QLineEdit*>();
            pName->setText(QStringLiteral("  Rivets & Bolts "));
            QTest::keyClick(pName, Qt::Key_Return);
        });
        Commands.saveSelectionAs();
        OrvApplication::appInstance().setPopupsAllowed(false);
        QCOMPARE(OrvSelectionGroups::names(), QStringList(QStringLiteral("Rivets & Bolts")));
        QVERIFY(OrvSelectionGroups::store(QStringLiteral("Half"),
            OrvSelectionArea::fromPlane(rectangle(0, 0, 100, 160), m_pChannel->layout())));
        QCOMPARE(pList->count(), 2);

        // Names stay single, be it in the list itself; every step is undone.
        pList->item(0)->setText(QStringLiteral("Rivets & Bolts"));
        QApplication::processEvents();
        QCOMPARE(pList->item(0)->text(), QStringLiteral("Half"));
        pList->item(0)->setText(QStringLiteral("West"));
        QTRY_COMPARE(OrvSelectionGroups::names(), QStringList({"Rivets & Bolts", "West"}));
        pList->setCurrentRow(1);
        for (QToolButton* pButton : Palette.findChildren<QToolButton*>()) {
            if (pButton->toolTip() == QLatin1String("Delete"))
                pButton->click();
        }
        QCOMPARE(OrvSelectionGroups::names(), QStringList(QStringLiteral("Rivets & Bolts")));
        OrvUndoManager::instance().undo();
        OrvUndoManager::instance().undo();
        QCOMPARE(OrvSelectionGroups::names(), QStringList({"Half", "Rivets & Bolts"}));
        QCOMPARE(pList->count(), 2);

        m_pTools->selection()->selectNone();
        QString Error;
        const QString Path = m_Document.filePath(QStringLiteral("groups.orvi"));
        QVERIFY2(OrvProjectManager::instance().saveProjectAs(Path, Error), qPrintable(Error));
        OrvProjectManager::instance().closeProject();
        QCOMPARE(pList->count(), 0);
        QVERIFY2(OrvProjectManager::instance().openProject(Path, Error), qPrintable(Error));
        QCOMPARE(pList->count(), 2);
        pList->setCurrentRow(1);
        Q_EMIT pList->itemDoubleClicked(pList->currentItem());
        m_pChannel = OrvShaderInputManager::instance().currentShaderInput();
        QCOMPARE(
            coverage(), OrvSelectionCoverage(Saved, m_pChannel->layout()).raster(QRect({0, 0}, PictureSize)));
        m_pTools->selection()->load(QStringLiteral("Half"), OrvSelectionArea::Subtract);
        QVERIFY(area().isEmpty());

        // A damaged one is named, and the open project stays.
        QFile Manifest(Path + QStringLiteral("/project.json"));
        QVERIFY(Manifest.open(QIODevice::ReadWrite));
        QByteArray Text = Manifest.readAll();
        const int At = Text.indexOf('[', Text.indexOf("\"Half\"") + 9);
        Text.insert(At + 1, "\"x\", ");
        Manifest.seek(0);
        Manifest.write(Text);
        Manifest.close();
        QVERIFY(!OrvProjectManager::instance().openProject(Path, Error));
        QVERIFY2(Error.contains(QLatin1String("Half")), qPrintable(Error));
        QCOMPARE(pList->count(), 2);
    }

    void masksAreMadeOfSelections()
    {
        m_pTools->takeLasso();
        QVERIFY(!m_pLayer->addMaskImageSetFromSelection());
        QVERIFY(!m_pLayer->hasMask());
        drag({{20, 20}, {180, 40}, {100, 140}});
        const QImage Selected = coverage();
        m_pLayer->addMaskImageSetFromSelection();
        QVERIFY(m_pLayer->hasMaskImageSet());
        QCOMPARE(maskOf(m_pLayer), Selected);
        OrvUndoManager::instance().undo();
        QVERIFY(!m_pLayer->hasMask());

        QVERIFY(OrvSelectionGroups::store(QStringLiteral("A"), area()));
        QVERIFY(OrvSelectionGroups::store(QStringLiteral("B"),
            OrvSelectionArea::ofAllTiles(m_pChannel->layout())
                .combinedWith(area(), OrvSelectionArea::Subtract)));
        m_pTools->selection()->selectNone();
        // Escape makes none, the second entry the second group's.
        OrvApplication::appInstance().setPopupsAllowed(true);
        answerPopup({Qt::Key_Escape});
        m_pLayer->addMaskImageSetFromSelectionGroupViaGUI();
        QVERIFY(!m_pLayer->hasMask());
        answerPopup({Qt::Key_Down, Qt::Key_Down, Qt::Key_Return});
        m_pLayer->addMaskImageSetFromSelectionGroupViaGUI();
        OrvApplication::appInstance().setPopupsAllowed(false);
        QImage Inverted = Selected;
        Inverted.invertPixels();
        const QImage Mask = maskOf(m_pLayer);
        for (int Y = 0; Y < PictureSize.height(); ++Y) {
            for (int X = 0; X < PictureSize.width(); ++X)
                QVERIFY(std::abs(Mask.constScanLine(Y)[X] - Inverted.constScanLine(Y)[X]) <= 2);
        }
    }

private:
    void settle() const
    {
        QApplication::processEvents();
        QTRY_VERIFY(m_pCanvas->isSettled());
    }
    void send(QEvent::Type Type, const QPointF& Picture, Qt::MouseButton Button, Qt::MouseButtons Buttons,
        Qt::KeyboardModifiers Modifiers) const
    {
        const QPointF Point = m_pCanvas->toWidget(Picture);
        QMouseEvent Event(Type, Point, m_pCanvas->mapToGlobal(Point.toPoint()), Button, Buttons, Modifiers);
        QApplication::sendEvent(m_pCanvas.get(), &Event);
    }
    void press(const QPointF& Picture, Qt::KeyboardModifiers Modifiers = Qt::NoModifier) const
    {
        send(QEvent::MouseButtonPress, Picture, Qt::LeftButton, Qt::LeftButton, Modifiers);
    }
    void moveTo(const QPointF& Picture) const
    {
        send(QEvent::MouseMove, Picture, Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    }
    void release(const QPointF& Picture) const
    {
        send(QEvent::MouseButtonRelease, Picture, Qt::LeftButton, Qt::NoButton, Qt::NoModifier);
    }
    /// Points of the picture; keys are held when the button is pressed.
    void drag(const std::vector<QPointF>& Points, Qt::KeyboardModifiers Modifiers = Qt::NoModifier) const
    {
        press(Points.front(), Modifiers);
        for (const QPointF& Point : Points)
            moveTo(Point);
        release(Points.back());
    }
    QImage painted() const { return OrvTestDocument::pixelsOf(m_pLayer->paintImageSet()); }
    const OrvSelectionArea& area() const { return m_pTools->selection()->area(); }
    QImage coverage() const
    {
        return OrvSelectionCoverage(area(), m_pChannel->layout()).raster(m_pChannel->layout().extent());
    }
    int coverageAt(const QPoint& Pixel, const OrvShaderInput* pChannel = nullptr) const
    {
        const OrvUdimLayout Layout = (pChannel ? pChannel : m_pChannel)->layout();
        return OrvSelectionCoverage(area(), Layout).raster(QRect(Pixel, QSize(1, 1))).constBits()[0];
    }
    static QImage maskOf(const OrvLayer* pLayer)
    {
        QImage Mask(pLayer->maskImageSet()->extent().size(), QImage::Format_Grayscale8);
        pLayer->maskImageSet()->buffer().read(pLayer->maskImageSet()->extent(),
            {GL_UNSIGNED_BYTE, OrvPixelFormat::Scalar, OrvPixelFormat::Linear}, Mask.bits(),
            Mask.bytesPerLine());
        return Mask;
    }
    void answerPopup(const std::vector<Qt::Key>& Keys)
    {
        QTimer::singleShot(0, this, [Keys] {
            QWidget* pMenu = QApplication::activePopupWidget();
            QVERIFY(qobject_cast<QMenu*>(pMenu));
            for (const Qt::Key Key : Keys)
                QTest::keyClick(pMenu, Key);
        });
    }

    OrvTestDocument m_Document;
    std::unique_ptr<OrvCanvasTools> m_pTools;
    std::unique_ptr<OrvCanvas> m_pCanvas;
    OrvShaderInput* m_pChannel = nullptr;
    OrvLayer* m_pLayer = nullptr;
};

QTEST_MAIN(TstSelection)
#include "TstSelection.moc"
