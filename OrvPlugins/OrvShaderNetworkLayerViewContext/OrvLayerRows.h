#pragma once

#include <memory>

class OrvLayer;
class OrvLayerStack;
class OrvLayerTreeView;
class OrvLayerView;
class OrvLayerViewFilterBar;
class OrvLayerViewItemRowWidget;
class OrvLayerViewModel;
class OrvLayerViewRowFilter;
class OrvLayerViewRowSynchronizer;
class QModelIndex;
class QStandardItem;

/// The rows of a Layers palette as a whole: makes them those of a stack, with the current layer's row current
/// and what the filter bar hides hidden, and answers for single ones. The palette owns it, and sees to it
/// that what is selected here meanwhile does not go back to the host.
class OrvLayerRows {
public:
    OrvLayerRows(OrvLayerView* pLayerView, const OrvLayerViewFilterBar* pFilterBar);
    ~OrvLayerRows();

    void showStack(OrvLayerStack* pLayerStack);
    void clear();
    /// Hides and shows the item's row and those below it as the filter bar asks.
    void filter(QStandardItem* pRootItem);

    /// Null without a layer there.
    OrvLayer* currentLayer() const;
    /// Does nothing for a layer without a row.
    void makeCurrent(const OrvLayer* pLayer);
    /// Lets the user edit the name in the current row.
    void editCurrentName();

    OrvLayerViewItemRowWidget* rowWidget(const QModelIndex& Index) const;
    /// The tree unfolded or folded the group there.
    void keepExpanded(const QModelIndex& Index, bool Expanded);
    /// In every row of the layer.
    void updateComponentButtons(const OrvLayer* pLayer);

private:
    OrvLayerViewModel* m_Model;
    OrvLayerTreeView* m_TreeView;
    std::unique_ptr<OrvLayerViewRowSynchronizer> m_Synchronizer;
    OrvLayerViewRowFilter* m_Filter;
};
