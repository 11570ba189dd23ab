#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputTreeView.h"

#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerDragPayload.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputViewItemRowWidget.h"

#include <QtGui/QDragMoveEvent>
#include <QtWidgets/QStyledItemDelegate>

namespace {

constexpr int HoverDelay = 500; // ms
constexpr int HotSpotDelay = 1; // ms
const QSize SmallestSize(50, 40);

/// Rows get their height before they get their widgets.
class OrvChannelRowDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;
    QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const override
    {
        return {SmallestSize.width(), OrvShaderInputViewItemRowWidget::RowHeight};
    }
};

} // namespace

OrvShaderInputTreeView::OrvShaderInputTreeView(OrvShaderInputView* pParent)
    : OrvRowWidgetTree(pParent)
    , m_Parent(pParent)
{
    setHeaderHidden(true);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setItemDelegate(new OrvChannelRowDelegate(this));
    setMinimumSize(SmallestSize);
    m_DragTimer.setInterval(HoverDelay);
    m_DragTimer.setSingleShot(true);
    connect(&m_DragTimer, SIGNAL(timeout()), this, SLOT(testAndSetCurrentIndexFromDrag()));
}

QSize OrvShaderInputTreeView::sizeHint() const { return SmallestSize; }

void OrvShaderInputTreeView::currentChanged(const QModelIndex& Current, const QModelIndex& Previous)
{
    OrvRowWidgetTree::currentChanged(Current, Previous);
    Q_EMIT currentIndexChanged(Current, Previous);
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

void OrvShaderInputTreeView::testAndSetCurrentIndexFromDrag()
{
    const QModelIndex Index = indexAt(viewport()->mapFromGlobal(QCursor::pos()));
    if (Index.isValid() && Index == m_DragIndex)
        setCurrentIndex(Index);
    m_DragIndex = QModelIndex();
}

void OrvShaderInputTreeView::startDrag(Qt::DropActions SupportedActions)
{
    OrvRowWidgetTree::startDrag(SupportedActions);
    m_Parent->requestRefresh();
}

#include "moc_OrvShaderInputTreeView.cpp"
