#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderListView.h"

#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Layers/OrvLayerStreamUtils.h"
#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCore/Network/OrvSnNames.h"
#include "OrvCore/Shaders/OrvMultiChannelLayerUtils.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerDragPayload.h"

#include <QtGui/QDragMoveEvent>
#include <QtWidgets/QStyledItemDelegate>

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

/// Rows are as wide as the list; a longer name is elided.
class RowDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem& Option, const QModelIndex& Index) const override
    {
        return {IconEdge, QStyledItemDelegate::sizeHint(Option, Index).height()};
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
}

void OrvShaderListView::currentChanged(const QModelIndex& Current, const QModelIndex& Previous)
{
    QListView::currentChanged(Current, Previous);
    Q_EMIT currentIndexChanged(Current, Previous);
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
