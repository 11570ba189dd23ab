#pragma once

#include <QtCore/QList>
#include <QtCore/QModelIndex>
#include <QtCore/QQueue>
#include <QtCore/QString>
#include <QtCore/QVector>

class OrvLayer;
class OrvLayerStack;
class OrvLayerTreeView;
class OrvLayerView;
class OrvLayerViewItem;
class OrvLayerViewItemRowWidget;
class OrvLayerViewModel;
class QStandardItem;

/// Makes the rows of a layer tree show a stack. Rows that are right already stay as they are, with their
/// widgets; the others are moved, made or removed in a few steps for the whole level, so that the work grows
/// with the number of rows and not with its square. The rows of another stack are new, but get the widgets of
/// those that go. What the layers cannot represent shows as a warning row. The palette owns it.
class OrvLayerViewRowSynchronizer {
public:
    OrvLayerViewRowSynchronizer(
        OrvLayerView* pLayerView, OrvLayerViewModel* pModel, OrvLayerTreeView* pTreeView);

    /// Rows, their nesting and their selection become those of the stack's layers.
    void synchronize(OrvLayerStack* pLayerStack);

private:
    /// The rows that a level shall show.
    struct Level {
        QList<OrvLayer*> Layers;
        QVector<OrvLayerStack*> GroupStacks; ///< of each layer; null where it is no group
        QString Warning; ///< of the row below the layers, if any
    };
    enum class Depth { Top, InGroup };
    Level levelOf(const QList<OrvLayer*>& Layers, Depth At) const;
    OrvLayerStack* groupStack(const OrvLayer* pLayer) const;

    void synchronizeLevel(QStandardItem* pParent, const QModelIndex& ParentIndex, const Level& Wanted);
    QVector<OrvLayerViewItem*> matchRows(
        QStandardItem* pParent, const QModelIndex& ParentIndex, const Level& Wanted);
    /// The rows of the layers, from among those of the level's range, from other levels, or new.
    QVector<OrvLayerViewItem*> matchMovedRows(
        QStandardItem* pParent, int FirstRow, int EndRow, const QList<OrvLayer*>& Layers);
    OrvLayerViewItem* takeFromOtherLevel(const OrvLayer* pLayer, const QStandardItem* pParent);
    bool levelHolds(const QStandardItem* pParent, const OrvLayer* pLayer) const;
    void arrange(QStandardItem* pParent, const QVector<OrvLayerViewItem*>& Rows);
    bool mayReuseRowWidgets() const;
    void releaseRowWidgets(OrvLayerViewItem* pItem);
    void makeRowWidget(OrvLayerViewItem* pItem, const QModelIndex& Index, OrvLayer* pLayer);
    void discardFreeRowWidgets();
    void makeWarningWidget(const QModelIndex& Index, const QString& Warning);
    void selectRows();

    OrvLayerView* m_LayerView;
    OrvLayerViewModel* m_Model;
    OrvLayerTreeView* m_TreeView;
    OrvLayerStack* m_LayerStack = nullptr; ///< for the time of a synchronisation
    const OrvLayerStack* m_StackBefore = nullptr; ///< only compared, since it can be gone
    bool m_ReusesRowWidgets = false; ///< for the time of a synchronisation
    /// Of rows that went, in the order of the tree. They are used in that order, too, so that widgets that
    /// were in view are in view again.
    QQueue<OrvLayerViewItemRowWidget*> m_FreeRowWidgets;
    QVector<QModelIndex> m_SelectedRows;
};
