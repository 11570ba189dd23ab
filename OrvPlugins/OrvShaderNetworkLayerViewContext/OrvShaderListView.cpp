#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderListView.h"

#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Layers/OrvLayerStreamUtils.h"
#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCore/Network/OrvSnNames.h"
#include "OrvCore/Shaders/OrvMultiChannelLayerUtils.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerDragPayload.h"

#include <QtGui/QDragMoveEvent>
#include <QtGui/QHelpEvent>
#include <QtWidgets/QStyledItemDelegate>
#include <QtWidgets/QToolTip>

namespace {

constexpr int IconEdge = 16;
const QSize SmallestSize(40, 50);

bool isWelcome(OrvSnBaseNode* pNode)
{
    if (pNode->hasTag(OrvSnNames::ShaderTag))
        return true;
    if (!OrvLayerStreamUtils::isMergeNode(pNode))
        return false;
    OrvLayer* pLayer = OrvLayerManager::instance().getLayer(pNode, true);
    if (!pLayer)
        return false;
    OrvMultiChannelLayerUtils::assertOnMultiChannelLayer(pLayer);
    return pLayer->isShaderLayer();
}

/// Rows are as wide as the list; a longer name is elided, and a tool tip tells it in full.
class RowDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem& Option, const QModelIndex& Index) const override
    {
        return {IconEdge, QStyledItemDelegate::sizeHint(Option, Index).height()};
    }

    bool helpEvent(QHelpEvent* pEvent, QAbstractItemView* pView, const QStyleOptionViewItem& Option,
        const QModelIndex& Index) override
    {
        const bool IsElided = QStyledItemDelegate::sizeHint(Option, Index).width() > Option.rect.width();
        if (pEvent->type() != QEvent::ToolTip || !IsElided)
            return QStyledItemDelegate::helpEvent(pEvent, pView, Option, Index);
        QToolTip::showText(pEvent->globalPos(), Index.data().toString(), pView->viewport(), Option.rect);
        return true;
    }
};

} // namespace

OrvShaderListView::OrvShaderListView(QWidget* pParent)
    : QListView(pParent)
{
    setMinimumSize(SmallestSize);
    setIconSize({IconEdge, IconEdge});
    setUniformItemSizes(true);
    setItemDelegate(new RowDelegate(this));
    setDragDropMode(QAbstractItemView::DragDrop);
    // A drop is for the list, not for a place in it.
    setDropIndicatorShown(false);
}

void OrvShaderListView::currentChanged(const QModelIndex& Current, const QModelIndex& Previous)
{
    QListView::currentChanged(Current, Previous);
    if (!m_IsPressing)
        Q_EMIT currentIndexChanged(Current, Previous);
}

void OrvShaderListView::mousePressEvent(QMouseEvent* pEvent)
{
    const QPersistentModelIndex Former = currentIndex();
    m_Pressed = pEvent->button() == Qt::LeftButton ? indexAt(pEvent->pos()) : QModelIndex();
    m_IsPressing = m_Pressed.isValid();
    QListView::mousePressEvent(pEvent);
    // The row pressed stays selected: it is what a drag takes along.
    if (m_IsPressing)
        selectionModel()->setCurrentIndex(Former, QItemSelectionModel::NoUpdate);
    m_IsPressing = false;
}

void OrvShaderListView::mouseReleaseEvent(QMouseEvent* pEvent)
{
    QListView::mouseReleaseEvent(pEvent);
    const QModelIndex Pressed = m_Pressed;
    m_Pressed = QModelIndex();
    if (Pressed.isValid())
        setCurrentIndex(Pressed);
}

void OrvShaderListView::startDrag(Qt::DropActions SupportedActions)
{
    m_Pressed = QModelIndex();
    QListView::startDrag(SupportedActions);
    selectionModel()->select(currentIndex(), QItemSelectionModel::ClearAndSelect);
}

void OrvShaderListView::dragMoveEvent(QDragMoveEvent* pEvent)
{
    for (OrvSnBaseNode* pNode : OrvLayerDragPayload::read(pEvent->mimeData())) {
        if (isWelcome(pNode))
            continue;
        pEvent->setDropAction(Qt::IgnoreAction);
        pEvent->ignore();
        return;
    }
    QListView::dragMoveEvent(pEvent);
}

#include "moc_OrvShaderListView.cpp"
