#pragma once

class OrvLayerTreeView;
class OrvLayerViewFilterBar;
class OrvLayerViewModel;
class QModelIndex;
class QStandardItem;

/// Hides the rows of a layer tree that do not pass the filter bar, and has the others show what made them
/// pass. The palette owns it. It makes no row and no part of one, and it costs nothing while nothing is
/// filtered.
class OrvLayerViewRowFilter {
public:
    OrvLayerViewRowFilter(
        OrvLayerViewModel* pModel, OrvLayerTreeView* pTreeView, const OrvLayerViewFilterBar* pFilterBar);

    /// The item's row and all below it; the model's root stands for the whole tree.
    void apply(QStandardItem* pRootItem);

private:
    /// Whether anything of it is left to be seen.
    bool filter(QStandardItem* pItem, const QModelIndex& Index, const QModelIndex& Parent);

    OrvLayerViewModel* m_Model;
    OrvLayerTreeView* m_TreeView;
    const OrvLayerViewFilterBar* m_FilterBar;
    bool m_Active = false; ///< for the time of a walk
    bool m_RowsAreFiltered = false; ///< some row may be hidden, or not show its plain name
};
