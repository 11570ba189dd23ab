#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewRowSynchronizer.h"

#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerStack.h"
#include "OrvCore/Layers/OrvLayerStreamUtils.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCoreModules/Window/OrvIcon.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerRowArrangement.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerStackWarnings.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerTreeView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewItem.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewItemRowWidget.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewModel.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewUtils.h"

#include <QtCore/QHash>
#include <QtWidgets/QApplication>
#include <QtWidgets/QPushButton>

#include <algorithm>

namespace {

/// Looking for a row in other levels walks the tree; worth it for layers that the user moved, not for a
/// thousand.
constexpr int MostRowsTakenFromOtherLevels = 8;

const auto rowOf = &OrvLayerViewItem::inRow;

bool shows(const OrvLayerViewItem* pItem, const OrvLayer* pLayer)
{
    const OrvLayerViewItemRowWidget* pRowWidget = pItem->rowWidget();
    return pRowWidget && pRowWidget->layer() == pLayer;
}

} // namespace

OrvLayerViewRowSynchronizer::OrvLayerViewRowSynchronizer(
    OrvLayerView* pLayerView, OrvLayerViewModel* pModel, OrvLayerTreeView* pTreeView)
    : m_LayerView(pLayerView)
    , m_Model(pModel)
    , m_TreeView(pTreeView)
{
}

void OrvLayerViewRowSynchronizer::synchronize(OrvLayerStack* pLayerStack)
{
    m_LayerStack = pLayerStack;
    m_ReusesRowWidgets = pLayerStack != m_StackBefore && mayReuseRowWidgets();
    m_StackBefore = pLayerStack;
    m_SelectedRows.clear();
    synchronizeLevel(
        m_Model->invisibleRootItem(), QModelIndex(), levelOf(pLayerStack->layerList(), Depth::Top));
    selectRows();
    discardFreeRowWidgets();
    m_LayerStack = nullptr;
}

OrvLayerViewRowSynchronizer::Level OrvLayerViewRowSynchronizer::levelOf(
    const QList<OrvLayer*>& Layers, Depth At) const
{
    Level Wanted;
    Wanted.Layers = Layers;
    Wanted.GroupStacks.reserve(Layers.size());
    for (int Row = 0; Row < Layers.size(); ++Row) {
        OrvLayerStack* pGroupStack = groupStack(Layers[Row]);
        if (pGroupStack)
            Wanted.Warning = OrvLayerStackWarnings::ofGroup(Layers[Row], pGroupStack);
        if (!Wanted.Warning.isEmpty()) {
            // The warning takes the place of the group and of everything below it.
            Wanted.Layers.erase(Wanted.Layers.begin() + Row, Wanted.Layers.end());
            return Wanted;
        }
        Wanted.GroupStacks.append(pGroupStack);
    }
    if (At == Depth::Top || !Layers.isEmpty())
        Wanted.Warning = OrvLayerStackWarnings::below(Layers, m_LayerStack);
    return Wanted;
}

OrvLayerStack* OrvLayerViewRowSynchronizer::groupStack(const OrvLayer* pLayer) const
{
    const QString StreamName = m_LayerStack->currentStreamName(pLayer->blendNode());
    return OrvLayerStreamUtils::isLayerGroup(pLayer, StreamName)
        ? OrvLayerStreamUtils::groupStack(pLayer, StreamName)
        : nullptr;
}

void OrvLayerViewRowSynchronizer::synchronizeLevel(
    QStandardItem* pParent, const QModelIndex& ParentIndex, const Level& Wanted)
{
    arrange(pParent, matchRows(pParent, ParentIndex, Wanted));
    for (int Row = 0; Row < Wanted.Layers.size(); ++Row) {
        OrvLayerViewItem* pItem = rowOf(pParent, Row);
        OrvLayerStack* pGroupStack = Wanted.GroupStacks[Row];
        if (!pItem->rowWidget())
            makeRowWidget(pItem, m_Model->index(Row, 0, ParentIndex), Wanted.Layers[Row]);
        if (Wanted.Layers[Row]->isSelected())
            m_SelectedRows.append(m_Model->index(Row, 0, ParentIndex));
        if (pItem->isDropEnabled() != bool(pGroupStack))
            pItem->setDropEnabled(pGroupStack);
        if (!pGroupStack) {
            if (pItem->hasChildren())
                pItem->removeRows(0, pItem->rowCount());
            continue;
        }
        const bool WasEmpty = !pItem->hasChildren();
        const QModelIndex Index = m_Model->index(Row, 0, ParentIndex);
        synchronizeLevel(pItem, Index, levelOf(pGroupStack->layerList(), Depth::InGroup));
        if (WasEmpty)
            m_TreeView->setExpanded(Index, pItem->rowWidget()->isExpanded());
    }
    const QModelIndex WarningIndex = m_Model->index(Wanted.Layers.size(), 0, ParentIndex);
    if (!Wanted.Warning.isEmpty() && !m_TreeView->indexWidget(WarningIndex))
        makeWarningWidget(WarningIndex, Wanted.Warning);
}

