#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerRowLock.h"

#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerUtils.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Object/OrvDebug.h"
#include "OrvCore/Undo/OrvUndoManager.h"
#include "OrvCoreModules/Window/OrvMainWindow.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewItemRowWidget.h"

#include <QtCore/QPointer>
#include <QtWidgets/QMessageBox>

#include <algorithm>

namespace {

using Row = OrvLayerViewItemRowWidget;

bool isCachedUpTo(const OrvLayer* pLayer)
{
    return pLayer->blendNode() && pLayer->blendNode()->cacheActive() != OrvSnCacheInactive;
}

bool isBlocked(const OrvLayer* pSharer)
{
    return !OrvLayerUtils::isLayerModifiable(pSharer);
}

QStringList reasonsToAsk(const OrvLayer* pLayer)
{
    QStringList Reasons;
    if (pLayer->isDownstreamLocked())
        Reasons += Row::tr(
            " * Ancestors of this layer are locked. Unlocking this layer will unlock its ancestors");
    if (isCachedUpTo(pLayer))
        Reasons += Row::tr(" * Up to this layer is cached. Unlocking this layer will remove the cache");
    if (pLayer->hasLayerCache())
        Reasons += Row::tr(" * This layer is cached. Unlocking this layer will remove the cache");
    if (pLayer->isDownstreamCached())
        Reasons += Row::tr(
            " * This layer is part of a cached layer. Unlocking this layer will remove the cache.");
    const QList<OrvLayer*> Sharers = pLayer->getOtherSharers();
    if (std::any_of(Sharers.cbegin(), Sharers.cend(), isBlocked)) {
        Reasons += Row::tr(
            " * One of other shared layers that share resources with this layer is not modifiable due "
            "to locking and/or caching. Unlocking this layer will remove the lock and/or cache");
    }
    return Reasons;
}

bool userAgrees(const QStringList& Reasons)
{
    const QStringList Lines = QStringList(Row::tr("This layer is locked due to the following situation:"))
        + Reasons + QStringList(Row::tr("Would you like to unlock this layer?"));
    return QMessageBox::question(&OrvMainWindow::instance(), Row::tr("Ancestor Locked"),
               Lines.join(QLatin1Char('\n')), QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel)
        == QMessageBox::Yes;
}

void releaseAround(OrvLayer* pLayer)
{
    if (pLayer->isDownstreamLocked())
        pLayer->unlockLockedAncestorLayers();
    if (isCachedUpTo(pLayer))
        pLayer->blendNode()->setCacheActive(OrvSnCacheInactive);
    if (pLayer->hasLayerCache())
        pLayer->uncacheLayer();
    if (pLayer->isDownstreamCached())
        pLayer->blendNode()->propagateDeleteCache(true);
}

void setOwnLock(OrvLayer* pLayer, bool Locked)
{
    if (OrvSnMergeNode* pLayerNode = pLayer->blendNode())
        pLayerNode->setLocked(Locked);
    else
        OrvDebug("OrvLayerViewItemRowWidget", __LINE__, QStringLiteral("LayerNode is NULL"), false, false);
}

} // namespace

bool OrvLayerRowLock::isShownLocked(const OrvLayer* pLayer)
{
    return pLayer->isLocked() || !pLayer->isModifiable();
}

void OrvLayerRowLock::lock(OrvLayer* pLayer)
{
    OrvUndoManager::AutoMacro Macro(Row::tr("Lock Layer '%1'").arg(pLayer->name()));
    setOwnLock(pLayer, true);
}

void OrvLayerRowLock::unlock(OrvLayer* pLayer)
{
    const QStringList Reasons = reasonsToAsk(pLayer);
    // While the user thinks the layer may go.
    const QPointer<OrvLayer> pAsked = pLayer;
    if (!Reasons.isEmpty() && (!userAgrees(Reasons) || !pAsked))
        return;

    OrvUndoManager::AutoMacro Macro(Row::tr("Unlock Layer '%1'").arg(pLayer->name()));
    releaseAround(pLayer);
    for (OrvLayer* pSharer : pLayer->getOtherSharers()) {
        if (isBlocked(pSharer)) {
            releaseAround(pSharer);
            setOwnLock(pSharer, false);
        }
    }
    setOwnLock(pLayer, false);
}
