#pragma once

#include "OrvCore/Object/OrvCustomAttribute.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewCommands.h"

#include <QtCore/QHash>
#include <QtCore/QMap>
#include <QtCore/QModelIndex>
#include <QtCore/QPair>
#include <QtCore/QPointer>
#include <QtGui/QIcon>
#include <QtWidgets/QWidget>

#include <memory>

class OrvDeferredTimer;
class OrvLayer;
class OrvLayerBlendRow;
class OrvLayerPropertiesArea;
class OrvLayerRows;
class OrvLayerStack;
class OrvLayerStackChanges;
class OrvLayerToolBar;
class OrvLayerTreeEmptyText;
class OrvLayerTreeView;
class OrvLayerViewFilterBar;
class OrvLayerViewItemRowWidget;
class OrvLayerViewModel;
class OrvLayerVisibilityGesture;
class OrvMultiChannelLayerCommands;
class OrvPalette;
class OrvProject;
class OrvShaderLayerCommands;
class OrvShaderNetwork;
class OrvSnBaseNode;
class QAction;
class QMenu;
class QStandardItem;

/// Body of every Layers palette, which owns it: the layers of one stack as a tree, the commands that make and
/// remove layers, blending and properties of the current one. It rebuilds itself from the host after every
/// burst of changes and edits through the host alone; whoever shows the view gives it its stack.
class OrvLayerView : public QWidget {
    Q_OBJECT

public:
    /// Flag value: the palette is made for one stack and keeps it.
    static constexpr int DedicatedStack = 2;

    OrvLayerView(QWidget* pParent, int Flags);
    ~OrvLayerView() override;

    QSize sizeHint() const override;

    OrvLayerStack* layerStack() const;
    void setLayerStack(OrvLayerStack* pLayerStack);
    /// The user works here: commands of menus and shortcuts go to this view and its stack.
    void makeActive();
    void setDragEnabled(bool Enabled);
    bool isRefreshPending() const;