QVector<OrvLayerViewItem*> OrvLayerViewRowSynchronizer::matchRows(
    QStandardItem* pParent, const QModelIndex& ParentIndex, const Level& Wanted)
{
    const QList<OrvLayer*>& Layers = Wanted.Layers;
    const int WantedCount = Layers.size();
    QVector<OrvLayerViewItem*> Rows;
    Rows.reserve(WantedCount + 1);

    while (Rows.size() < qMin(WantedCount, pParent->rowCount())
        && shows(rowOf(pParent, Rows.size()), Layers[Rows.size()]))
        Rows.append(rowOf(pParent, Rows.size()));

    // Rows at the end that are right but for their place, a warning row below them aside.
    int Present = pParent->rowCount();
    OrvLayerViewItem* pWarningRow = nullptr;
    if (Present > Rows.size() && !rowOf(pParent, Present - 1)->namesLayer())
        pWarningRow = rowOf(pParent, --Present);
    int SameAtEnd = 0;
    while (Rows.size() + SameAtEnd < qMin(WantedCount, Present)
        && shows(rowOf(pParent, Present - 1 - SameAtEnd), Layers[WantedCount - 1 - SameAtEnd]))
        ++SameAtEnd;

    const int First = Rows.size();
    Rows += matchMovedRows(
        pParent, First, Present - SameAtEnd, Layers.mid(First, WantedCount - SameAtEnd - First));
    for (int Row = Present - SameAtEnd; Row < Present; ++Row)
        Rows.append(rowOf(pParent, Row));

    if (!Wanted.Warning.isEmpty()) {
        const QWidget* pButton
            = pWarningRow ? m_TreeView->indexWidget(m_Model->index(Present, 0, ParentIndex)) : nullptr;
        const bool Stays = pButton && pButton->toolTip() == Wanted.Warning;
        Rows.append(Stays ? pWarningRow : new OrvLayerViewItem(nullptr));
    }
    return Rows;
}

QVector<OrvLayerViewItem*> OrvLayerViewRowSynchronizer::matchMovedRows(
    QStandardItem* pParent, int FirstRow, int EndRow, const QList<OrvLayer*>& Layers)
{
    QHash<QString, int> Present;
    for (int Row = FirstRow; Row < EndRow; ++Row)
        Present.insert(rowOf(pParent, Row)->data(OrvLayerViewUtils::NodeRole).toString(), Row);
    QVector<OrvLayerViewItem*> Rows;
    QVector<int> KeptAt, FormerPlaces;
    int TakenCount = 0;
    for (const OrvLayer* pLayer : Layers) {
        const auto Former = Present.constFind(pLayer->blendNode()->uuidString());
        if (Former != Present.constEnd()) {
            KeptAt.append(Rows.size());
            FormerPlaces.append(*Former);
            Rows.append(rowOf(pParent, *Former));
            continue;
        }
        OrvLayerViewItem* pItem
            = ++TakenCount <= MostRowsTakenFromOtherLevels ? takeFromOtherLevel(pLayer, pParent) : nullptr;
        Rows.append(pItem ? pItem : new OrvLayerViewItem(pLayer));
    }
    const QVector<bool> Unmoved = OrvLayerRowArrangement::unmoved(FormerPlaces);
    for (int At = 0; At < KeptAt.size(); ++At) {
        OrvLayerViewItem* pItem = Rows[KeptAt[At]];
        if (!Unmoved[At] || !shows(pItem, Layers[KeptAt[At]]))
            pItem->setRowWidget(nullptr);
    }
    return Rows;
}

OrvLayerViewItem* OrvLayerViewRowSynchronizer::takeFromOtherLevel(
    const OrvLayer* pLayer, const QStandardItem* pParent)
{
    for (OrvLayerViewItem* pItem : m_Model->itemsFromLayer(pLayer)) {
        QStandardItem* pOther = pItem->parent() ? pItem->parent() : m_Model->invisibleRootItem();
        // In a shared group the layer has a row of its own that stays.
        if (pOther == pParent || levelHolds(pOther, pLayer))
            continue;
        pItem->removeRows(0, pItem->rowCount());
        pItem->setRowWidget(nullptr);
        return static_cast<OrvLayerViewItem*>(pOther->takeRow(pItem->row()).first());
    }
    return nullptr;
}

