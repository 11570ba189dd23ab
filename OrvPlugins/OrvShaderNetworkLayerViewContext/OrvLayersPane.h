#pragma once

#include <QtWidgets/QWidget>

class OrvLayerBlendRow;
class OrvLayerToolBar;
class OrvLayerTreeView;
class OrvLayerView;
class OrvLayerViewFilterBar;
class OrvLayerViewModel;

/// The upper pane of a Layers palette, from top to bottom: the filters, how the current layer is blended, the
/// tree of layers, the tool bar. It makes and places them; the palette, which owns it, connects them.
class OrvLayersPane : public QWidget {
public:
    explicit OrvLayersPane(OrvLayerView* pLayerView);

    OrvLayerViewFilterBar* filterBar() const { return m_FilterBar; }
    OrvLayerBlendRow* blendRow() const { return m_BlendRow; }
    OrvLayerViewModel* model() const { return m_Model; }
    OrvLayerTreeView* treeView() const { return m_TreeView; }
    OrvLayerToolBar* toolBar() const { return m_ToolBar; }

private:
    OrvLayerViewFilterBar* m_FilterBar;
    OrvLayerBlendRow* m_BlendRow;
    OrvLayerViewModel* m_Model;
    OrvLayerTreeView* m_TreeView;
    OrvLayerToolBar* m_ToolBar;
};
