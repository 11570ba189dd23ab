#include "OrvCore/Layers/OrvLayerCost.h"

#include "OrvCore/Layers/OrvChainEditing.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Network/OrvSnChannelInputNode.h"
#include "OrvCore/Network/OrvSnGraphNode.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Network/OrvSnOperationNode.h"

#include "OrvDdi/Engine/OrvOperationRegistry.h"
#include "OrvDdi/Image/OrvImageSet.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QHash>

namespace {

// Milliseconds per million pixels, measured on two cores.
constexpr double BlendCost = 1.1;
constexpr double ImageCost = 0.4;
constexpr double Unit = 100.0;

QString tr(const char* pText)
{
    return QCoreApplication::translate("OrvLayerCost", pText);
}

double operationCost(const OrvOperation& Operation)
{
    // By group of the menu; operations within one are of a kind.
    static const QHash<QString, double> ByGroup{
        {QStringLiteral("Filter/Color"), 3.0},
        {QStringLiteral("Filter/Blur"), 95.0},
        {QStringLiteral("Filter/Sharpen"), 60.0},
        {QStringLiteral("Filter/Noise"), 40.0},
        {QStringLiteral("Filter/Distort"), 25.0},
        {QStringLiteral("Filter/Artistic"), 120.0},
    };
    constexpr double OtherFilter = 30.0;
    constexpr double OtherProcedural = 20.0;
    return ByGroup.value(Operation.MenuPath.section(QLatin1Char('/'), 0, 1),
        Operation.Procedural ? OtherProcedural : OtherFilter);
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

/// What comes in at an input, in milliseconds per million pixels. Chains are followed in a loop, so that only
/// nesting makes it go deep.
double contentCost(const OrvSnBaseNode* pNode, const OrvSnBaseNode* pBase)
{
    double Cost = 0.0;
    while (pNode && pNode != pBase) {
        if (const auto* pMerge = qobject_cast<const OrvSnMergeNode*>(pNode)) {
            Cost += layerCost(pMerge);
        } else if (const auto* pImage = qobject_cast<const OrvSnChannelInputNode*>(pNode)) {
            Cost += pImage->imageSet() && !pImage->imageSet()->isUniform() ? ImageCost : 0.0;
        } else if (const auto* pOperation = qobject_cast<const OrvSnOperationNode*>(pNode)) {
            Cost += operationCost(pOperation->operation());
        } else if (const OrvShaderNetwork* pNested = pNode->nestedNetwork()) {
            for (const OrvSnBaseNode* pInside : pNested->nodes()) {
                if (const auto* pStep = qobject_cast<const OrvSnOperationNode*>(pInside))
                    Cost += operationCost(pStep->operation());
            }
        }
        pNode = pNode->preferredInputNode();
    }
    return Cost;
}

double contentOfLayer(const OrvSnMergeNode* pMerge)
{
    return contentCost(pMerge->inputNode(OrvSnNames::Over), pMerge->inputNode(OrvSnNames::Base));
}

double layerCost(const OrvSnMergeNode* pMerge)
{
    const auto Known = memory().Layers.constFind(pMerge);
    if (Known != memory().Layers.constEnd())
        return Known.value();
    const double Cost = !pMerge->enabledAsBool()
        ? 0.0
        : BlendCost + contentOfLayer(pMerge) + contentCost(pMerge->inputNode(OrvSnNames::Mask), nullptr);
    memory().Layers.insert(pMerge, Cost);
    return Cost;
}

} // namespace

OrvLayerCost OrvLayerCost::of(const OrvSnMergeNode* pBlendNode)
{
    OrvLayerCost Cost;
    if (!pBlendNode || !pBlendNode->enabledAsBool())
        return Cost;
    const double Mask = contentCost(pBlendNode->inputNode(OrvSnNames::Mask), nullptr);
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
        return tr("The layer is hidden and costs nothing");
    QStringList Shares;
    for (const Part& One : m_Parts)
        Shares.append(tr("%1 %2").arg(One.Name).arg(One.Cost, 0, 'f', 2));
    return tr("Relative cost %1 (%2)").arg(total(), 0, 'f', 2).arg(Shares.join(QStringLiteral(", ")));
}