bool OrvLayerViewRowSynchronizer::levelHolds(const QStandardItem* pParent, const OrvLayer* pLayer) const
{
    const OrvLayerStack* pLevelStack = m_LayerStack;
    if (pParent != m_Model->invisibleRootItem()) {
        const OrvLayer* pGroup = OrvLayerViewUtils::layerFromItem(pParent);
        pLevelStack = pGroup ? groupStack(pGroup) : nullptr;
    }
    return pLevelStack && pLevelStack->layerList().contains(const_cast<OrvLayer*>(pLayer));
}

void OrvLayerViewRowSynchronizer::arrange(QStandardItem* pParent, const QVector<OrvLayerViewItem*>& Rows)
{
    OrvLayerRowArrangement Arrangement(pParent, Rows);
    if (Arrangement.isDone())
        return;
    m_TreeView->scheduleRowLayout();
    if (m_ReusesRowWidgets) {
        for (OrvLayerViewItem* pItem : Arrangement.goingRows())
            releaseRowWidgets(pItem);
    }
    Arrangement.carryOut();
}

bool OrvLayerViewRowSynchronizer::mayReuseRowWidgets() const
{
    // What the user began on one layer, a press, a menu or a new name, must not end on another.
    return !(m_TreeView->underMouse() && QGuiApplication::mouseButtons() != Qt::NoButton)
        && !QApplication::activePopupWidget()
        && !m_TreeView->viewport()->isAncestorOf(QApplication::focusWidget());
}

void OrvLayerViewRowSynchronizer::releaseRowWidgets(OrvLayerViewItem* pItem)
{
    if (OrvLayerViewItemRowWidget* pRowWidget = pItem->rowWidget()) {
        m_TreeView->releaseRowWidget(pRowWidget);
        m_FreeRowWidgets.enqueue(pRowWidget);
    }
    for (int Row = 0; Row < pItem->rowCount(); ++Row)
        releaseRowWidgets(rowOf(pItem, Row));
}

void OrvLayerViewRowSynchronizer::makeRowWidget(
    OrvLayerViewItem* pItem, const QModelIndex& Index, OrvLayer* pLayer)
{
    OrvLayerViewItemRowWidget* pRowWidget = nullptr;
    if (m_FreeRowWidgets.isEmpty()) {
        pRowWidget = new OrvLayerViewItemRowWidget(pLayer, m_LayerView);
    } else {
        pRowWidget = m_FreeRowWidgets.dequeue();
        pRowWidget->setLayer(pLayer);
    }
    pItem->setRowWidget(pRowWidget);
    m_TreeView->setRowWidget(Index, pRowWidget);
}

void OrvLayerViewRowSynchronizer::discardFreeRowWidgets()
{
    for (OrvLayerViewItemRowWidget* pRowWidget : qAsConst(m_FreeRowWidgets)) {
        pRowWidget->hide();
        pRowWidget->deleteLater();
    }
    m_FreeRowWidgets.clear();
}

void OrvLayerViewRowSynchronizer::makeWarningWidget(const QModelIndex& Index, const QString& Warning)
{
    auto* pButton = new QPushButton(
        OrvIcon::createIconFromFilename(QStringLiteral("NodeGraph.png")), OrvLayerView::tr("Node Graph"));
    pButton->setStyleSheet(QStringLiteral("text-align: left"));
    pButton->setToolTip(Warning);
    pButton->setFixedHeight(OrvLayerViewItemRowWidget::RowHeight);
    QObject::connect(pButton, SIGNAL(pressed()), m_LayerView, SLOT(onUnrepresentableButtonClicked()));
    m_TreeView->setRowWidget(Index, pButton);
}

void OrvLayerViewRowSynchronizer::selectRows()
{
    QItemSelectionModel* pSelectionModel = m_TreeView->selectionModel();
    const QModelIndexList Present = pSelectionModel->selectedIndexes();
    if (Present.size() == m_SelectedRows.size()) {
        QSet<QModelIndex> Wanted(m_SelectedRows.cbegin(), m_SelectedRows.cend());
        if (std::all_of(Present.cbegin(), Present.cend(),
                [&](const QModelIndex& Index) { return Wanted.contains(Index); }))
            return;
    }
    QItemSelection Selection;
    for (int First = 0, Last = 0; First < m_SelectedRows.size(); First = ++Last) {
        const QModelIndex& FirstIndex = m_SelectedRows[First];
        while (Last + 1 < m_SelectedRows.size()
            && m_SelectedRows[Last + 1] == FirstIndex.sibling(FirstIndex.row() + Last + 1 - First, 0))
            ++Last;
        Selection.append(QItemSelectionRange(FirstIndex, m_SelectedRows[Last]));
    }
    pSelectionModel->select(Selection, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}
