#include "OrvCore/Layers/OrvLayerUtils.h"

#include "OrvCore/Layers/OrvChainTargets.h"
#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerStreamUtils.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Network/OrvSnMultiChannelMergeNode.h"
#include "OrvCore/Undo/OrvUndoManager.h"

#include <QtCore/QCoreApplication>

namespace OrvLayerUtils {

void findLayerStackTargets(QSet<QPair<OrvSnBaseNode*, QString>>& Targets, OrvSnBaseNode* pNode)
{
    const QVector<OrvChainTargets::Target> Ends = OrvChainTargets::of(pNode).Targets;
    for (const OrvChainTargets::Target& End : Ends)
        Targets.insert({End.pNode, End.InputName});
}

bool isModificationAllowedAt(const OrvSnBaseNode* pNode)
{
    if (!pNode || isPartOfCache(pNode))
        return false;
    const QVector<OrvSnBaseNode*> Containers = OrvChainTargets::containers(pNode);
    return std::none_of(Containers.begin(), Containers.end(),
        [](const OrvSnBaseNode* pContainer) { return pContainer->locked() || pContainer->blocked(); });
}

bool isPartOfCache(const OrvSnBaseNode* pNode)
{
    if (OrvChainTargets::of(pNode).FrozenAbove)
        return true;
    const QVector<OrvSnBaseNode*> Containers = OrvChainTargets::containers(pNode);
    return std::any_of(Containers.begin(), Containers.end(), [](const OrvSnBaseNode* pContainer) {
        return pContainer->cacheActive() == OrvSnCacheActive || OrvChainTargets::of(pContainer).FrozenAbove
            || pContainer->userAttribute(OrvMergeAttributes::LayerCached).value().toBool();
    });
}

bool isLayer(const OrvSnBaseNode* pNode)
{
    return OrvLayerStreamUtils::isMergeNode(pNode);
}

bool holdsLayerName(const OrvSnBaseNode* pNode)
{
    return isLayer(pNode) || qobject_cast<const OrvSnMultiChannelMergeNode*>(pNode);
}

bool isLayerModifiable(const OrvLayer* pLayer)
{
    const OrvSnMergeNode* pBlendNode = pLayer ? pLayer->blendNode() : nullptr;
    return pBlendNode && pBlendNode->network() && !pLayer->isLocked() && !pBlendNode->blocked()
        && !pBlendNode->commonNode()->blocked()
        && !pLayer->isCachedUpToHere() && !pLayer->isLayerCached() && isModificationAllowedAt(pBlendNode);
}

OrvSnBaseNode* createShaderLayerNodeAfter(OrvSnBaseNode* pTarget, OrvSnBaseNode* pShaderNode, const QString& Name)
{
    if (!pShaderNode || !pShaderNode->hasTag(OrvSnNames::ShaderTag))
        return nullptr;
    return OrvLayerStreamUtils::createLayerNodeAfter(pTarget, pShaderNode, Name, QString(), true);
}

void unlockLockedAncestorLayers(OrvSnBaseNode* pNode)
{
    const OrvUndoManager::AutoMacro Macro(QCoreApplication::translate("OrvLayerUtils", "Unlock Ancestors"));
    for (OrvSnBaseNode* pContainer : OrvChainTargets::containers(pNode))
        pContainer->setLocked(false);
}

QStringList getProceduralLayerGroups()
{
    return {QStringLiteral("Procedural")};
}

QStringList getAdjustmentLayerGroups()
{
    return {QStringLiteral("Filter")};
}

QStringList getTruncatedLayerRootMenuGroups()
{
    return {};
}

const QMap<QString, QColor>& validLayerColors()
{
    static const QMap<QString, QColor> Colors{
        {QStringLiteral("none"), QColor()},
        {QStringLiteral("red"), QColor(0xc8, 0x4b, 0x4b)},
        {QStringLiteral("orange"), QColor(0xd0, 0x80, 0x3c)},
        {QStringLiteral("yellow"), QColor(0xc9, 0xb4, 0x3f)},
        {QStringLiteral("green"), QColor(0x5f, 0xa0, 0x4e)},
        {QStringLiteral("cyan"), QColor(0x46, 0xa0, 0xa0)},
        {QStringLiteral("blue"), QColor(0x4a, 0x7c, 0xc4)},
        {QStringLiteral("violet"), QColor(0x8a, 0x62, 0xc0)},
        {QStringLiteral("gray"), QColor(0x80, 0x80, 0x80)},
    };
    return Colors;
}

bool isBakePointLayerFeatureEnabled()
{
    return true;
}

} // namespace OrvLayerUtils
