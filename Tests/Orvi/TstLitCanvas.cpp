#include "Tests/Orvi/OrvTestCanvas.h"
#include "Tests/Orvi/OrvTestDocument.h"

#include "Orvi/OrvBrushTool.h"
#include "Orvi/OrvCanvasTools.h"

#include "OrvCore/Channels/OrvSnShaderInputNode.h"
#include "OrvCore/Object/OrvSettings.h"
#include "OrvCore/Shaders/OrvFlatShading.h"
#include "OrvCore/Shaders/OrvLayerShaderManager.h"
#include "OrvCore/Shaders/OrvLayerShaderUtils.h"
#include "OrvCoreModules/Window/OrvStatusManager.h"

#include <functional>

using namespace OrvTestCanvas;

namespace {

const QString BaseColor = QStringLiteral("Base Color"), Roughness = QStringLiteral("Roughness");

OrvLayerShaderManager& shaders()
{
    return OrvLayerShaderManager::instance();
}

OrvFlatShading::Light light()
{
    return OrvFlatShading::light();
}

} // namespace

/// A shader's lit picture on the screen, painting on what it is made of, and the light's handle.
class TstLitCanvas : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        OrvFlatShading::instance().resetLight();
        m_pTools = std::make_unique<OrvCanvasTools>();
        OrvBrush Brush;
        Brush.setSize(30);
        Brush.setHardness(1.0);
        Brush.setColor(Qt::blue);
        m_pTools->brushTool()->setBrush(Brush);
        m_pCanvas = newCanvas(m_pTools.get());
        m_pColor = m_Document.newChannel(QSize(256, 256));
        m_pPaint = m_Document.newPaintLayer(m_pColor, OrvColor(0.4f, 0.1f, 0.1f));
        m_pShader
            = OrvLayerShaderUtils::createShaderFromKey(QStringLiteral("Shader/MetallicRoughness"), true);
        QVERIFY(m_pShader && m_pShader->setInputShaderInput(BaseColor, m_pColor));
    }
    void cleanup()
    {
        m_pCanvas.reset();
        m_pTools.reset();
        OrvProjectManager::instance().closeProject();
    }

    void lightOfAProjectGoesWithIt()
    {
        const float Height = OrvFlatShading::light().Height;
        OrvFlatShading::Light Low = OrvFlatShading::light();
        Low.Height = Height / 2;
        OrvFlatShading::instance().setLight(Low);
        OrvProjectManager::instance().closeProject();
        QCOMPARE(OrvFlatShading::light().Height, Height);
    }

    void showsWhatTheCurrentShaderShows()
    {
        const auto isLit = [this] {
            const QColor Near = shownAt(m_pCanvas.get(), {40, 60}),
                         Far = shownAt(m_pCanvas.get(), {250, 250});
            return Near.red() > Far.red() + 20;
        };
        QVERIFY(isLit());
        shaders().setCurrentShader(shaders().getCurrentChannelShader());
        QVERIFY(!isLit());
        shaders().setCurrentShader(shaders().getCurrentMaterialProxyShader());
        QVERIFY(isLit());
        // "Material" follows the shader that was chosen last.
        OrvLayerShader* pFlat
            = OrvLayerShaderUtils::createShaderFromKey(QStringLiteral("Shader/Unlit"), true);
        QVERIFY(pFlat && pFlat->setInputShaderInput(QStringLiteral("Color"), m_pColor));
        QVERIFY(!isLit());
        shaders().setCurrentShader(shaders().getCurrentMaterialProxyShader());
        QVERIFY(!isLit());
        shaders().setCurrentShader(m_pShader->node());
        shaders().setCurrentShader(shaders().getCurrentMaterialProxyShader());
        QVERIFY(isLit());
    }

    void saysWhatIsPaintedOn()
    {
        const OrvCanvasSource Source;
        QTRY_COMPARE(Source.partName(), QStringLiteral("lit, painting \"Color\""));
        OrvLayer* pLayer = m_pColor->layerList().first();
        pLayer->setName(QStringLiteral("Splash"));
        pLayer->addMaskImageSet();
        OrvLayerManager::instance().setCurrentComponent(pLayer->maskNode());
        const QString Mask = QStringLiteral("painting the mask of \"Splash\"");
        QTRY_COMPARE(Source.partName(), QStringLiteral("lit, ") + Mask);
        shaders().setCurrentShader(shaders().getCurrentChannelShader());
        QTRY_COMPARE(Source.partName(), Mask);
        OrvLayerManager::instance().setCurrentComponent(pLayer->paintNode());
        QTRY_COMPARE(Source.partName(), QString());
    }

    /// A mark tells that a picture, lit or not, takes its time, and goes when all is there.
    void saysThatItComputes()
    {
        for (OrvSnBaseNode* pShown : {m_pShader->node(), shaders().getCurrentChannelShader()}) {
            shaders().setCurrentShader(pShown);
            QVERIFY(isSettled(m_pCanvas.get()) && !m_pCanvas->showsActivity());
            const QRect Mark = OrvCanvasActivity::rect(1.0);
            const QImage Before = m_pCanvas->grab(Mark).toImage();
            {
                const OrvCanvasRenderer::Pause Longer(m_pCanvas->renderer());
                m_pPaint->paintImageSet()->buffer().fill(OrvColor::white(), QRect(200, 200, 9, 9));
                m_pPaint->paintImageSet()->pixelsWritten(QRect(200, 200, 9, 9));
                QApplication::processEvents();
                QVERIFY(!m_pCanvas->isSettled() && !m_pCanvas->showsActivity());
                QTRY_VERIFY_WITH_TIMEOUT(m_pCanvas->showsActivity(), SettleTime);
                QVERIFY(!areAlike(m_pCanvas->grab(Mark).toImage(), Before));
            }
            QTRY_VERIFY_WITH_TIMEOUT(!m_pCanvas->showsActivity(), SettleTime);
            QVERIFY(m_pCanvas->isSettled() && areAlike(m_pCanvas->grab(Mark).toImage(), Before));
        }
    }

    void followsEveryEdit_data()
    {
        QTest::addColumn<double>("Zoom");
        QTest::newRow("fitted") << 0.0;
        QTest::newRow("quarter") << 0.25;
        QTest::newRow("large") << 2.0;
    }
    void followsEveryEdit()
    {
        QFETCH(double, Zoom);
        OrvShaderInput *pRough = newChannel(QStringLiteral("Roughness"), QSize(128, 128), 0.2f),
                       *pHeight = newChannel(QStringLiteral("Height"), QSize(512, 512), 0.0f);
        const std::vector<std::pair<const char*, std::function<void()>>> Edits{
            {"roughness connected", [&] { m_pShader->setInputShaderInput(Roughness, pRough); }},
            {"roughness inverted", [&] { m_pShader->setInputInverted(Roughness, true); }},
            {"metallic", [&] { m_pShader->setInputValue(QStringLiteral("Metallic"), OrvColor::white()); }},
            {"roughness off", [&] { m_pShader->setInputEnabled(Roughness, false); }},
            {"height connected",
                [&] { m_pShader->setInputShaderInput(QStringLiteral("Displacement"), pHeight); }},
            {"stroke of height",
                [&] {
                    choose(pHeight);
                    stroke({{100, 100}, {400, 300}}, QSize(512, 512));
                }},
            {"stroke of colour",
                [&] {
                    choose(m_pColor);
                    stroke({{400, 100}, {100, 300}}, QSize(512, 512));
                }},
            {"light",
                [&] {
                    OrvFlatShading::Light Moved;
                    Moved.U = 0.7f;
                    OrvFlatShading::instance().setLight(Moved);
                }},
            {"undo of the stroke", [&] { OrvUndoManager::instance().undo(); }},
            {"height disconnected",
                [&] { m_pShader->setInputShaderInput(QStringLiteral("Displacement"), nullptr); }},
            {"undo of that", [&] { OrvUndoManager::instance().undo(); }},
            {"channel removed",
                [&] {
                    OrvShaderInputManager::instance().destroy(
                        pHeight, OrvShaderInputManager::SharersAreDeleted);
                }},
            {"undo of that too", [&] { OrvUndoManager::instance().undo(); }},
            {"shader removed", [&] { OrvLayerShaderUtils::destroy(m_pShader, false); }},
        };
        for (const auto& Edit : Edits) {
            applyZoom(m_pCanvas.get(), Zoom);
            QVERIFY2(isSettled(m_pCanvas.get()), Edit.first);
            Edit.second();
            QApplication::processEvents();
            QVERIFY2(isSettled(m_pCanvas.get()), Edit.first);
            const std::unique_ptr<OrvCanvas> pFresh = newCanvas(m_pTools.get());
            applyZoom(m_pCanvas.get(), Zoom);
            applyZoom(pFresh.get(), Zoom);
            m_pCanvas->fit(); // the same place on both
            pFresh->fit();
            QVERIFY(isSettled(m_pCanvas.get()) && isSettled(pFresh.get()));
            QVERIFY2(areAlike(m_pCanvas->grab().toImage(), pFresh->grab().toImage()), Edit.first);
        }
    }

    void paintsOnTheChannelBelowTheLight()
    {
        QVERIFY(isSettled(m_pCanvas.get()));
        const QColor Before = shownAt(m_pCanvas.get(), {180, 180});
        click(QPointF(180, 180));
        QCOMPARE(OrvTestDocument::pixelsOf(m_pPaint->paintImageSet()).pixelColor(180, 180), QColor(Qt::blue));
        const QColor After = shownAt(m_pCanvas.get(), {180, 175});
        QVERIFY(After.blue() > Before.blue() + 40 && After.red() < After.blue());
    }

    void channelsOfOtherSizes()
    {
        // The picture has the larger size; what is painted on has a quarter of it.
        OrvShaderInput* pRough = newChannel(QStringLiteral("Roughness"), QSize(1024, 1024), 0.5f);
        QVERIFY(m_pShader->setInputShaderInput(Roughness, pRough));
        QVERIFY(isSettled(m_pCanvas.get()));
        QCOMPARE(OrvFlatShading::layout(m_pShader).tileSize(), QSize(1024, 1024));
        choose(m_pColor);
        click(QPointF(800, 600));
        const QImage Painted = OrvTestDocument::pixelsOf(m_pPaint->paintImageSet());
        QCOMPARE(Painted.pixelColor(200, 150), QColor(Qt::blue));
        QVERIFY(Painted.pixelColor(200, 145) != QColor(Qt::blue)); // the brush is as large as it looks
        // Tiles that the picture does not have: nothing is painted in the wrong place.
        const auto* pNode = m_pColor->node();
        const_cast<OrvSnBaseNode*>(pNode)->setUserAttributeValue(
            OrvSnShaderInputNode::TilesAttribute, QVariantList{1001, 1011});
        QVERIFY(isSettled(m_pCanvas.get()));
        const int Steps = OrvTestDocument::historyLength();
        click(QPointF(500, 500));
        QCOMPARE(OrvTestDocument::historyLength(), Steps);
    }

    void theHandleMovesTheLight()
    {
        QVERIFY(isSettled(m_pCanvas.get()));
        const int Steps = OrvTestDocument::historyLength();
        const QPoint Handle = handle();
        const QImage Before = m_pCanvas->grab().toImage();
        const QPoint Target = m_pCanvas->toWidget(QPointF(192, 192)).toPoint();
        drag(Handle, Target);
        QVERIFY(qAbs(light().U - 0.75f) < 0.01f && qAbs(light().V - 0.25f) < 0.01f);
        QVERIFY(isSettled(m_pCanvas.get()));
        QVERIFY(!areAlike(m_pCanvas->grab().toImage(), Before));
        QVERIFY(shownAt(m_pCanvas.get(), {150, 190}).red() > shownAt(m_pCanvas.get(), {20, 20}).red());
        // The pointer goes on holding it where it took it.
        drag(handle() + QPoint(4, 3), handle() + QPoint(4, 3));
        QVERIFY(qAbs(light().U - 0.75f) < 0.01f);
        // Raised, brightened, and no zoom; beside it the wheel zooms.
        const double Zoom = m_pCanvas->zoom();
        const OrvFlatShading::Light Low = light();
        wheel(*m_pCanvas, handle(), 120);
        QVERIFY(light().Height > Low.Height && light().Intensity == Low.Intensity);
        wheel(*m_pCanvas, handle(), -120, Qt::ControlModifier);
        QVERIFY(light().Intensity < Low.Intensity);
        QCOMPARE(m_pCanvas->zoom(), Zoom);
        wheel(*m_pCanvas, handle() - QPoint(60, 60), 120);
        QVERIFY(m_pCanvas->zoom() > Zoom);
        QTest::mouseDClick(m_pCanvas.get(), Qt::LeftButton, Qt::NoModifier, handle());
        QVERIFY(light() == OrvFlatShading::Light());
        QCOMPARE(OrvTestDocument::historyLength(), Steps); // a view of the document, no edit
    }

    void aDragIsGivenUp()
    {
        QVERIFY(isSettled(m_pCanvas.get()));
        const QPoint Start = handle();
        QTest::mousePress(m_pCanvas.get(), Qt::LeftButton, Qt::NoModifier, Start);
        QCOMPARE(m_pCanvas->cursor().shape(), Qt::ClosedHandCursor);
        movePressed(*m_pCanvas, Start + QPoint(80, 80), Qt::LeftButton);
        QVERIFY(light() != OrvFlatShading::Light());
        QTest::keyClick(m_pCanvas.get(), Qt::Key_Escape);
        QVERIFY(light() == OrvFlatShading::Light());
        movePressed(*m_pCanvas, Start + QPoint(90, 90), Qt::LeftButton);
        QTest::mouseRelease(m_pCanvas.get(), Qt::LeftButton, Qt::NoModifier, Start + QPoint(90, 90));
        QVERIFY(light() == OrvFlatShading::Light());
        QTest::mouseMove(m_pCanvas.get(), Start);
        QCOMPARE(m_pCanvas->cursor().shape(), Qt::OpenHandCursor);
        QTest::mouseMove(m_pCanvas.get(), Start + QPoint(90, 90));
        QCOMPARE(m_pCanvas->cursor().shape(), Qt::CrossCursor);
    }

    void theHandleIsWhereItIsOfUse()
    {
        // Out of view it waits at the edge; without a lit picture, or unwanted, there is none.
        OrvFlatShading::Light Away;
        Away.U = 3.0f;
        OrvFlatShading::instance().setLight(Away);
        QVERIFY(isSettled(m_pCanvas.get()));
        QVERIFY(m_pCanvas->rect().contains(handle()));
        drag(handle(), m_pCanvas->toWidget(QPointF(128, 128)).toPoint());
        QVERIFY(qAbs(light().U - 0.5f) < 0.02f && qAbs(light().V - 0.5f) < 0.02f);
        m_pCanvas->light()->toggleHandle();
        click(QPointF(128, 128));
        QCOMPARE(OrvTestDocument::pixelsOf(m_pPaint->paintImageSet()).pixelColor(128, 128), QColor(Qt::blue));
        m_pCanvas->light()->toggleHandle();
        shaders().setCurrentShader(shaders().getCurrentChannelShader());
        QVERIFY(isSettled(m_pCanvas.get()));
        const OrvFlatShading::Light Before = light();
        drag(m_pCanvas->toWidget(QPointF(128, 128)).toPoint(), QPoint(300, 300));
        QVERIFY(light() == Before);
        // A shader's picture that no light falls on has none either.
        OrvLayerShader* pFlat
            = OrvLayerShaderUtils::createShaderFromKey(QStringLiteral("Shader/Unlit"), true);
        QVERIFY(pFlat && pFlat->setInputShaderInput(QStringLiteral("Color"), m_pColor));
        QVERIFY(isSettled(m_pCanvas.get()) && !m_pCanvas->light()->isShown());
        shaders().setCurrentShader(m_pShader->node());
        QVERIFY(isSettled(m_pCanvas.get()) && m_pCanvas->light()->isShown());
    }

    void theLightIsKept()
    {
        OrvFlatShading::Light Odd;
        Odd.Height = -5.0f;
        Odd.Intensity = 1e9f;
        Odd.U = NAN;
        OrvFlatShading::instance().setLight(Odd);
        QVERIFY(light().Height > 0.0f && light().Intensity < 100.0f && std::isfinite(light().U));
        Odd = OrvFlatShading::Light();
        Odd.V = 0.125f;
        OrvFlatShading::instance().setLight(Odd);
        QTRY_COMPARE_WITH_TIMEOUT(OrvSettings().value(QStringLiteral("Light/V")).toDouble(), 0.125, 5000);
    }

