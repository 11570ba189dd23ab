#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewRowSynchronizer.h"

#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Layers/OrvLayerStack.h"
#include "OrvCore/Layers/OrvLayerStreamUtils.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Network/OrvSnMultiChannelMergeNode.h"
#include "OrvCoreModules/Window/OrvIcon.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerTreeView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerView.h"
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
constexpr int GoingRow = -1; ///< the order of a row that goes: it sorts to the front

OrvLayerViewItem* rowOf(const QStandardItem* pParent, int Row)
{
    return static_cast<OrvLayerViewItem*>(pParent->child(Row));
}

bool shows(const OrvLayerViewItem* pItem, const OrvLayer* pLayer)
{
    const OrvLayerViewItemRowWidget* pRowWidget = pItem->rowWidget();
    return pRowWidget && pRowWidget->layer() == pLayer;
}

bool isInOrder(const QStandardItem* pParent, const QVector<OrvLayerViewItem*>& Rows)
{
    for (int Row = 0; Row < Rows.size(); ++Row) {
        if (pParent->child(Row) != Rows[Row])
            return false;
    }
    return pParent->rowCount() == Rows.size();
}

/// All in one step: scattered ones are sorted to the front first. Returns whether those that stay are in
/// their order after it.
bool removeGoingRows(QStandardItem* pParent)
{
    int Count = 0, First = 0, Last = 0;
    bool Ascending = true;
    for (int Row = 0, Before = GoingRow; Row < pParent->rowCount(); ++Row) {
        const int Order = rowOf(pParent, Row)->order();
        if (Order != GoingRow) {
            Ascending = Ascending && Order > Before;
            Before = Order;
            continue;
        }
        First = Count == 0 ? Row : First;
        Last = Row;
        ++Count;
    }
    if (Count == 0)
        return Ascending;
    const bool Scattered = Last - First + 1 != Count;
    if (Scattered)
        pParent->sortChildren(0);
    pParent->removeRows(Scattered ? 0 : First, Count);
    return Ascending || Scattered;
}

/// In one block, at their place where they belong together. Returns whether they do.
bool insertNewRows(QStandardItem* pParent, const QVector<OrvLayerViewItem*>& Rows)
{
    QList<QStandardItem*> New;
    int First = 0, Last = 0;
    for (int Row = 0; Row < Rows.size(); ++Row) {
        if (Rows[Row]->model())
            continue;
        First = New.isEmpty() ? Row : First;
        Last = Row;
        New.append(Rows[Row]);
    }
    if (New.isEmpty())
        return true;
    const bool InOnePlace = Last - First + 1 == New.size();
    pParent->insertRows(InOnePlace ? qMin(First, pParent->rowCount()) : pParent->rowCount(), New);
    return InOnePlace;
}

/// Which of the rows, given by their former places in their new order, can stay while the others move around
/// them: the members of a longest ascending subsequence.
QVector<bool> unmovedRows(const QVector<int>& FormerPlaces)
{
    QVector<int> Tails, Previous(FormerPlaces.size(), -1); // positions in FormerPlaces
    for (int At = 0; At < FormerPlaces.size(); ++At) {
        const auto Tail = std::lower_bound(Tails.begin(), Tails.end(), At,
            [&](int Left, int Right) { return FormerPlaces[Left] < FormerPlaces[Right]; });
        if (Tail != Tails.begin())
            Previous[At] = *std::prev(Tail);
        if (Tail == Tails.end())
            Tails.append(At);
        else
            *Tail = At;
    }
    QVector<bool> Unmoved(FormerPlaces.size(), false);
    for (int At = Tails.isEmpty() ? -1 : Tails.last(); At >= 0; At = Previous[At])
        Unmoved[At] = true;
    return Unmoved;
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
            Wanted.Warning = groupWarning(Layers[Row], pGroupStack);
        if (!Wanted.Warning.isEmpty()) {
            // The warning takes the place of the group and of everything below it.
            Wanted.Layers.erase(Wanted.Layers.begin() + Row, Wanted.Layers.end());
            return Wanted;
        }
        Wanted.GroupStacks.append(pGroupStack);
    }
    if (At == Depth::Top || !Layers.isEmpty())
        Wanted.Warning = bottomWarning(Layers);
    return Wanted;
}

