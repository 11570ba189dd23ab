#include "Tests/Orvi/OrvTestDocument.h"

#include "Orvi/OrvBrushBar.h"
#include "Orvi/OrvBrushTool.h"
#include "Orvi/OrvCanvasSelection.h"

#include "OrvCoreModules/Widgets/OrvColorSwatch.h"
#include "OrvCoreModules/Window/OrvStatusManager.h"

#include <QtTest/QtTest>

#include <algorithm>
#include <cmath>

namespace {

OrvBrush brush(double Size, double Hardness, double Opacity, const QColor& Color, bool Erases = false)
{
    OrvBrush Brush;
    Brush.setSize(Size);
    Brush.setHardness(Hardness);
    Brush.setOpacity(Opacity);
    Brush.setColor(Color);
    Brush.setErases(Erases);
    return Brush;
}

/// The sRGB value of linear light, 0 to 255.
int encoded(double Linear)
{
    const double Value = Linear <= 0.0031308 ? 12.92 * Linear : 1.055 * std::pow(Linear, 1.0 / 2.4) - 0.055;
    return int(std::lround(Value * 255.0));
}

bool isNear(int One, int Other)
{
    return std::abs(One - Other) <= 1;
}

} // namespace

/// Strokes on a real document, checked by their pixels.
class TstBrush : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_pChannel = m_Document.newChannel(QSize(300, 200));
        m_pLayer = m_Document.newPaintLayer(m_pChannel);
        m_pTool = std::make_unique<OrvBrushTool>(&m_Selection);
    }
    void cleanup()
    {
        m_pTool.reset();
        OrvProjectManager::instance().closeProject();
    }

    void opacityCapsWithinAStrokeAndAddsUpBetweenStrokes()
    {
        m_pTool->setBrush(brush(20, 1.0, 0.5, Qt::red));
        // Back over itself: no darker.
        stroke({{50, 100}, {150, 100}, {50, 100}, {150, 100}});
        QCOMPARE(pixel(100, 100).alpha(), 128);
        QCOMPARE(pixel(100, 100).red(), 255);
        QCOMPARE(pixel(100, 100).green(), 0);
        QCOMPARE(pixel(100, 85).alpha(), 0);
        QCOMPARE(pixel(200, 100).alpha(), 0);
        stroke({{100, 50}, {100, 150}});
        QVERIFY(isNear(pixel(100, 100).alpha(), 191));
        QCOMPARE(pixel(100, 60).alpha(), 128);
    }

    void imagesOfAnotherSizeArePaintedWhereTheyAreSeen()
    {
        m_pTool->setBrush(brush(20, 1.0, 1.0, Qt::red));
        QVERIFY(m_pLayer->resizeImageSets(0, -1, true, true)); // half as large in each direction
        stroke({{100, 60}, {200, 60}});
        QCOMPARE(pixel(75, 30).alpha(), 255);
        QCOMPARE(pixel(100, 30).alpha(), 255);
        QCOMPARE(pixel(75, 37).alpha(), 0);
        QCOMPARE(pixel(110, 30).alpha(), 0);
    }

    void softEdgesStaySoftHoweverTheStrokeIsCut()
    {
        // The cross-section of a stroke is that of one dab, whether it came in two points or in a hundred.
        m_pTool->setBrush(brush(60, 0.0, 1.0, Qt::white));
        stroke({{80, 60}, {220, 60}});
        std::vector<QPointF> Many;
        for (int Step = 0; Step <= 140; ++Step)
            Many.emplace_back(80 + Step, 150);
        stroke(Many);
        int Last = 256;
        for (int Away = 0; Away < 34; ++Away) {
            const int Alpha = pixel(150, 60 + Away).alpha();
            QVERIFY2(Alpha <= Last, qPrintable(QString::number(Away)));
            QVERIFY(std::abs(Alpha - pixel(150, 150 + Away).alpha()) <= 6);
            Last = Alpha;
        }
        QVERIFY(pixel(150, 60).alpha() > 250);
        QVERIFY(isNear(pixel(150, 75).alpha(), 128) || std::abs(pixel(150, 75).alpha() - 128) < 16);
        QCOMPARE(pixel(150, 92).alpha(), 0);
    }

    void colorsMixInLinearLight()
    {
        OrvLayer* pWhite = m_Document.newPaintLayer(m_pChannel, OrvColor::white());
        m_pTool->setBrush(brush(40, 1.0, 0.5, Qt::black));
        stroke({{100, 100}, {120, 100}});
        const QColor Mixed = OrvTestDocument::pixelsOf(pWhite->paintImageSet()).pixelColor(110, 100);
        QVERIFY(isNear(Mixed.red(), encoded(0.5)));
        QCOMPARE(Mixed.alpha(), 255);
        // Colour that is seen through nothing else keeps its hue at any alpha.
        m_pLayer->makeCurrent(false, true);
        OrvLayerManager::instance().setCurrentComponent(m_pLayer->paintNode());
        m_pTool->setBrush(brush(40, 0.0, 1.0, QColor(200, 100, 50)));
        stroke({{100, 100}, {101, 100}});
        const QColor Faint = pixel(116, 100);
        QVERIFY(Faint.alpha() > 8 && Faint.alpha() < 200);
        QVERIFY(isNear(Faint.red(), 200) && isNear(Faint.green(), 100) && isNear(Faint.blue(), 50));
    }

    void erasingTakesAlphaAwayAndKeepsColor()
    {
        m_pTool->setBrush(brush(40, 1.0, 1.0, QColor(10, 200, 30)));
        stroke({{60, 100}, {240, 100}});
        m_pTool->setBrush(brush(40, 1.0, 0.25, Qt::red, true));
        stroke({{150, 60}, {150, 140}});
        QVERIFY(isNear(pixel(150, 100).alpha(), 191));
        QVERIFY(isNear(pixel(150, 100).green(), 200));
        QCOMPARE(pixel(100, 100).alpha(), 255);
    }

    void masksTakeTheNumbersThatAreSeen()
    {
        QVERIFY(m_pLayer->addMaskImageSet(OrvLayer::FilledMask, OrvColor::white()));
        OrvLayerManager::instance().setCurrentComponent(m_pLayer->maskNode());
        m_pTool->setBrush(brush(40, 1.0, 1.0, QColor(64, 64, 64)));
        stroke({{100, 100}, {140, 100}});
        QVERIFY(std::abs(OrvTestDocument::scalarAt(m_pLayer->maskImageSet(), {120, 100}) - 64.0f / 255.0f)
            < 0.003f);
        QCOMPARE(OrvTestDocument::scalarAt(m_pLayer->maskImageSet(), {120, 20}), 1.0f);
        m_pTool->setBrush(brush(40, 1.0, 1.0, Qt::white, true));
        stroke({{100, 100}, {140, 100}});
        QCOMPARE(OrvTestDocument::scalarAt(m_pLayer->maskImageSet(), {120, 100}), 0.0f);
        QVERIFY(m_pLayer->paintImageSet()->isUniform());
    }

    /// Before it is painted, and only where the colour does not stay what it is.
    void theBarShowsTheGreyThatAMaskTakes()
    {
        OrvBrushBar Bar(m_pTool.get());
        auto* pGrey = Bar.findChildren<OrvColorSwatch*>().value(1);
        QVERIFY(pGrey);
        const auto isShown = [&Bar, pGrey] {
            const QList<QAction*> Entries = Bar.actions();
            return std::any_of(Entries.begin(), Entries.end(),
                [&](QAction* pEntry) { return Bar.widgetForAction(pEntry) == pGrey && pEntry->isVisible(); });
        };
        m_pTool->setBrush(brush(40, 1.0, 1.0, Qt::red));
        QVERIFY(!isShown());
        QVERIFY(m_pLayer->addMaskImageSet(OrvLayer::FilledMask, OrvColor::white()));
        OrvLayerManager::instance().setCurrentComponent(m_pLayer->maskNode());
        QVERIFY(isShown());
        stroke({{100, 100}, {140, 100}});
        const double Painted = OrvTestDocument::scalarAt(m_pLayer->maskImageSet(), {120, 100});
        QVERIFY(Painted > 0.0 && std::abs(Painted - pGrey->color().toQColor().redF()) < 0.003);
        m_pTool->setBrush(brush(40, 1.0, 1.0, QColor(64, 64, 64)));
        QVERIFY(!isShown());
        m_pTool->setBrush(brush(40, 1.0, 1.0, Qt::red));
        QVERIFY(isShown());
        OrvLayerManager::instance().setCurrentComponent(m_pLayer->paintNode());
        QVERIFY(!isShown());
    }

    void aStrokeIsOneUndoStepOfTheTilesThatItTouched()
    {
        m_pTool->setBrush(brush(30, 0.5, 0.8, Qt::blue));
        stroke({{20, 20}, {90, 40}});
        const QImage First = pixels();
        const int Steps = OrvTestDocument::historyLength();
        stroke({{30, 30}, {60, 90}, {100, 20}});
        const QImage Second = pixels();
        QCOMPARE(OrvTestDocument::historyLength(), Steps + 1);

        // What changed far away meanwhile is not the stroke's to restore.
        const quint32 Green = 0xff00ff00;
        OrvImageBuffer Buffer = m_pLayer->paintImageSet()->buffer();
        Buffer.write(
            QRect(290, 190, 1, 1), {GL_UNSIGNED_BYTE, OrvPixelFormat::Rgba, OrvPixelFormat::Srgb}, &Green);
        m_pLayer->paintImageSet()->pixelsWritten(QRect(290, 190, 1, 1));
        OrvUndoManager::instance().undo();
        QImage Expected = First;
        Expected.setPixelColor(290, 190, pixel(290, 190));
        QVERIFY(pixel(290, 190).alpha() == 255);
        QCOMPARE(pixels(), Expected);
        OrvUndoManager::instance().redo();
        QCOMPARE(pixels().copy(0, 0, 256, 128), Second.copy(0, 0, 256, 128));
        OrvUndoManager::instance().undo();
        OrvUndoManager::instance().undo();
        QCOMPARE(pixel(50, 30).alpha(), 0);
    }

    void strokesThatLeaveTheImageAreCut()
    {
        m_pTool->setBrush(brush(50, 1.0, 1.0, Qt::red));
        stroke({{-40, -40}, {20, 20}, {400, 260}});
        QCOMPARE(pixel(0, 0).alpha(), 255);
        QCOMPARE(pixel(299, 199).alpha(), 255);
        OrvUndoManager::instance().undo();
        QCOMPARE(pixel(0, 0).alpha(), 0);
        // Wholly outside: nothing happened, so there is nothing to undo.
        const int Steps = OrvTestDocument::historyLength();
        stroke({{-400, -400}, {-300, -300}});
        QVERIFY(OrvTestDocument::historyLength() <= Steps);
    }

    void nothingIsUndoneUnderTheBrushAndEscapeTakesTheStrokeBack()
    {
        m_pTool->setBrush(brush(30, 1.0, 1.0, Qt::red));
        stroke({{20, 20}, {60, 20}});
        const QImage Before = pixels();
        const int Steps = OrvTestDocument::historyLength();
        QVERIFY(m_pTool->begin({100, 100}));
        m_pTool->moveTo({160, 120});
        OrvUndoManager::instance().undo();
        QCOMPARE(pixel(40, 20).alpha(), 255);
        m_pTool->cancel();
        QCOMPARE(pixels(), Before);
        QCOMPARE(OrvTestDocument::historyLength(), Steps);
        OrvUndoManager::instance().undo();
        QCOMPARE(pixel(40, 20).alpha(), 0);
    }

    void whatMustNotChangeRefusesWithAReason_data()
    {
        QTest::addColumn<QString>("Case");
        for (const char* pCase : {"locked layer", "locked channel", "adjustment layer", "no layer"})
            QTest::newRow(pCase) << QString::fromLatin1(pCase);
    }
    void whatMustNotChangeRefusesWithAReason()
    {
        QFETCH(QString, Case);
        if (Case == QLatin1String("locked layer"))
            m_pLayer->setLocked(true);
        else if (Case == QLatin1String("locked channel"))
            m_pChannel->setLocked(true);
        else if (Case == QLatin1String("adjustment layer"))
            m_pChannel
                ->createAdjustmentLayer(QStringLiteral("Filter/Adjust/Invert"), OrvTestDocument::LayerFlags)
                ->makeCurrent(false, true);
        else
            OrvProjectManager::instance().closeProject();
        OrvStatusManager::instance().showMessage(QString());
        QVERIFY(!m_pTool->begin({50, 50}));
        QVERIFY(!OrvStatusManager::instance().text().isEmpty());
    }

    void sizesStepUpAndDownWithinTheirRange()
    {
        OrvBrush Brush = brush(1, 1.0, 1.0, Qt::red);
        Brush.shrink();
        QCOMPARE(Brush.size(), OrvBrush::SmallestSize);
        double Last = 0.0;
        for (; Brush.size() < OrvBrush::LargestSize; Brush.grow()) {
            QVERIFY(Brush.size() > Last);
            Last = Brush.size();
        }
        Brush.grow();
        QCOMPARE(Brush.size(), OrvBrush::LargestSize);
        // The smallest brush still paints its pixel.
        m_pTool->setBrush(brush(1, 1.0, 1.0, Qt::red));
        stroke({{10.5, 10.5}, {10.6, 10.5}});
        QVERIFY(pixel(10, 10).alpha() > 200);
        QVERIFY(pixel(13, 10).alpha() == 0);
    }

private:
    void stroke(const std::vector<QPointF>& Points)
    {
        QVERIFY(m_pTool->begin(Points.front()));
        for (std::size_t Index = 1; Index < Points.size(); ++Index)
            m_pTool->moveTo(Points[Index]);
        m_pTool->end();
    }
    QImage pixels() const { return OrvTestDocument::pixelsOf(m_pLayer->paintImageSet()); }
    QColor pixel(int X, int Y) const { return pixels().pixelColor(X, Y); }

    OrvTestDocument m_Document;
    OrvShaderInput* m_pChannel = nullptr;
    OrvLayer* m_pLayer = nullptr;
    OrvCanvasSelection m_Selection;
    std::unique_ptr<OrvBrushTool> m_pTool;
};

QTEST_MAIN(TstBrush)
#include "TstBrush.moc"
