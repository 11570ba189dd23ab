#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayersPane.h"

#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerBlendRow.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerToolBar.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerTreeView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewAttributeFilter.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewColorTagFilter.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewFilterBar.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewKindFilter.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewModel.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewNameFilter.h"

#include <QtWidgets/QFrame>
#include <QtWidgets/QVBoxLayout>

namespace {

const QColor SeparatorColor(0x3b, 0x3b, 0x3b);

QWidget* createSeparator()
{
    QFrame* pSeparator = new QFrame;
    pSeparator->setFrameStyle(QFrame::HLine);
    QPalette Colors = pSeparator->palette();
    Colors.setBrush(QPalette::WindowText, SeparatorColor);
    pSeparator->setPalette(Colors);
    return pSeparator;
}

} // namespace

OrvLayersPane::OrvLayersPane(OrvLayerView* pLayerView)
{
    QVBoxLayout* pLayout = new QVBoxLayout(this);
    pLayout->setContentsMargins(0, 0, 0, 0);
    pLayout->setSpacing(1);
    m_FilterBar = new OrvLayerViewFilterBar(pLayerView, pLayout);
    for (OrvLayerViewFilterType* pFilterType : std::initializer_list<OrvLayerViewFilterType*>{
             new OrvLayerViewNameFilter(pLayerView), new OrvLayerViewKindFilter(pLayerView),
             new OrvLayerViewAttributeFilter(pLayerView), new OrvLayerViewColorTagFilter(pLayerView)})
        m_FilterBar->addFilter(pFilterType);
    m_BlendRow = new OrvLayerBlendRow(pLayerView);
    m_Model = new OrvLayerViewModel(pLayerView, pLayerView);
    m_TreeView = new OrvLayerTreeView(this, pLayerView);
    m_TreeView->setModel(m_Model);
    m_TreeView->setDragDropMode(QAbstractItemView::DragDrop);
    m_ToolBar = new OrvLayerToolBar(pLayerView);
    pLayout->addWidget(createSeparator());
    pLayout->addWidget(m_BlendRow);
    pLayout->addWidget(m_TreeView, 1);
    pLayout->addWidget(m_ToolBar, 0, Qt::AlignBottom);
}
