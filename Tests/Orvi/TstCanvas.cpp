#include "Tests/Orvi/OrvTestCanvas.h"
#include "Tests/Orvi/OrvTestDocument.h"

#include "Orvi/OrvBrushBar.h"
#include "Orvi/OrvBrushTool.h"
#include "Orvi/OrvCanvasTools.h"

#include "OrvCore/Shaders/OrvLayerShaderManager.h"

#include "OrvDdi/Engine/OrvEngine.h"
#include "OrvDdi/Engine/OrvEngineNode.h"

#include <QtGui/QTabletEvent>
#include <QtWidgets/QToolButton>

#include <functional>

using namespace OrvTestCanvas;

/// The picture on the screen follows the document.
class TstCanvas : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_pTools = std::make_unique<OrvCanvasTools>();
        m_pTool = m_pTools->brushTool();
        OrvBrush Brush;
        Brush.setSize(60);
        Brush.setHardness(1.0);
        Brush.setColor(Qt::blue);
        m_pTool->setBrush(Brush);
        m_pCanvas = newCanvas(m_pTools.get());
    }
    void cleanup()
    {
        m_pCanvas.reset();
        m_pTools.reset();
        OrvProjectManager::instance().closeProject();
    }

    void showsColorTransparencyAndNothing()
    {
        OrvShaderInput* pChannel = m_Document.newChannel(QSize(256, 256));
        OrvLayer* pLayer = m_Document.newPaintLayer(pChannel, OrvColor(1.0f, 0.0f, 0.0f));
        QVERIFY(isNear(shownAt(m_pCanvas.get(), {128, 128}), Qt::red));
        QVERIFY(!isNear(shownAt(m_pCanvas.get(), {-6, 128}), Qt::red, 60));
        // Half of the light through black is no middle gray on the screen.
        pLayer->blendNode()->setUserAttributeValue(OrvMergeAttributes::Amount, 0.0);
        const QColor One = shownAt(m_pCanvas.get(), {101, 101}), Other = shownAt(m_pCanvas.get(), {101, 109});
        QVERIFY(One.red() == One.green() && Other.red() == Other.blue());
        OrvProjectManager::instance().closeProject();
        QVERIFY(isSettled(m_pCanvas.get()));
        m_pCanvas->grab();
    }

    void scalarsAreShownAsTheNumbersThatTheyAre()
    {
        OrvShaderInput* pChannel = m_Document.newChannel(QSize(256, 256), GL_HALF_FLOAT, true);
        m_Document.newPaintLayer(pChannel, OrvColor(0.5f, 0.5f, 0.5f));
        QVERIFY(isNear(shownAt(m_pCanvas.get(), {128, 128}), QColor(128, 128, 128)));
        // In a colour channel half the light is brighter to the eye.
        pChannel = m_Document.newChannel(QSize(256, 256), GL_HALF_FLOAT);
        m_Document.newPaintLayer(pChannel, OrvColor(0.5f, 0.5f, 0.5f));
        QVERIFY(isNear(shownAt(m_pCanvas.get(), {128, 128}), QColor(188, 188, 188)));
    }

    /// What changes beside a piece while that is computed may still show at its edge: relief does.
    void editsBesideAPieceThatIsComputed()
    {
        OrvImageBuffer Pixels(
            QRect(0, 0, 512, 512), {GL_FLOAT, OrvPixelFormat::Rgba, OrvPixelFormat::Linear});
        const auto pSource = OrvEngineNode::createSource();
        pSource->setBuffer(Pixels);
        QStringList Notices;
        OrvCanvasRenderer Renderer;
        connect(&Renderer, &OrvCanvasRenderer::pieceReady, this, [&] { Notices += QStringLiteral("piece"); });
        connect(&Renderer, &OrvCanvasRenderer::invalidated, this, [&](const QRegion& Region) {
            if (Region.intersects(QRect(128, 0, 4, 4)))
                Notices += QStringLiteral("edit");
        });
        Renderer.setSource(pSource.get(), OrvDisplayTransform::Numbers, QString());
        QApplication::processEvents();
        Notices.clear();
        {
            const OrvEngine::Lock Lock; // the piece is not computed before this goes
            Renderer.setWishes({{2, QPoint(0, 0), QRect(0, 0, 32, 32)}});
            QVERIFY(QTest::qWaitFor(
                [&] { return !OrvCanvasRenderer::Pause(&Renderer).isReached(); }, SettleTime));
            Pixels.fill(OrvColor::white(), QRect(129, 1, 2, 2));
            pSource->pixelsWritten(QRect(129, 1, 2, 2));
            QApplication::processEvents();
        }
        QVERIFY(QTest::qWaitFor([&] { return Renderer.isIdle(); }, SettleTime));
        QCOMPARE(
            Notices, QStringList({QStringLiteral("edit"), QStringLiteral("piece"), QStringLiteral("edit")}));
        Renderer.setSource(nullptr, OrvDisplayTransform::Numbers, QString());
    }

    void followsEveryEdit_data()
    {
        QTest::addColumn<double>("Zoom");
        QTest::newRow("fitted") << 0.0;
        QTest::newRow("quarter") << 0.25;
        QTest::newRow("actual size") << 1.0;
        QTest::newRow("large") << 3.0;
    }
    void followsEveryEdit()
    {
        // After each edit the canvas that watched shows what one that is opened afterwards shows.
        QFETCH(double, Zoom);
        OrvShaderInput* pChannel = m_Document.newChannel(QSize(700, 500));
        OrvLayer* pBase = m_Document.newPaintLayer(pChannel, OrvColor(0.6f, 0.3f, 0.1f));
        OrvLayer* pTop = m_Document.newPaintLayer(pChannel);
        OrvUndoManager& Undo = OrvUndoManager::instance();
        const std::vector<std::pair<const char*, std::function<void()>>> Edits{
            {"first stroke",
                [&] {
                    stroke({{100, 100}, {600, 400}});
                }},
            {"second stroke",
                [&] {
                    stroke({{600, 100}, {100, 400}});
                }},
            {"undo", [&] { Undo.undo(); }},
            {"redo", [&] { Undo.redo(); }},
            {"amount", [&] { pTop->blendNode()->setUserAttributeValue(OrvMergeAttributes::Amount, 0.4); }},
            {"mode",
                [&] {
                    pTop->blendNode()->setUserAttributeValue(
                        OrvMergeAttributes::BlendMode, QStringLiteral("Difference"));
                }},
            {"hidden", [&] { pBase->setVisible(false); }},
            {"shown", [&] { pBase->setVisible(true); }},
            {"blur above",
                [&] {
                    pChannel->createAdjustmentLayer(
                        QStringLiteral("Filter/Blur/Gaussian Blur"), OrvTestDocument::LayerFlags);
                }},
            {"stroke below a blur",
                [&] {
                    pTop->makeCurrent(false, true);
                    OrvLayerManager::instance().setCurrentComponent(pTop->paintNode());
                    stroke({{350, 20}, {350, 480}});
                }},
            {"mask", [&] { pTop->addMaskImageSet(OrvLayer::FilledMask, OrvColor(0.5f, 0.5f, 0.5f)); }},
            {"stroke on the mask",
                [&] {
                    OrvLayerManager::instance().setCurrentComponent(pTop->maskNode());
                    stroke({{20, 250}, {680, 250}});
                }},
            {"layer removed", [&] { pChannel->deleteLayers({pTop}); }},
            {"all undone",
                [&] {
                    while (Undo.stack()->canUndo() && Undo.stack()->index() > 3)
                        Undo.undo();
                }},
        };
        applyZoom(m_pCanvas.get(), Zoom);
        for (const auto& Edit : Edits) {
            QVERIFY(isSettled(m_pCanvas.get()));
            Edit.second();
            // Another look while the picture is still on its way must not disturb.
            QApplication::processEvents();
            m_pCanvas->grab();
            QVERIFY(isSettled(m_pCanvas.get()));
            const std::unique_ptr<OrvCanvas> pFresh = newCanvas(m_pTools.get());
            applyZoom(pFresh.get(), Zoom);
            QVERIFY(isSettled(pFresh.get()));
            const QImage Followed = m_pCanvas->grab().toImage(), Fresh = pFresh->grab().toImage();
            QVERIFY2(areAlike(Followed, Fresh), Edit.first);
        }
    }

    void whatIsSharpStaysSharpUntilThereIsBetter()
    {
        OrvShaderInput* pChannel = m_Document.newChannel(QSize(2048, 2048));
        m_Document.newPaintLayer(pChannel, OrvColor(0.2f, 0.5f, 0.7f));
        stroke({{900, 1000}, {1200, 1050}});
        m_pCanvas->resize(900, 900);
        applyZoom(m_pCanvas.get(), 1.0);
        QVERIFY(isSettled(m_pCanvas.get()));
        const QImage Before = m_pCanvas->grab().toImage();
        m_Document.newPaintLayer(pChannel);
        while (!m_pCanvas->isSettled()) {
            QApplication::processEvents();
            QVERIFY(areAlike(m_pCanvas->grab().toImage(), Before));
        }
    }

    void editsWhileThePictureIsComputed()
    {
        OrvShaderInput* pChannel = m_Document.newChannel(QSize(1024, 1024));
        m_Document.newPaintLayer(pChannel, OrvColor(0.2f, 0.5f, 0.7f));
        OrvLayer* pTop = m_Document.newPaintLayer(pChannel);
        stroke({{10, 10}, {900, 900}});
        for (int Round = 0; Round < 40; ++Round) {
            pTop->setVisible(Round % 2);
            OrvLayer* pBlur = pChannel->createAdjustmentLayer(
                QStringLiteral("Filter/Blur/Gaussian Blur"), OrvTestDocument::LayerFlags);
            QTest::qWait(Round % 5);
            pChannel->deleteLayers({pBlur});
            if (Round % 10 == 9)
                OrvUndoManager::instance().undo();
        }
        OrvShaderInputManager::instance().destroy(pChannel, OrvShaderInputManager::SharersAreDeleted);
        QVERIFY(isSettled(m_pCanvas.get()));
        OrvUndoManager::instance().undo();
        OrvProjectManager::instance().closeProject();
        QVERIFY(isSettled(m_pCanvas.get()));
    }

    void zoomsAtThePointerPansAndFits()
    {
        m_Document.newPaintLayer(m_Document.newChannel(QSize(512, 512)), OrvColor::white());
        QVERIFY(isSettled(m_pCanvas.get()));
        const double Fitted = m_pCanvas->zoom();
        QVERIFY(Fitted < 1.0);
        const QPoint Pointer(130, 260);
        const QPointF Before = m_pCanvas->toPicture(Pointer);
        wheel(*m_pCanvas, Pointer, 480);
        QVERIFY(qFuzzyCompare(m_pCanvas->zoom(), 2.0 * Fitted));
        QVERIFY(QLineF(m_pCanvas->toPicture(Pointer), Before).length() < 1.0);

        const QPointF Corner = m_pCanvas->toPicture(QPoint(0, 0));
        QTest::mousePress(m_pCanvas.get(), Qt::MiddleButton, Qt::NoModifier, Pointer);
        movePressed(*m_pCanvas, Pointer + QPoint(40, 20), Qt::MiddleButton);
        QTest::mouseRelease(m_pCanvas.get(), Qt::MiddleButton, Qt::NoModifier, Pointer + QPoint(40, 20));
        const QPointF Moved = Corner - m_pCanvas->toPicture(QPoint(0, 0));
        QVERIFY(QLineF(Moved * m_pCanvas->zoom(), QPointF(40, 20)).length() < 1.5);

        for (int Step = 0; Step < 100; ++Step)
            wheel(*m_pCanvas, Pointer, -480);
        QVERIFY(m_pCanvas->zoom() >= OrvCanvasView::SmallestZoom);
        m_pCanvas->fit();
        QVERIFY(qFuzzyCompare(m_pCanvas->zoom(), Fitted));
        m_pCanvas->showActualSize();
        QCOMPARE(m_pCanvas->zoom(), 1.0);
        QVERIFY(isSettled(m_pCanvas.get()));
    }

    void theMousePaintsAndPicksColors()
    {
        OrvShaderInput* pChannel = m_Document.newChannel(QSize(512, 512));
        m_Document.newPaintLayer(pChannel, OrvColor(0.0f, 1.0f, 0.0f));
        OrvLayer* pTop = m_Document.newPaintLayer(pChannel);
        QVERIFY(isSettled(m_pCanvas.get()));
        const QPoint Place = m_pCanvas->toWidget(QPointF(256, 256)).toPoint();
        QTest::mousePress(m_pCanvas.get(), Qt::LeftButton, Qt::NoModifier, Place);
        QTest::mouseRelease(m_pCanvas.get(), Qt::LeftButton, Qt::NoModifier, Place);
        QCOMPARE(OrvTestDocument::pixelsOf(pTop->paintImageSet()).pixelColor(256, 256), QColor(Qt::blue));
        QVERIFY(isNear(shownAt(m_pCanvas.get(), {256, 246}), Qt::blue));
        // What is seen is picked, whichever layer it comes from, and nothing is painted.
        const int Steps = OrvTestDocument::historyLength();
        QTest::mouseClick(
            m_pCanvas.get(), Qt::LeftButton, Qt::AltModifier, m_pCanvas->toWidget(QPointF(20, 20)).toPoint());
        QCOMPARE(m_pTool->brush().color(), QColor(Qt::green));
        QCOMPARE(OrvTestDocument::historyLength(), Steps);
    }

    void aPensPressureSetsWhatItIsToldTo_data()
    {
        QTest::addColumn<bool>("SetsSize");
        QTest::addColumn<bool>("SetsOpacity");
        QTest::newRow("nothing") << false << false;
        QTest::newRow("size") << true << false;
        QTest::newRow("opacity") << false << true;
        QTest::newRow("both") << true << true;
    }
    void aPensPressureSetsWhatItIsToldTo()
    {
        QFETCH(bool, SetsSize);
        QFETCH(bool, SetsOpacity);
        OrvLayer* pLayer = m_Document.newPaintLayer(m_Document.newChannel(QSize(512, 512)));
        QVERIFY(isSettled(m_pCanvas.get()));
        {
            OrvBrushBar Bar(m_pTool);
            const auto choose = [&Bar](const char* pName, bool On) {
                auto* pToggle = Bar.findChild<QToolButton*>(QLatin1String(pName));
                if (pToggle->isChecked() != On)
                    pToggle->click();
            };
            choose("PressureSetsSize", SetsSize);
            choose("PressureSetsOpacity", SetsOpacity);
        }
        const int Steps = OrvTestDocument::historyLength();
        const QPointF Start(96, 256), End(416, 256);
        QVERIFY(pen(QEvent::TabletPress, Start, 0.0));
        QVERIFY(pen(QEvent::TabletMove, End, 1.0));
        QVERIFY(pen(QEvent::TabletRelease, End, 1.0));
        QCOMPARE(OrvTestDocument::historyLength(), Steps + 1);

        // A brush of 60 pixels; the pressure rises along the stroke.
        const QImage Painted = OrvTestDocument::pixelsOf(pLayer->paintImageSet());
        double Before = 0.0;
        for (const int X : {160, 200, 256, 312, 352}) {
            int Height = 0;
            for (int Y = 0; Y < Painted.height(); ++Y)
                Height += Painted.pixelColor(X, Y).alpha() > 0 ? 1 : 0;
            const int Alpha = Painted.pixelColor(X, 256).alpha();
            const double Changing = SetsSize ? Height : Alpha;
            QVERIFY2(Changing > Before || !(SetsSize || SetsOpacity), qPrintable(QString::number(X)));
            QVERIFY(SetsSize || std::abs(Height - 60) <= 2);
            QVERIFY(SetsOpacity || Alpha == 255);
            Before = Changing;
        }
        const int Middle = Painted.pixelColor(256, 256).alpha();
        QVERIFY(!SetsOpacity || (Middle > 90 && Middle < 165));
        QVERIFY(Painted.pixelColor(416, 256).alpha() > 250);

        // The choice is kept, and a mouse presses fully.
        m_pCanvas.reset();
        m_pTools.reset();
        m_pTools = std::make_unique<OrvCanvasTools>();
        m_pTool = m_pTools->brushTool();
        QCOMPARE(m_pTool->brush().pressureSetsSize(), SetsSize);
        QCOMPARE(m_pTool->brush().pressureSetsOpacity(), SetsOpacity);
        m_pCanvas = newCanvas(m_pTools.get());
        QVERIFY(isSettled(m_pCanvas.get()));
        const QPoint Place = m_pCanvas->toWidget(QPointF(256, 400)).toPoint();
        QTest::mouseClick(m_pCanvas.get(), Qt::LeftButton, Qt::NoModifier, Place);
        const QImage Clicked = OrvTestDocument::pixelsOf(pLayer->paintImageSet());
        QCOMPARE(Clicked.pixelColor(256, 400).alpha(), 255);
        QCOMPARE(Clicked.pixelColor(256, 426).alpha(), 255);
    }

    void whatIsNoStrokeOfThePenIsTheMouses()
    {
        OrvShaderInput* pChannel = m_Document.newChannel(QSize(512, 512));
        OrvLayer* pLayer = m_Document.newPaintLayer(pChannel);
        QVERIFY(isSettled(m_pCanvas.get()));
        const QPointF Place(256, 256);
        QVERIFY(!pen(QEvent::TabletMove, Place, 0.0)); // above the tablet
        QVERIFY(!pen(QEvent::TabletPress, Place, 0.5, Qt::ControlModifier));
        QVERIFY(!pen(QEvent::TabletRelease, Place, 0.5));
        m_pTools->setTool(OrvCanvasTools::SelectRectangle);
        QVERIFY(!pen(QEvent::TabletPress, Place, 0.5));
        m_pTools->setTool(OrvCanvasTools::Brush);

        // The mouse does not disturb a pen's stroke, and Escape takes it back.
        const QImage Before = OrvTestDocument::pixelsOf(pLayer->paintImageSet());
        const QPoint Away = m_pCanvas->toWidget(QPointF(100, 100)).toPoint();
        QVERIFY(pen(QEvent::TabletPress, Place, 1.0));
        movePressed(*m_pCanvas, Away, Qt::LeftButton);
        QTest::mouseRelease(m_pCanvas.get(), Qt::LeftButton, Qt::NoModifier, Away);
        QCOMPARE(OrvTestDocument::pixelsOf(pLayer->paintImageSet()).pixelColor(150, 150).alpha(), 0);
        QVERIFY(m_pTool->isPainting());
        QTest::keyClick(m_pCanvas.get(), Qt::Key_Escape);
        QVERIFY(!m_pTool->isPainting());
        QVERIFY(pen(QEvent::TabletMove, QPointF(300, 300), 1.0));
        QVERIFY(pen(QEvent::TabletRelease, QPointF(300, 300), 0.0));
        QCOMPARE(OrvTestDocument::pixelsOf(pLayer->paintImageSet()), Before);
    }

    void imagesThatAreShownAloneHaveTheSizeOfTheirChannel()
    {
        // The left half is red; the image has a quarter of the pixels, then four times as many.
        OrvShaderInput* pChannel = m_Document.newChannel(QSize(512, 512));
        OrvLayer* pLayer = m_Document.newPaintLayer(pChannel);
        OrvImageSet* pImages = pLayer->paintImageSet();
        pImages->buffer().fill(OrvColor(1.0f, 0.0f, 0.0f), QRect(0, 0, 256, 512));
        pImages->pixelsWritten(pImages->extent());
        QVERIFY(pLayer->addMaskImageSet(OrvLayer::FilledMask, OrvColor::white()));
        OrvLayerShaderManager& Shaders = OrvLayerShaderManager::instance();
        OrvSnBaseNode* const Views[]
            = {Shaders.getCurrentCurrentComponentShader(), Shaders.getCurrentCurrentLayerShader()};
        for (const int Edge : {256, 1024}) {
            QVERIFY(pLayer->resizeImageSets(0, Edge, true, true));
            for (OrvSnBaseNode* pView : Views) {
                Shaders.setCurrentShader(pView);
                OrvLayerManager::instance().setCurrentComponent(pLayer->paintNode());
                QVERIFY(isNear(shownAt(m_pCanvas.get(), {240, 500}), Qt::red));
                QVERIFY(!isNear(shownAt(m_pCanvas.get(), {272, 500}), Qt::red, 60));
                QVERIFY(!isNear(shownAt(m_pCanvas.get(), {272, 20}), Qt::red, 60));
            }
            // Strokes show where they are painted.
            Shaders.setCurrentShader(Views[0]);
            QVERIFY(isSettled(m_pCanvas.get()));
            stroke({{400, 100}, {440, 100}});
            QVERIFY(isNear(shownAt(m_pCanvas.get(), {420, 100}), Qt::blue));
            QVERIFY(!isNear(shownAt(m_pCanvas.get(), {420, 140}), Qt::blue, 60));
            OrvUndoManager::instance().undo();
            QVERIFY(!isNear(shownAt(m_pCanvas.get(), {420, 100}), Qt::blue, 60));
        }
        OrvLayerManager::instance().setCurrentComponent(pLayer->maskNode());
        QVERIFY(isNear(shownAt(m_pCanvas.get(), {500, 500}), Qt::white));
        OrvUndoManager::instance().undo();
        OrvUndoManager::instance().undo();
        OrvLayerManager::instance().setCurrentComponent(pLayer->paintNode());
        QVERIFY(isNear(shownAt(m_pCanvas.get(), {240, 500}), Qt::red));
        pChannel->deleteLayers({pLayer});
        QVERIFY(isSettled(m_pCanvas.get()));
    }

    void tilesStandWhereTheirNumbersSay()
    {
        OrvShaderNetwork* pNetwork = m_Document.newProject();
        pNetwork->geoEntity()->setUdimTiles({1001, 1002, 1011});
        OrvShaderInput* pChannel
            = OrvShaderInputUtils::create(pNetwork, QStringLiteral("Tiles"), QSize(64, 64), GL_UNSIGNED_BYTE);
        OrvShaderInputManager::instance().makeShaderInputCurrent(pChannel, true);
        OrvLayer* pLayer = m_Document.newPaintLayer(pChannel);
        const QRect Upper = pChannel->layout().tileRect(1011);
        pLayer->paintImageSet()->buffer().fill(OrvColor(1.0f, 0.0f, 0.0f), Upper);
        pLayer->paintImageSet()->pixelsWritten(Upper);
        QVERIFY(isNear(shownAt(m_pCanvas.get(), {32, 32}), Qt::red));
        QVERIFY(!isNear(shownAt(m_pCanvas.get(), {32, 76}), Qt::red, 80));
        // No tile 1012: neither picture nor checker pattern there.
        const QColor Gap = shownAt(m_pCanvas.get(), {96, 32});
        QVERIFY(isNear(Gap, shownAt(m_pCanvas.get(), {-4, 64}), 3));
    }