    OrvLayerTreeView* treeView() const { return m_View; }
    OrvLayerViewModel* model() const { return m_Model; }
    OrvLayerToolBar* toolBar() const { return m_ToolBar; }
    OrvLayerVisibilityGesture* visibilityGesture() const { return m_VisibilityGesture; }
    OrvMultiChannelLayerCommands* multiChannelCommands() const { return m_MultiChannelCommands.get(); }
    /// Null without a layer there.
    OrvLayer* layerFromIndex(const QModelIndex& Index) const;
    OrvLayerViewItemRowWidget* rowWidget(const QModelIndex& Index) const;
    /// Lets the user edit the name in the current row.
    void renameCurrentLayer();

Q_SIGNALS:
    void layerStackChanged(OrvLayerStack* pLayerStack);
    void refreshRequested();

public Q_SLOTS:
    void requestRefresh();
    void clearAndRefresh();
    void redrawProperties();
    void changeCurrentIndex(OrvLayer* Layer);
    void clearProperties();
    void onProjectClosing();
    void onNodeReconnected(OrvShaderNetwork* Network, QString InputName, OrvSnBaseNode* Node,
        OrvSnBaseNode* NewInputNode, OrvSnBaseNode* OldInputNode);
    void onExpanded(QModelIndex Index);
    void onCollapsed(QModelIndex Index);
    void updateComponentButtons(OrvLayer* pLayer);
    void quickFind() { m_Commands->quickFind(); }
    void refresh();
    void onCurrentIndexChanged(QModelIndex Current);
    void switchActionsEnabled(OrvProject* Project);
    /// Hides and shows the item's row and those below it, or all rows, as the filter bar asks.
    void updateItemTreeFilteredStates(QStandardItem* pRootItem);
    void updateItemTreeFilteredStates();
    void updateShaderInputConnections() { requestRefresh(); }
    void createChannel() { m_Commands->createChannel(OrvLayerViewCommands::OrdinaryChannel); }
    void createMaterialChannel() { m_Commands->createChannel(OrvLayerViewCommands::MaterialChannel); }
    void onToggledInvertShaderInput(bool State);
    QList<QPointer<QWidget>> createPropertyWidgets(OrvLayer* Layer, QWidget* Parent);
    void onUnrepresentableButtonClicked();
    void onRefreshTimerTimeout() { refresh(); }
    void onLayerStateRefreshed();
    void addNewLayer() { m_Commands->addNewLayer(); }
    void addLayerMask() { m_Commands->addLayerMask(); }
    void addMaskStack() { m_Commands->addMaskStack(); }
    void addGraphLayer() { m_Commands->addGraphLayer(); }
    void groupLayers() { m_Commands->groupLayers(); }
    void groupLayers(OrvLayerCreateFlags Flags) { m_Commands->groupLayers(Flags); }
    void removeLayers() { m_Commands->removeLayers(); }
    void setSelectedColors(const QColor& Color) { m_Commands->setSelectedColors(Color); }
    void pickTagColors() { m_Commands->pickTagColors(); }
    void addAdjustmentLayer() { m_Commands->chooseAdjustment(); }
    void addAdjustmentLayerFromAction();
    void addAdjustmentLayerFromKey(QString Key) { m_Commands->addAdjustmentLayer(Key); }
    void addAdjustmentStack() { m_Commands->chooseStackAdjustment(); }
    void addAdjustmentStackFromAction();
    void createMultiChannelLayerMenu();
    void addMultiChannelGroup();
    void addMaterialLayerFromAction();
    /// Adds entries for custom procedurals, by menu path, to a menu and its sub-menus.
    void createCustomProceduralLayerMenu(
        QMenu* Root, QHash<QString, QMenu*>& Menus, QMap<QString, QPair<QString, QIcon>> ResultMap);
    void addCustomProceduralLayerFromAction();
    void addProceduralLayer() { m_Commands->chooseProcedural(); }
    void addProceduralLayerFromAction();
    void addProceduralLayerFromKey(QString Key) { m_Commands->addProceduralLayer(Key); }
    void addShaderLayer();
    void addShaderLayerFromAction();
    void addShaderLayerFromKey(QString Key);
    void duplicateLayers() { m_Commands->duplicateLayers(); }
    void mergeLayers() { m_Commands->mergeLayers(); }
    void closeIfNotUnderMouse();
    void onUserAttributeChanged(OrvCustomAttribute Attribute);
    void cut() { m_Commands->cut(); }
    void copy() { m_Commands->copy(); }
    void paste() { m_Commands->paste(); }
    OrvPalette* parentPalette();
    void showAdvancedBlendingOptions();
    void onAdvancedBlendingChanged(bool Enabled);
    void onBlendAmountChanged(bool Enabled);
    void onMenuManagerActionAdded(QString RootMenu, QString SubMenu, QString, QAction* Action);
    void onMenuManagerActionRemoved(QString RootMenu, QString SubMenu, QString, QAction* Action);
    void onPassThroughChecked(bool PassThrough);
    void layerShadersCountChanged() { requestRefresh(); }
    /// Without a node the change may be anywhere.
    void onNodeChanged(OrvSnBaseNode* Node = nullptr);

protected:
    void contextMenuEvent(QContextMenuEvent* pEvent) override;
    void closeEvent(QCloseEvent* pEvent) override;

private:
    void connectParts(const OrvLayerViewFilterBar* pFilterBar);
    /// What the user selects reaches the host; what a rebuild of the rows selects must not.
    void connectTreeRelays();
    void disconnectTreeRelays();
    void registerShortcuts();

    /// Makes the stack shown, or none, the host's current one.
    void makeLayerStackCurrent();
    OrvLayerStack* stackToShow() const;
    void showStack(OrvLayerStack* pLayerStack);
    void refreshProperties();

    const QAction* sendingAction() const;

    QPointer<OrvPalette> m_Palette;
    const bool m_IsDedicated;
    QPointer<OrvLayerStack> m_LayerStack;
    OrvLayerViewModel* m_Model = nullptr;
    OrvLayerTreeView* m_View = nullptr;
    OrvLayerBlendRow* m_BlendRow = nullptr;
    OrvLayerToolBar* m_ToolBar = nullptr;
    OrvLayerPropertiesArea* m_PropertiesArea = nullptr;
    OrvDeferredTimer* m_RefreshTimer = nullptr;
    std::unique_ptr<OrvLayerRows> m_Rows;
    OrvLayerTreeEmptyText* m_EmptyText = nullptr;
    std::unique_ptr<OrvLayerViewCommands> m_Commands;
    std::unique_ptr<OrvShaderLayerCommands> m_ShaderLayerCommands;
    std::unique_ptr<OrvMultiChannelLayerCommands> m_MultiChannelCommands;
    OrvLayerStackChanges* m_StackChanges = nullptr;
    OrvLayerVisibilityGesture* m_VisibilityGesture = nullptr;
};
