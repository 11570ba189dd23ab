#include "Tests/Orvi/OrvTestDocument.h"

#include "Orvi/OrvSampleProject.h"

#include "OrvCore/Layers/OrvLayerStreamUtils.h"
#include "OrvCore/Network/OrvNodeDescription.h"
#include "OrvCore/Network/OrvNodeEvaluation.h"
#include "OrvCore/Shaders/OrvFlatShading.h"
#include "OrvCore/Shaders/OrvLayerShaderManager.h"

#include "OrvDdi/Engine/OrvEngineNode.h"

#include <QtCore/QJsonDocument>
#include <QtTest/QtTest>

namespace {

constexpr int Edge = 256;

OrvShaderInput* channel(const QString& Name)
{
    const OrvProject* pProject = OrvProjectManager::instance().currentProject();
    for (OrvShaderInput* pChannel : OrvShaderInputManager::instance().getShaderInputsFromNetwork(
             pProject->currentGeoEntity()->shaderNetwork())) {
        if (pChannel->name() == Name)
            return pChannel;
    }
    return nullptr;
}

QByteArray graph()
{
    const OrvProject* pProject = OrvProjectManager::instance().currentProject();
    const auto& Nodes = pProject->currentGeoEntity()->shaderNetwork()->nodes();
    return QJsonDocument(OrvNodeSubgraph::capture(Nodes).toJson()).toJson();
}

std::vector<float> pixels(const OrvShaderInput* pChannel)
{
    std::vector<float> Pixels(std::size_t(Edge) * Edge * 4);
    OrvNodeEvaluation::result(pChannel->node())
        ->render(pChannel->layout().extent(), 1.0, {GL_FLOAT, OrvPixelFormat::Rgba, OrvPixelFormat::Linear},
            Pixels.data());
    return Pixels;
}

} // namespace

/// The sample shows everything, looks the same each time and survives its own file.
class TstSampleProject : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { OrvSampleProject::build(Edge); }
    void cleanupTestCase() { OrvProjectManager::instance().closeProject(); }

    void hasChannelsOfSeveralDepths()
    {
        QVERIFY(channel("Base Color") && channel("Roughness") && channel("Displacement"));
        QVERIFY(!channel("Base Color")->isScalar() && channel("Roughness")->isScalar());
        QCOMPARE(int(channel("Displacement")->imageSetDepth()), GL_HALF_FLOAT);
        QCOMPARE(OrvShaderInputManager::instance().currentShaderInput(), channel("Base Color"));
        QVERIFY(!OrvProjectManager::instance().isModified());
    }

    void isLitByItsShader()
    {
        const OrvLayerShader* pShader = OrvLayerShaderManager::instance().currentLayerShader();
        QVERIFY(OrvFlatShading::litNode(pShader));
        for (const char* pInput : {"Base Color", "Metallic", "Roughness", "Displacement"})
            QCOMPARE(pShader->inputShaderInput(QString::fromLatin1(pInput)), channel(QString::fromLatin1(pInput)));
    }

    void hasLayersOfAllKinds()
    {
        const QList<OrvLayer*> Layers = channel("Base Color")->allLayers();
        QVERIFY(Layers.size() >= 12);
        const auto any = [&Layers](const auto& Is) { return std::any_of(Layers.begin(), Layers.end(), Is); };
        QVERIFY(any([](OrvLayer* p) { return p->isPaintableLayer() && !p->paintImageSet()->isUniform(); }));
        QVERIFY(any([](OrvLayer* p) { return p->isAdjustmentLayer(); }));
        QVERIFY(any([](OrvLayer* p) { return p->isProceduralLayer(); }));
        QVERIFY(any([](OrvLayer* p) { return p->isGroupLayer() && p->parentGroup(); }));
        QVERIFY(any([](OrvLayer* p) {
            return p->isGroupLayer() && OrvLayerStreamUtils::isLayerGroupPassThrough(p->blendNode());
        }));
        QVERIFY(any([](OrvLayer* p) {
            return p->isGroupLayer() && !OrvLayerStreamUtils::isLayerGroupPassThrough(p->blendNode());
        }));
        QVERIFY(any([](OrvLayer* p) { return p->hasMaskImageSet() && !p->maskImageSet()->isUniform(); }));
        QVERIFY(any([](OrvLayer* p) { return p->hasMaskStack() && p->maskStack()->layerList().size() > 2; }));
        QVERIFY(any([](OrvLayer* p) {
            return p->hasAdjustmentStack() && p->adjustmentStack()->layerList().size() > 1;
        }));
        QVERIFY(any([](OrvLayer* p) { return p->isPaintComponentShared(); }));
        QVERIFY(any([](OrvLayer* p) { return p->isLocked(); }));
        QVERIFY(any([](OrvLayer* p) { return !p->isVisible(); }));
        QVERIFY(any([](OrvLayer* p) { return p->color().isValid(); }));
    }

    void comesBackEqual()
    {
        const QByteArray Graph = graph();
        const std::vector<float> Color = pixels(channel("Base Color")), Heights = pixels(channel("Displacement"));
        const QString Path = m_Document.filePath(QStringLiteral("sample.orvi"));
        QString Error;
        OrvProjectManager& Projects = OrvProjectManager::instance();
        QVERIFY2(Projects.saveProjectAs(Path, Error), qPrintable(Error));
        Projects.closeProject();
        QVERIFY2(Projects.openProject(Path, Error), qPrintable(Error));
        QCOMPARE(graph(), Graph);
        QVERIFY(pixels(channel("Base Color")) == Color);
        QVERIFY(pixels(channel("Displacement")) == Heights);
    }

    void isMadeOnceAndOpenedAfterwards()
    {
        QStandardPaths::setTestModeEnabled(true);
        QDir(OrvSampleProject::path()).removeRecursively();
        QString Error;
        QVERIFY2(OrvSampleProject::open(Error), qPrintable(Error));
        QCOMPARE(channel("Base Color")->imageSetSize(), QSize(2048, 2048));
        OrvShaderInput* pColor = channel("Base Color");
        pColor->node()->setName(QStringLiteral("Mine"));
        QVERIFY(OrvProjectManager::instance().saveProject(Error));
        QVERIFY2(OrvSampleProject::open(Error), qPrintable(Error));
        QVERIFY(channel("Mine"));
        QDir(OrvSampleProject::path()).removeRecursively();
    }

private:
    OrvTestDocument m_Document;
};

QTEST_MAIN(TstSampleProject)
#include "TstSampleProject.moc"
