#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewRowFilter.h"

#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Network/OrvSnNames.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerTreeView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewFilterBar.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewItem.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewItemRowWidget.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewModel.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewUtils.h"

#include <QtCore/QTimer>

OrvLayerViewRowFilter::OrvLayerViewRowFilter(OrvLayerViewModel* pModel, OrvLayerTreeView* pTreeView,
    const OrvLayerViewFilterBar* pFilterBar, QObject* pParent)
    : QObject(pParent)
    , m_Model(pModel)
    , m_TreeView(pTreeView)
    , m_FilterBar(pFilterBar)
    , m_Timer(new QTimer(this))
{
    m_Timer->setSingleShot(true);
    connect(m_Timer, SIGNAL(timeout()), this, SLOT(applyToAll()));
    OrvShaderNetworkManager* pNetworks = &OrvShaderNetworkManager::instance();
    connect(pNetworks, SIGNAL(nodeNameChanged(OrvSnBaseNode*, QString)), this, SLOT(onNodeChanged()));
    connect(pNetworks, SIGNAL(nodeEnabledChanged(OrvSnBaseNode*, int)), this, SLOT(onNodeChanged()));
    connect(pNetworks, SIGNAL(nodeUserAttributeChanged(OrvSnBaseNode*, QString)), this,
        SLOT(onNodeUserAttributeChanged(OrvSnBaseNode*, QString)));
}

void OrvLayerViewRowFilter::onNodeChanged()
{
    if (m_FilterBar->filterActive())
        m_Timer->start();
}

void OrvLayerViewRowFilter::onNodeUserAttributeChanged(OrvSnBaseNode*, QString Name)
{
    if (Name == OrvMergeAttributes::ColorTag)
        onNodeChanged();
}

void OrvLayerViewRowFilter::applyToAll()
{
    apply(m_Model->invisibleRootItem());
}

void OrvLayerViewRowFilter::apply(QStandardItem* pRootItem)
{
    if (!pRootItem) {
        OrvLayerViewUtils::report(__LINE__, QStringLiteral("pItem is NULL"));
        return;
    }
    m_Active = m_FilterBar->filterActive();
    if (!m_Active && !m_RowsAreFiltered)
        return;
    const bool WholeTree = pRootItem == m_Model->invisibleRootItem();
    m_RowsAreFiltered = m_Active || !WholeTree;
    const QModelIndex Root = WholeTree ? QModelIndex() : pRootItem->index();
    m_HiddenSelection.clear();
    filter(pRootItem, Root, Root.parent());
    if (!m_HiddenSelection.isEmpty())
        select(m_HiddenSelection, false);
    // With the filter gone, commands find what is current again.
    const QModelIndex Current = m_TreeView->currentIndex();
    if (!m_Active && Current.isValid() && !m_TreeView->selectionModel()->hasSelection())
        select(QItemSelection(Current, Current), true);
}

void OrvLayerViewRowFilter::select(const QItemSelection& Rows, bool Selected)
{
    // Told to the layers here: the tree would take those that share content with them along.
    m_TreeView->disconnectSelectionRelay();
    m_TreeView->selectionModel()->select(Rows,
        QItemSelectionModel::Rows | (Selected ? QItemSelectionModel::Select : QItemSelectionModel::Deselect));
    m_TreeView->connectSelectionRelay();
    for (const QModelIndex& Index : Rows.indexes()) {
        if (OrvLayer* pLayer = m_Model->layerFromIndex(Index))
            pLayer->setSelected(Selected, true);
    }
}

bool OrvLayerViewRowFilter::filter(QStandardItem* pItem, const QModelIndex& Index, const QModelIndex& Parent)
{
    bool ShowsChild = false;
    for (int Row = 0; Row < pItem->rowCount(); ++Row)
        ShowsChild |= filter(pItem->child(Row), m_Model->index(Row, 0, Index), Index);

    // The root has no row; a warning has one that says nothing of a layer.
    OrvLayerViewItemRowWidget* pRowWidget
        = Index.isValid() ? static_cast<OrvLayerViewItem*>(pItem)->rowWidget() : nullptr;
    const OrvLayer* pLayer = pRowWidget ? pRowWidget->layer() : nullptr;
    if (!pLayer)
        return true;
    const QString Text = m_Active ? m_FilterBar->filteredName(pLayer) : QString();
    const bool Shown = !m_Active || ShowsChild || !Text.isEmpty();
    // Hiding has the rows laid out anew once, however many there are; what stays as it is shall not.
    if (m_TreeView->isRowHidden(Index.row(), Parent) == Shown)
        m_TreeView->setRowHidden(Index.row(), Parent, !Shown);
    if (!Shown && (pLayer->isSelected() || m_TreeView->selectionModel()->isSelected(Index)))
        m_HiddenSelection.select(Index, Index);
    if (!Text.isEmpty())
        pRowWidget->showFilteredName(Text, pLayer->name());
    else if (Shown)
        pRowWidget->showPlainName();
    return Shown;
}

#include "moc_OrvLayerViewRowFilter.cpp"