OrvLayerStack* OrvLayerViewRowSynchronizer::groupStack(const OrvLayer* pLayer) const
{
    const QString StreamName = m_LayerStack->currentStreamName(pLayer->blendNode());
    return OrvLayerStreamUtils::isLayerGroup(pLayer, StreamName)
        ? OrvLayerStreamUtils::groupStack(pLayer, StreamName)
        : nullptr;
}

QString OrvLayerViewRowSynchronizer::groupWarning(
    const OrvLayer* pLayer, const OrvLayerStack* pGroupStack) const
{
    const bool IsMultiChannel = OrvLayerStreamUtils::isMultiChannelMergeLayer(pLayer);
    if (OrvLayerStreamUtils::validateGroupSelection(
            pGroupStack->layerList(), IsMultiChannel ? pLayer->commonNode() : nullptr))
        return {};
    const QString Warning = IsMultiChannel
        ? OrvLayerView::tr(
            "Multi-Channel Group Layer '%1' has some unrepresentable connections due to nested "
            "multi-channel layers of different shader model. Please rewire in the node graph.")
        : OrvLayerView::tr(
            "Group Layer '%1' has some unrepresentable connections due to nested multi-channel "
            "layers. Please rewire in the node graph.");
    return Warning.arg(pLayer->name());
}

QString OrvLayerViewRowSynchronizer::bottomWarning(const QList<OrvLayer*>& Layers) const
{
    OrvSnBaseNode* pBottom = Layers.isEmpty()
        ? m_LayerStack->bottomNode()
        : OrvLayerStreamUtils::layerNodeBelow(Layers.last(), m_LayerStack);
    if (OrvLayerStreamUtils::isValidBottomTransparencyNode(pBottom))
        return {};
    if (!pBottom)
        return OrvLayerView::tr("No bottom stack node.");
    const auto* pCommon = qobject_cast<OrvSnMultiChannelMergeNode*>(pBottom);
    if (pCommon && !pCommon->isRepresentable())
        return OrvLayerView::tr(
            "Node '%1' is unrepresentable, only Merge nodes and Multi-Channel Merge nodes "
            "can be represented in the layer stack.")
            .arg(pBottom->name());
    const OrvLayer* pLayer = OrvLayerManager::layersOf(pBottom).value(0);
    if (OrvLayerStreamUtils::isInvalidMaterialLayer(pLayer))
        return OrvLayerView::tr("Multi-Channel Layer '%1' has some unrepresentable connections.")
            .arg(pBottom->name());
    return OrvLayerView::tr("Node '%1' is unrepresentable.").arg(pBottom->name());
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
    const QVector<bool> Unmoved = unmovedRows(FormerPlaces);
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
    if (isInOrder(pParent, Rows))
        return;
    m_TreeView->scheduleRowLayout();
    for (int Row = 0; Row < pParent->rowCount(); ++Row)
        rowOf(pParent, Row)->setOrder(GoingRow);
    for (int Row = 0; Row < Rows.size(); ++Row)
        Rows[Row]->setOrder(Row);
    for (int Row = 0; m_ReusesRowWidgets && Row < pParent->rowCount(); ++Row) {
        if (rowOf(pParent, Row)->order() == GoingRow)
            releaseRowWidgets(rowOf(pParent, Row));
    }
    const bool KeptAreInOrder = removeGoingRows(pParent);
    const bool NewAreInPlace = insertNewRows(pParent, Rows);
    if (!KeptAreInOrder || !NewAreInPlace)
        pParent->sortChildren(0);
    for (OrvLayerViewItem* pItem : Rows)
        pItem->setOrder(0);
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
