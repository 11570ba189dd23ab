#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerRowLock.h"

#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerUtils.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Object/OrvDebug.h"
#include "OrvCore/Undo/OrvUndoManager.h"
#include "OrvCoreModules/Window/OrvMainWindow.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewItemRowWidget.h"

#include <QtCore/QPointer>
#include <QtCore/QSet>
#include <QtCore/QVector>
#include <QtWidgets/QMessageBox>

#include <algorithm>
#include <iterator>

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

bool hasBlockedSharer(const OrvLayer* pLayer)
{
    const QList<OrvLayer*> Sharers = pLayer->getOtherSharers();
    return std::any_of(Sharers.cbegin(), Sharers.cend(), isBlocked);
}

QStringList reasonsToAsk(const QList<OrvLayer*>& Layers)
{
    QStringList Reasons;
    const auto addWhere = [&](const auto& applies, const QString& Reason) {
        if (std::any_of(Layers.cbegin(), Layers.cend(), applies))
            Reasons += Reason;
    };
    addWhere([](const OrvLayer* pLayer) { return pLayer->isDownstreamLocked(); },
        Row::tr(" * Ancestors of this layer are locked. Unlocking this layer will unlock its ancestors"));
    addWhere(
        isCachedUpTo, Row::tr(" * Up to this layer is cached. Unlocking this layer will remove the cache"));
    addWhere([](const OrvLayer* pLayer) { return pLayer->hasLayerCache(); },
        Row::tr(" * This layer is cached. Unlocking this layer will remove the cache"));
    addWhere([](const OrvLayer* pLayer) { return pLayer->isDownstreamCached(); },
        Row::tr(" * This layer is part of a cached layer. Unlocking this layer will remove the cache."));
    addWhere(hasBlockedSharer,
        Row::tr(" * One of other shared layers that share resources with this layer is not modifiable due "
                "to locking and/or caching. Unlocking this layer will remove the lock and/or cache"));
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
    if (pLayer->blendNode())
        pLayer->setLocked(Locked);
    else
        OrvDebug("OrvLayerViewItemRowWidget", __LINE__, QStringLiteral("LayerNode is NULL"), false, false);
}

/// With those that share with it, and with those that share with them in turn: each keeps the next one
/// closed.
void release(OrvLayer* pLayer, QSet<OrvLayer*>& Released)
{
    if (Released.contains(pLayer))
        return;
    Released.insert(pLayer);
    releaseAround(pLayer);
    setOwnLock(pLayer, false);
    for (OrvLayer* pSharer : pLayer->getOtherSharers()) {
        if (!pSharer->isModifiable())
            release(pSharer, Released);
    }
}

void lock(const QList<OrvLayer*>& Layers)
{
    OrvUndoManager::AutoMacro Macro(
        Layers.size() == 1 ? Row::tr("Lock Layer '%1'").arg(Layers.first()->name()) : Row::tr("Lock Layers"));
    for (OrvLayer* pLayer : Layers)
        setOwnLock(pLayer, true);
}

void unlock(const QList<OrvLayer*>& Layers)
{
    // While the user thinks the layers may go.
    QVector<QPointer<OrvLayer>> Asked;
    for (OrvLayer* pLayer : Layers)
        Asked.append(pLayer);
    const QStringList Reasons = reasonsToAsk(Layers);
    if (!Reasons.isEmpty() && !userAgrees(Reasons))
        return;
    Asked.removeAll(nullptr);
    if (Asked.isEmpty())
        return;

    OrvUndoManager::AutoMacro Macro(Asked.size() == 1
            ? Row::tr("Unlock Layer '%1'").arg(Asked.first()->name())
            : Row::tr("Unlock Layers"));
    QSet<OrvLayer*> Released;
    for (OrvLayer* pLayer : qAsConst(Asked))
        release(pLayer, Released);
}

} // namespace

bool OrvLayerRowLock::isShownLocked(const OrvLayer* pLayer)
{
    return pLayer->isLocked() || !pLayer->isModifiable();
}

void OrvLayerRowLock::setLocked(const QList<OrvLayer*>& Layers, bool Locked)
{
    QList<OrvLayer*> ToChange;
    std::copy_if(Layers.cbegin(), Layers.cend(), std::back_inserter(ToChange),
        [Locked](const OrvLayer* pLayer) { return isShownLocked(pLayer) != Locked; });
    if (ToChange.isEmpty())
        return;
    if (Locked)
        lock(ToChange);
    else
        unlock(ToChange);
}
