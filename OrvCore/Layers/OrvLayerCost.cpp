#include "OrvCore/Layers/OrvLayerCost.h"

#include "OrvCore/Layers/OrvChainEditing.h"
#include "OrvCore/Layers/OrvLayerUtils.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Network/OrvSnGraphNode.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Network/OrvSnOperationNode.h"
#include "OrvCore/Shaders/OrvSnShaderNode.h"
#include "OrvCore/Shelf/OrvSnCustomProceduralNode.h"

#include "OrvDdi/Engine/OrvOperationRegistry.h"
#include "OrvDdi/Image/OrvImageSet.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QHash>

namespace {

// Milliseconds per million pixels, measured on two cores.
constexpr double BlendCost = 1.1;
constexpr double ImageCost = 0.4;
constexpr double ShadingCost = 12.0;
constexpr double Unit = 100.0;

QString tr(const char* pText)
{
    return QCoreApplication::translate("OrvLayerCost", pText);
}

double operationCost(const OrvOperation& Operation)
{
    // Measured with default parameters on noise: the median of each group of the menu, and what is far from
    // it.
    static const QHash<QString, double> Measured{
        {QStringLiteral("Filter/Adjust"), 12.0},
        {QStringLiteral("Filter/Adjust/Stretch Saturation and Value"), 210.0},
        {QStringLiteral("Filter/Adjust/Dither"), 60.0},
        {QStringLiteral("Filter/Adjust/Posterize"), 55.0},
        {QStringLiteral("Filter/Color"), 37.0},
        {QStringLiteral("Filter/Color/Darkroom Negative"), 170.0},
        {QStringLiteral("Filter/Color/Warp Colors"), 115.0},
        {QStringLiteral("Filter/Color/Saturation"), 4.0},
        {QStringLiteral("Filter/Color/Temperature"), 4.0},
        {QStringLiteral("Filter/Color/Grayscale"), 6.0},
        {QStringLiteral("Filter/Color/Monochrome Mixer"), 5.0},
        {QStringLiteral("Filter/Color/Color Overlay"), 2.0},
        {QStringLiteral("Filter/Blur"), 230.0},
        {QStringLiteral("Filter/Blur/Mean Curvature"), 1400.0},
        {QStringLiteral("Filter/Blur/Nearest Neighbor Smoothing"), 900.0},
        {QStringLiteral("Filter/Blur/Bilateral"), 870.0},
        {QStringLiteral("Filter/Blur/Gaussian Blur"), 55.0},
        {QStringLiteral("Filter/Blur/Lens Blur"), 50.0},
        {QStringLiteral("Filter/Blur/Wavelet Blur"), 37.0},
        {QStringLiteral("Filter/Blur/Box Blur"), 20.0},
        {QStringLiteral("Filter/Sharpen"), 58.0},
        {QStringLiteral("Filter/Sharpen/High Pass"), 210.0},
        {QStringLiteral("Filter/Noise"), 140.0},
        {QStringLiteral("Filter/Noise/Hurl"), 55.0},
        {QStringLiteral("Filter/Noise/Pick"), 45.0},
        {QStringLiteral("Filter/Edge"), 65.0},
        {QStringLiteral("Filter/Surface"), 19.0},
        {QStringLiteral("Filter/Light"), 65.0},
        {QStringLiteral("Filter/Light/Long Shadow"), 165.0},
        {QStringLiteral("Filter/Stylize"), 90.0},
        {QStringLiteral("Filter/Stylize/Pixelize"), 15.0},
        {QStringLiteral("Filter/Tone Mapping"), 62.0},
        {QStringLiteral("Filter/Transform"), 5.0},
        {QStringLiteral("Filter/Transform/Little Planet"), 105.0},
        {QStringLiteral("Filter/Transform/Spherize"), 80.0},
        {QStringLiteral("Filter/Transform/Panorama"), 76.0},
        {QStringLiteral("Filter/Transform/Make Seamless"), 57.0},
        {QStringLiteral("Filter/Math"), 5.0},
        {QStringLiteral("Procedural/Noise"), 40.0},
        {QStringLiteral("Procedural/Noise/Cell Noise"), 95.0},
        {QStringLiteral("Procedural/Gradient"), 10.0},
        {QStringLiteral("Procedural/Gradient/Conical Gradient"), 26.0},
        {QStringLiteral("Procedural/Pattern"), 5.0},
        {QStringLiteral("Procedural/Basic"), 2.0},
    };
    constexpr double Unmeasured = 50.0;
    const QString Group = Operation.MenuPath.section(QLatin1Char('/'), 0, 1);
    return Measured.value(Operation.MenuPath, Measured.value(Group, Unmeasured));
}

struct Memory {
    quint64 Revision = 0;
    QHash<const OrvSnBaseNode*, double> Layers;
};

Memory& memory()
{
    static Memory Remembered;
    const quint64 Revision = OrvShaderNetworkManager::instance().revision();
    if (Remembered.Revision != Revision) {
        Remembered.Layers.clear();
        Remembered.Revision = Revision;
    }
    return Remembered;
}

double layerCost(const OrvSnMergeNode* pMerge);

/// Of the operations of a network inside a node, and of the blends between them.
double insideCost(const OrvShaderNetwork& Inside)
{
    double Cost = 0.0;
    for (const OrvSnBaseNode* pNode : Inside.nodes()) {
        if (const auto* pOperation = qobject_cast<const OrvSnOperationNode*>(pNode))
            Cost += operationCost(pOperation->operation());
        else if (const auto* pProcedural = qobject_cast<const OrvSnCustomProceduralNode*>(pNode))
            Cost += insideCost(*pProcedural->inside());
        else if (qobject_cast<const OrvSnMergeNode*>(pNode))
            Cost += BlendCost;
    }
    return Cost;
}

/// What comes in at an input, in milliseconds per million pixels. Chains are followed in a loop, so that only
/// nesting makes it go deep.
double contentCost(const OrvSnBaseNode* pNode, const OrvSnBaseNode* pBase)
{
    double Cost = 0.0;
    while (pNode && pNode != pBase) {
        if (const auto* pMerge = qobject_cast<const OrvSnMergeNode*>(pNode)) {
            Cost += layerCost(pMerge);
            if (pMerge->cacheActive() == OrvSnCacheActive)
                break; // all below is kept with it
        } else if (const OrvImageSet* pImages = pNode->imageSet()) {
            Cost += pImages->isUniform() ? 0.0 : ImageCost;
            break; // whatever the node reads besides is not computed
        } else if (qobject_cast<const OrvSnShaderNode*>(pNode)) {
            Cost += ShadingCost;
            for (const OrvSnBaseNode::Input& Input : pNode->inputs())
                Cost += contentCost(Input.pNode, nullptr);
            break;
        } else if (const auto* pOperation = qobject_cast<const OrvSnOperationNode*>(pNode)) {
            Cost += operationCost(pOperation->operation());
        } else if (const OrvShaderNetwork* pNested = pNode->nestedNetwork()) {
            Cost += insideCost(*pNested);
        } else if (const auto* pProcedural = qobject_cast<const OrvSnCustomProceduralNode*>(pNode)) {
            Cost += insideCost(*pProcedural->inside());
        }
        pNode = pNode->preferredInputNode();
    }
    return Cost;
}

/// What is kept costs no more than an image.
double unlessKept(const OrvSnMergeNode* pMerge, double Cost)
{
    const bool Kept = pMerge->userAttribute(OrvMergeAttributes::LayerCached).value().toBool();
    return Kept ? qMin(Cost, ImageCost) : Cost;
}

double contentOfLayer(const OrvSnMergeNode* pMerge)
{
    return unlessKept(
        pMerge, contentCost(pMerge->inputNode(OrvSnNames::Over), pMerge->inputNode(OrvSnNames::Base)));
}

double maskOfLayer(const OrvSnMergeNode* pMerge)
{
    return unlessKept(pMerge, contentCost(pMerge->maskSource(), nullptr));
}

double layerCost(const OrvSnMergeNode* pMerge)
{
    const auto Known = memory().Layers.constFind(pMerge);
    if (Known != memory().Layers.constEnd())
        return Known.value();
    const double Cost = !pMerge->isShown() ? 0.0
        : pMerge->cacheActive() == OrvSnCacheActive
        ? ImageCost
        : BlendCost + contentOfLayer(pMerge) + maskOfLayer(pMerge);
    memory().Layers.insert(pMerge, Cost);
    return Cost;
}

} // namespace

