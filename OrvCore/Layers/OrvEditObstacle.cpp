#include "OrvCore/Layers/OrvEditObstacle.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Layers/OrvChainTargets.h"
#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerUtils.h"
#include "OrvCore/Network/OrvSnMergeNode.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QStringList>

namespace {

QString tr(const char* pText)
{
    return QCoreApplication::translate("OrvEditObstacle", pText);
}

/// What forbids an edit somewhere: a node, and in which way; no node when nothing does.
struct Obstacle {
    const OrvSnBaseNode* pNode = nullptr;
    QString State;
    bool Above = false; ///< it does not hold the place, but keeps all below it
};

QString nameOf(const OrvSnBaseNode* pNode)
{
    const auto* pMerge = qobject_cast<const OrvSnMergeNode*>(pNode);
    return pMerge ? pMerge->commonNode()->name() : pNode->name();
}

Obstacle ownObstacle(const OrvSnBaseNode* pNode)
{
    if (pNode->locked())
        return {pNode, tr("locked")};
    if (pNode->blocked())
        return {pNode, tr("blocked")};
    if (pNode->userAttribute(OrvMergeAttributes::LayerCached).value().toBool())
        return {pNode, tr("cached")};
    if (pNode->cacheActive() == OrvSnCacheActive)
        return {pNode, tr("cached with all below it")};
    return {};
}

/// The node further up the chain that is cached up to there.
Obstacle obstacleAbove(const OrvSnBaseNode* pNode)
{
    while (pNode && OrvChainTargets::of(pNode).FrozenAbove) {
        const OrvSnBaseNode* pNext = nullptr;
        for (const OrvSnBaseNode::Consumer& Reader : pNode->consumers()) {
            if (!OrvChainTargets::continuesChain(Reader.pNode, Reader.InputName))
                continue;
            if (OrvLayerUtils::isLayer(Reader.pNode) && Reader.pNode->cacheActive() == OrvSnCacheActive)
                return {Reader.pNode, tr("cached with all below it"), true};
            if (OrvChainTargets::of(Reader.pNode).FrozenAbove)
                pNext = Reader.pNode;
        }
        pNode = pNext;
    }
    return {};
}

Obstacle obstacleAround(const OrvSnBaseNode* pNode)
{
    Obstacle Found = obstacleAbove(pNode);
    const QVector<OrvSnBaseNode*> Containers = OrvChainTargets::containers(pNode);
    for (auto Container = Containers.begin(); Container != Containers.end() && !Found.pNode; ++Container) {
        Found = ownObstacle(*Container);
        if (!Found.pNode)
            Found = obstacleAbove(*Container);
    }
    return Found;
}

QString sentence(const QString& Name, const Obstacle& Found, const Obstacle& Own)
{
    if (Own.pNode)
        return tr("'%1' is %2").arg(Name, Own.State);
    if (!Found.pNode)
        return QString();
    return (Found.Above ? tr("'%1' is below '%2', which is %3") : tr("'%1' is in '%2', which is %3"))
        .arg(Name, nameOf(Found.pNode), Found.State);
}

} // namespace

QString OrvEditObstacle::at(const OrvSnBaseNode* pNode)
{
    const Obstacle Found = pNode ? obstacleAround(pNode) : Obstacle();
    return Found.pNode ? tr("'%1' is %2").arg(nameOf(Found.pNode), Found.State) : QString();
}

QString OrvEditObstacle::of(const OrvLayer* pLayer)
{
    const OrvSnMergeNode* pMerge = pLayer ? pLayer->blendNode() : nullptr;
    if (!pMerge || OrvLayerUtils::isLayerModifiable(pLayer))
        return QString();
    if (!pMerge->network())
        return tr("'%1' was removed").arg(pLayer->name());
    Obstacle Own = ownObstacle(pMerge);
    if (!Own.pNode)
        Own = ownObstacle(pMerge->commonNode());
    return sentence(pLayer->name(), obstacleAround(pMerge), Own);
}

QString OrvEditObstacle::ofSharers(const OrvLayer* pLayer)
{
    if (!pLayer)
        return QString();
    for (const OrvLayer* pStream : pLayer->inAllChannels()) {
        const QString Known = of(pStream);
        if (!Known.isEmpty())
            return Known;
    }
    for (const OrvLayer* pSharer : pLayer->getOtherSharers()) {
        const QString Known = of(pSharer);
        if (!Known.isEmpty())
            return tr("'%1' is shared, and %2").arg(pLayer->name(), Known);
    }
    return QString();
}

QString OrvEditObstacle::of(const OrvShaderInput* pChannel)
{
    return pChannel && !pChannel->isModifiable() ? ofNode(pChannel->node(), pChannel->name()) : QString();
}

QString OrvEditObstacle::ofNode(const OrvSnBaseNode* pNode, const QString& Title)
{
    return pNode ? sentence(Title, obstacleAround(pNode), ownObstacle(pNode)) : QString();
}

QString OrvEditObstacle::several(const QStringList& Obstacles)
{
    constexpr int Room = 3;
    QStringList Told = Obstacles;
    Told.removeAll(QString());
    const int More = Told.size() - Room;
    Told = Told.mid(0, Room);
    if (More > 0)
        Told.append(tr("and %1 more").arg(More));
    return Told.join(QLatin1String("; "));
}