private:
    OrvShaderInput* newChannel(const QString& Name, const QSize& Size, float Grey)
    {
        OrvShaderInput* pChannel = OrvShaderInputUtils::create(
            m_pColor->node()->network(), Name, Size, GL_HALF_FLOAT, nullptr, true);
        m_Document.newPaintLayer(pChannel, OrvColor(Grey, Grey, Grey));
        return pChannel;
    }
    static void choose(OrvShaderInput* pChannel)
    {
        OrvShaderInputManager::instance().makeShaderInputCurrent(pChannel, true);
        OrvLayer* pLayer = pChannel->layerList().first();
        pLayer->makeCurrent(false, true);
        OrvLayerManager::instance().setCurrentComponent(pLayer->paintNode());
    }
    void stroke(const std::vector<QPointF>& Points, const QSize& PictureSize)
    {
        QVERIFY(m_pTools->brushTool()->begin(Points.front(), false, OrvUdimLayout(PictureSize)));
        for (const QPointF& Point : Points)
            m_pTools->brushTool()->moveTo(Point);
        m_pTools->brushTool()->end();
    }
    void click(const QPointF& PicturePoint)
    {
        QVERIFY(isSettled(m_pCanvas.get()));
        QTest::mouseClick(
            m_pCanvas.get(), Qt::LeftButton, Qt::NoModifier, m_pCanvas->toWidget(PicturePoint).toPoint());
    }
    void drag(const QPoint& From, const QPoint& To)
    {
        QTest::mousePress(m_pCanvas.get(), Qt::LeftButton, Qt::NoModifier, From);
        movePressed(*m_pCanvas, (From + To) / 2, Qt::LeftButton);
        movePressed(*m_pCanvas, To, Qt::LeftButton);
        QTest::mouseRelease(m_pCanvas.get(), Qt::LeftButton, Qt::NoModifier, To);
    }
    /// Where the user sees it.
    QPoint handle() const
    {
        const QSize Tile = OrvFlatShading::layout(m_pShader).tileSize();
        const QPointF Place = m_pCanvas->toWidget(
            QPointF(double(light().U) * Tile.width(), (1.0 - double(light().V)) * Tile.height()));
        const int Margin = 20;
        return {qBound(Margin, qRound(Place.x()), m_pCanvas->width() - Margin),
            qBound(Margin, qRound(Place.y()), m_pCanvas->height() - Margin)};
    }

    OrvTestDocument m_Document;
    std::unique_ptr<OrvCanvasTools> m_pTools;
    std::unique_ptr<OrvCanvas> m_pCanvas;
    OrvShaderInput* m_pColor = nullptr;
    OrvLayer* m_pPaint = nullptr;
    OrvLayerShader* m_pShader = nullptr;
};

QTEST_MAIN(TstLitCanvas)
#include "TstLitCanvas.moc"
