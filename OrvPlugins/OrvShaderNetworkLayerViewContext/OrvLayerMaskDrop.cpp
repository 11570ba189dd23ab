#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerMaskDrop.h"

#include "OrvCore/Layers/OrvEditObstacle.h"
#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerDragPayload.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerDragRefusal.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerDrop.h"

#include <QtCore/QMimeData>
#include <QtGui/QDropEvent>

namespace {

using Result = OrvLayerDropResult;

Result check(const OrvLayer* pMasked, const QVector<OrvSnBaseNode*>& Nodes, Qt::DropAction Action,
    const OrvLayerStack* pSourceStack)
{
    OrvSnBaseNode* pMask = pMasked ? pMasked->maskNode() : nullptr;
    if (!pMask || Nodes.contains(pMask)) // dropped where it comes from
        return Result::failed();
    const QString Obstacle = OrvEditObstacle::ofSharers(pMasked);
    if (!Obstacle.isEmpty())
        return Result::failedBecause(Obstacle);
    return OrvLayerDrop(Nodes, Action, pSourceStack, pMask, pMasked->maskStack()).check();
}

} // namespace

void OrvLayerMaskDrop::dragOver(const OrvLayer* pMasked, QDragMoveEvent* pEvent)
{
    const Qt::DropAction Action = OrvLayerDragPayload::actionFromModifiers(pEvent->keyboardModifiers());
    const Result Checked = check(pMasked, OrvLayerDragPayload::read(pEvent->mimeData()), Action,
        OrvLayerDragPayload::readStack(pEvent->mimeData()));
    OrvLayerDragRefusal::show(Checked.Message);
    pEvent->setDropAction(Checked.isDone() ? Action : Qt::IgnoreAction);
    pEvent->setAccepted(Checked.isDone());
}

void OrvLayerMaskDrop::drop(OrvLayer* pMasked, QDropEvent* pEvent)
{
    const Qt::DropAction Action = OrvLayerDragPayload::actionFromModifiers(pEvent->keyboardModifiers());
    OrvLayerDragRefusal::leave();
    // Told of a move, the view that the rows come from would take them away.
    pEvent->setDropAction(Qt::CopyAction);
    const QVector<OrvSnBaseNode*> Nodes = OrvLayerDragPayload::read(pEvent->mimeData());
    if (!pMasked || !pMasked->hasMask() || Nodes.isEmpty() || Nodes.contains(pMasked->maskNode()))
        return;
    const OrvLayerStack* pSourceStack = OrvLayerDragPayload::readStack(pEvent->mimeData());
    OrvLayerDrop::inUndoStep([&]() -> Result {
        if (pMasked->hasMaskImageSet() && !pMasked->convertMaskToMaskStack())
            return Result::failed();
        return OrvLayerDrop(Nodes, Action, pSourceStack, pMasked->maskNode(), pMasked->maskStack())
            .carryOut();
    });
}
