#pragma once

#include <QtCore/QItemSelection>
#include <QtCore/QObject>

class OrvLayerTreeView;
class OrvLayerViewFilterBar;
class OrvLayerViewModel;
class OrvSnBaseNode;
class QModelIndex;
class QStandardItem;
class QTimer;

/// Hides the rows of a layer tree that do not pass the filter bar, and has the others show what made them
/// pass. What it hides is selected no longer: no command acts on it unseen. It belongs to the palette, which
/// calls it when the rows or the filter changed; what is filtered by and changes without a refresh, it
/// follows itself. It makes no row and no part of one, and it costs nothing while nothing is filtered.
class OrvLayerViewRowFilter : public QObject {
    Q_OBJECT

public:
    OrvLayerViewRowFilter(OrvLayerViewModel* pModel, OrvLayerTreeView* pTreeView,
        const OrvLayerViewFilterBar* pFilterBar, QObject* pParent);

    /// The item's row and all below it; the model's root stands for the whole tree.
    void apply(QStandardItem* pRootItem);

private Q_SLOTS:
    void onNodeChanged();
    void onNodeUserAttributeChanged(OrvSnBaseNode* pNode, QString Name);
    void applyToAll();

private:
    /// Whether anything of it is left to be seen.
    bool filter(QStandardItem* pItem, const QModelIndex& Index, const QModelIndex& Parent);
    void select(const QItemSelection& Rows, bool Selected);

    OrvLayerViewModel* m_Model;
    OrvLayerTreeView* m_TreeView;
    const OrvLayerViewFilterBar* m_FilterBar;
    QTimer* m_Timer; ///< collects changes of nodes
    bool m_Active = false; ///< for the time of a walk
    QItemSelection m_HiddenSelection; ///< for the time of a walk
    bool m_RowsAreFiltered = false; ///< some row may be hidden, or not show its plain name
};
