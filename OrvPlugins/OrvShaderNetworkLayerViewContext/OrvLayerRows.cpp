#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerRows.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerTreeView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewItem.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewItemRowWidget.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewModel.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewRowFilter.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewRowSynchronizer.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewUtils.h"

#include <QtWidgets/QHeaderView>

using OrvLayerViewUtils::report;

OrvLayerRows::OrvLayerRows(OrvLayerView* pLayerView, const OrvLayerViewFilterBar* pFilterBar)
    : m_Model(pLayerView->model())
    , m_TreeView(pLayerView->treeView())
    , m_Synchronizer(std::make_unique<OrvLayerViewRowSynchronizer>(pLayerView, m_Model, m_TreeView))
    , m_Filter(new OrvLayerViewRowFilter(m_Model, m_TreeView, pFilterBar, pLayerView))
{
}

OrvLayerRows::~OrvLayerRows() = default;

void OrvLayerRows::showStack(OrvLayerStack* pLayerStack)
{
    m_Synchronizer->synchronize(pLayerStack);
    if (m_Model->rowCount() > 0 && m_TreeView->header()->sectionResizeMode(0) != QHeaderView::Stretch)
        m_TreeView->header()->setSectionResizeMode(QHeaderView::Stretch);
    if (pLayerStack->layerList().isEmpty())
        return;
    for (const OrvShaderInput* pParent : pLayerStack->parentShaderInputs()) {
        const OrvLayer* pLayer = pParent->currentLayer();
        if (!pLayer)
            continue;
        report(__LINE__,
            QString::asprintf("[ -- ] About to refresh view for layer %p, '%s'",
                static_cast<const void*>(pLayer), pLayer->name().toLocal8Bit().constData()));
        makeCurrent(pLayer);
    }
    updateComponentButtons(OrvLayerManager::instance().currentLayer());
    filter(m_Model->invisibleRootItem());
}

void OrvLayerRows::clear()
{
    m_Model->removeRows(0, m_Model->rowCount());
}

void OrvLayerRows::filter(QStandardItem* pRootItem)
{
    m_Filter->apply(pRootItem);
}

OrvLayer* OrvLayerRows::currentLayer() const
{
    return m_Model->layerFromIndex(m_TreeView->currentIndex());
}

void OrvLayerRows::makeCurrent(const OrvLayer* pLayer)
{
    // A layer in a shared group has several rows; the one where the user is will do.
    if (currentLayer() == pLayer)
        return;
    const QModelIndex Index = m_Model->indexFromLayer(pLayer);
    if (Index.isValid())
        m_TreeView->selectionModel()->setCurrentIndex(Index, QItemSelectionModel::Rows);
}

void OrvLayerRows::editCurrentName()
{
    const QModelIndex Current = m_TreeView->currentIndex();
    OrvLayerViewItemRowWidget* pRowWidget = rowWidget(Current);
    if (!pRowWidget)
        return;
    m_TreeView->scrollTo(Current);
    pRowWidget->editName();
}

OrvLayerViewItemRowWidget* OrvLayerRows::rowWidget(const QModelIndex& Index) const
{
    return qobject_cast<OrvLayerViewItemRowWidget*>(m_TreeView->indexWidget(Index));
}

void OrvLayerRows::keepExpanded(const QModelIndex& Index, bool Expanded)
{
    if (OrvLayerViewItemRowWidget* pRowWidget = rowWidget(Index))
        pRowWidget->setExpanded(Expanded);
    else
        report(__LINE__, "pItemRowWidget is NULL");
}

void OrvLayerRows::updateComponentButtons(const OrvLayer* pLayer)
{
    for (const OrvLayerViewItem* pItem : m_Model->itemsFromLayer(pLayer)) {
        if (OrvLayerViewItemRowWidget* pRowWidget = pItem->rowWidget())
            pRowWidget->updateComponentButtons();
    }
}
