#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewItem.h"

#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewItemRowWidget.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewUtils.h"

OrvLayerViewItem::OrvLayerViewItem(const OrvLayer* pLayer)
    : m_NamesLayer(pLayer && pLayer->blendNode())
{
    setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDragEnabled);
    if (m_NamesLayer)
        setData(pLayer->blendNode()->uuidString(), OrvLayerViewUtils::NodeRole);
}

OrvLayerViewItem* OrvLayerViewItem::inRow(const QStandardItem* pParent, int Row)
{
    return static_cast<OrvLayerViewItem*>(pParent->child(Row));
}

OrvLayerViewItemRowWidget* OrvLayerViewItem::rowWidget() const
{
    return m_RowWidget;
}

void OrvLayerViewItem::setRowWidget(OrvLayerViewItemRowWidget* pRowWidget)
{
    m_RowWidget = pRowWidget;
}

bool OrvLayerViewItem::operator<(const QStandardItem& Other) const
{
    return m_Order < static_cast<const OrvLayerViewItem&>(Other).m_Order;
}
