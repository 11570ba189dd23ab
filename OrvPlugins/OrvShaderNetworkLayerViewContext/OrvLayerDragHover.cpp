#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerDragHover.h"

#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerDragPayload.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerDragRefusal.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerDrop.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerTreeView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewModel.h"

#include <QtCore/QTimerEvent>
#include <QtGui/QDropEvent>

namespace {
constexpr int OpenDelay = 700; // ms
}

OrvLayerDragHover::OrvLayerDragHover(OrvLayerView* pLayerView, QObject* pParent)
    : QObject(pParent)
    , m_LayerView(pLayerView)
{
}

bool OrvLayerDragHover::wouldDrop(const QDropEvent& Event, int Row, const QModelIndex& Parent)
{
    const Qt::DropAction Action = OrvLayerDragPayload::actionFromModifiers(Event.keyboardModifiers());
    const OrvLayerDropResult Outcome
        = m_LayerView->model()->layerDrop(Event.mimeData(), Action, Row, Parent).check();
    OrvLayerDragRefusal::show(Outcome.Message);
    return Outcome.isDone();
}

void OrvLayerDragHover::restAt(const QModelIndex& Index)
{
    if (m_OpenTimer.isActive() && m_RestingAt == Index)
        return;
    m_OpenTimer.stop();
    m_RestingAt = Index;
    if (Index.isValid() && m_LayerView->model()->hasChildren(Index)
        && !m_LayerView->treeView()->isExpanded(Index))
        m_OpenTimer.start(OpenDelay, this);
}

void OrvLayerDragHover::leave()
{
    restAt(QModelIndex());
    OrvLayerDragRefusal::leave();
}

void OrvLayerDragHover::timerEvent(QTimerEvent* pEvent)
{
    if (pEvent->timerId() != m_OpenTimer.timerId()) {
        QObject::timerEvent(pEvent);
        return;
    }
    m_OpenTimer.stop();
    if (m_RestingAt.isValid())
        m_LayerView->treeView()->expand(m_RestingAt);
}

#include "moc_OrvLayerDragHover.cpp"
