#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputTreeView.h"

#include "OrvCoreModules/Menus/OrvFocusShortcuts.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerDragPayload.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvRowWidgetDelegate.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputViewItemRowWidget.h"

#include <QtGui/QDragMoveEvent>
#include <QtGui/QKeySequence>
#include <QtGui/QMouseEvent>

#include <utility>

namespace {

constexpr int HoverDelay = 500; // ms
constexpr int HotSpotDelay = 1; // ms
const QSize SmallestSize(50, 40);

} // namespace

OrvShaderInputTreeView::OrvShaderInputTreeView(OrvShaderInputView* pParent)
    : OrvRowWidgetTree(pParent)
    , m_Parent(pParent)
{
    setHeaderHidden(true);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setItemDelegate(
        new OrvRowWidgetDelegate({SmallestSize.width(), OrvShaderInputViewItemRowWidget::RowHeight}, this));
    // A drop is meant for a channel or for the list, never for a place between two: the list is sorted.
    setDragDropOverwriteMode(true);
    setMinimumSize(SmallestSize);
    m_DragTimer.setInterval(HoverDelay);
    m_DragTimer.setSingleShot(true);
    connect(&m_DragTimer, SIGNAL(timeout()), this, SLOT(testAndSetCurrentIndexFromDrag()));
    (new OrvFocusShortcuts(this))->add(Qt::Key_F2, SLOT(renameChannel()), this);
}

QSize OrvShaderInputTreeView::sizeHint() const
{
    return SmallestSize;
}

void OrvShaderInputTreeView::currentChanged(const QModelIndex& Current, const QModelIndex& Previous)
{
    OrvRowWidgetTree::currentChanged(Current, Previous);
    if (!m_IsPressing)
        Q_EMIT currentIndexChanged(Current, Previous);
}

void OrvShaderInputTreeView::mousePressEvent(QMouseEvent* pEvent)
{
    m_PressedWithKeys
        = pEvent->modifiers() & (Qt::ShiftModifier | Qt::AltModifier) && indexAt(pEvent->pos()).isValid();
    const QModelIndex Former = currentIndex();
    m_IsPressing = m_PressedWithKeys;
    OrvRowWidgetTree::mousePressEvent(pEvent);
    // The row pressed stays selected: it is what a drag takes along.
    if (m_PressedWithKeys)
        selectionModel()->setCurrentIndex(Former, QItemSelectionModel::NoUpdate);
    m_IsPressing = false;
}

void OrvShaderInputTreeView::mouseReleaseEvent(QMouseEvent* pEvent)
{
    OrvRowWidgetTree::mouseReleaseEvent(pEvent);
    endPressWithKeys();
}

void OrvShaderInputTreeView::endPressWithKeys()
{
    if (std::exchange(m_PressedWithKeys, false))
        selectionModel()->select(
            currentIndex(), QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

bool OrvShaderInputTreeView::isOverHotSpot(const QModelIndex& Index, const QPoint& Position) const
{
    const auto* pRowWidget = qobject_cast<OrvShaderInputViewItemRowWidget*>(indexWidget(Index));
    return pRowWidget && pRowWidget->dragTargetGeometry().contains(pRowWidget->mapFrom(viewport(), Position));
}

void OrvShaderInputTreeView::dragMoveEvent(QDragMoveEvent* pEvent)
{
    m_DragIndex = indexAt(pEvent->pos());
    m_DragTimer.start(isOverHotSpot(m_DragIndex, pEvent->pos()) ? HotSpotDelay : HoverDelay);

    // The base class accepts and scrolls as for a copy; the source is told what the keys ask for.
    pEvent->setDropAction(Qt::CopyAction);
    OrvRowWidgetTree::dragMoveEvent(pEvent);
    pEvent->setDropAction(OrvLayerDragPayload::actionFromModifiers());
}

void OrvShaderInputTreeView::dropEvent(QDropEvent* pEvent)
{
    // Who drops here has not come to open the channel beneath.
    m_DragTimer.stop();
    m_DragIndex = QModelIndex();
    OrvRowWidgetTree::dropEvent(pEvent);
}

void OrvShaderInputTreeView::testAndSetCurrentIndexFromDrag()
{
    const QModelIndex Index = indexAt(viewport()->mapFromGlobal(QCursor::pos()));
    if (Index.isValid() && Index == m_DragIndex)
        setCurrentIndex(Index);
    m_DragIndex = QModelIndex();
}

void OrvShaderInputTreeView::renameChannel()
{
    if (auto* pRowWidget = qobject_cast<OrvShaderInputViewItemRowWidget*>(indexWidget(currentIndex())))
        pRowWidget->editName();
}

void OrvShaderInputTreeView::startDrag(Qt::DropActions SupportedActions)
{
    OrvRowWidgetTree::startDrag(SupportedActions);
    endPressWithKeys();
    m_Parent->requestRefresh();
}

#include "moc_OrvShaderInputTreeView.cpp"