private:
    void stroke(const std::vector<QPointF>& Points)
    {
        QVERIFY(m_pTool->begin(Points.front()));
        for (const QPointF& Point : Points)
            m_pTool->moveTo(Point);
        m_pTool->end();
    }

    /// At a point of the picture; true when the canvas took the event.
    bool pen(QEvent::Type Type, const QPointF& Point, double Pressure,
        Qt::KeyboardModifiers Modifiers = Qt::NoModifier)
    {
        const QPointF Place = m_pCanvas->toWidget(Point);
        const Qt::MouseButton Button = Type == QEvent::TabletMove ? Qt::NoButton : Qt::LeftButton;
        QTabletEvent Event(Type, Place, m_pCanvas->mapToGlobal(Place.toPoint()), QTabletEvent::Stylus,
            QTabletEvent::Pen, Pressure, 0, 0, 0.0, 0.0, 0, Modifiers, 1, Button,
            Type == QEvent::TabletRelease ? Qt::NoButton : Qt::LeftButton);
        QApplication::sendEvent(m_pCanvas.get(), &Event);
        return Event.isAccepted();
    }

    OrvTestDocument m_Document;
    std::unique_ptr<OrvCanvasTools> m_pTools;
    OrvBrushTool* m_pTool = nullptr;
    std::unique_ptr<OrvCanvas> m_pCanvas;
};

QTEST_MAIN(TstCanvas)
#include "TstCanvas.moc"