OrvLayerCost OrvLayerCost::of(const OrvSnMergeNode* pBlendNode)
{
    OrvLayerCost Cost;
    if (!pBlendNode || !pBlendNode->isShown() || OrvLayerUtils::isPartOfCache(pBlendNode))
        return Cost;
    if (pBlendNode->cacheActive() == OrvSnCacheActive) {
        Cost.m_Parts.append({tr("cache"), ImageCost / Unit});
        return Cost;
    }
    const double Mask = maskOfLayer(pBlendNode);
    const double Content = layerCost(pBlendNode) - BlendCost - Mask;
    const OrvSnBaseNode* pContent = OrvChainEditing::contentOf(pBlendNode);
    Cost.m_Parts.append({tr("blending"), BlendCost / Unit});
    if (Content > 0.0)
        Cost.m_Parts.append({pContent ? pContent->typeLabel().toLower() : tr("content"), Content / Unit});
    if (Mask > 0.0)
        Cost.m_Parts.append({tr("mask"), Mask / Unit});
    return Cost;
}

void OrvLayerCost::invalidate()
{
    memory().Layers.clear();
}

double OrvLayerCost::total() const
{
    double Sum = 0.0;
    for (const Part& One : m_Parts)
        Sum += One.Cost;
    return Sum;
}

QString OrvLayerCost::description() const
{
    if (m_Parts.isEmpty())
        return tr("The layer is hidden or part of a cache, and costs nothing");
    QStringList Shares;
    for (const Part& One : m_Parts)
        Shares.append(tr("%1 %2").arg(One.Name).arg(One.Cost, 0, 'f', 2));
    return tr("Relative cost %1 (%2)").arg(total(), 0, 'f', 2).arg(Shares.join(QStringLiteral(", ")));
}
