#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerMaskDrop.h"

#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerDragPayload.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerDrop.h"

#include <QtCore/QMimeData>
#include <QtGui/QDropEvent>

void OrvLayerMaskDrop::dragOver(const OrvLayer* pMasked, QDragMoveEvent* pEvent)
{
    const QVector<OrvSnBaseNode*> Nodes = OrvLayerDragPayload::read(pEvent->mimeData());
    const Qt::DropAction Action = OrvLayerDragPayload::actionFromModifiers(pEvent->keyboardModifiers());
    OrvSnBaseNode* pMask = pMasked ? pMasked->maskNode() : nullptr;
    const bool Droppable = pMask && pMasked->isModifiable() && !Nodes.contains(pMask)
        && OrvLayerDrop(
            Nodes, Action, OrvLayerDragPayload::readStack(pEvent->mimeData()), pMask, pMasked->maskStack())
               .check()
               .isDone();
    pEvent->setDropAction(Droppable ? Action : Qt::IgnoreAction);
    pEvent->setAccepted(Droppable);
}

void OrvLayerMaskDrop::drop(OrvLayer* pMasked, QDropEvent* pEvent)
{
    const Qt::DropAction Action = OrvLayerDragPayload::actionFromModifiers(pEvent->keyboardModifiers());
    // Told of a move, the view that the rows come from would take them away.
    pEvent->setDropAction(Qt::CopyAction);
    const QVector<OrvSnBaseNode*> Nodes = OrvLayerDragPayload::read(pEvent->mimeData());
    if (!pMasked || !pMasked->hasMask() || Nodes.isEmpty() || Nodes.contains(pMasked->maskNode()))
        return;
    const OrvLayerStack* pSourceStack = OrvLayerDragPayload::readStack(pEvent->mimeData());
    OrvLayerDrop::inUndoStep([&]() -> OrvLayerDrop::Result {
        if (pMasked->hasMaskImageSet() && !pMasked->convertMaskToMaskStack())
            return {OrvLayerDrop::Result::Failed, QString()};
        return OrvLayerDrop(Nodes, Action, pSourceStack, pMasked->maskNode(), pMasked->maskStack())
            .carryOut();
    });
}
