#pragma once

#include <QtCore/QModelIndex>
#include <QtWidgets/QWidget>

class OrvDeferredTimer;
class OrvLayerShader;
class OrvPanelToolBar;
class OrvProject;
class OrvShaderInputsPane;
class OrvShaderListView;
class OrvShaderModel;
class OrvShaderNetwork;
class OrvShaderRowSynchronizer;
class OrvShaderSuccession;
class OrvShaderTagActions;
class OrvSnBaseNode;
class QAction;
class QStandardItem;
class QToolButton;

/// The list of an object's shaders with its commands, and below it the inputs of the current one; the Shaders
/// palette owns it. It follows the host's current shader, makes the one current that the user chooses, and
/// rebuilds itself from the host after every burst of changes; it holds no document data.
class OrvShaderView : public QWidget {
    Q_OBJECT

public:
    explicit OrvShaderView(QWidget* pParent);

    OrvShaderModel* model() const { return m_Model; }
    OrvShaderListView* listView() const { return m_ListView; }
    OrvPanelToolBar* toolBar() const { return m_ToolBar; }
    OrvShaderInputsPane* inputsPane() const { return m_InputsPane; }
    OrvShaderTagActions* tagActions() const { return m_TagActions; }

Q_SIGNALS:
    void refreshRequested();
    void refreshRequestedShaderProperties();

public Q_SLOTS:
    void onCurrentIndexChanged(QModelIndex Current);
    void refreshShaderPropertiesForNewShaderInput(QString ShaderInputName, OrvSnBaseNode* ShaderInputNode);
    void clearShaderProperties();
    void updateShaderInputConnections();
    void createChannel();
    void createMaterialChannel();
    /// A last row for a shader; null for one that is not listed.
    QStandardItem* addShaderNode(OrvSnBaseNode* Node);
    void requestRefreshShaderProperties();
    void requestRefresh();
    void refresh();
    void refreshShaderProperties();
    void currentProjectChanged(OrvProject* Project);
    void updateActionEnablement(OrvProject* Project);
    void addNewShader();
    void onToggledInvertShaderInput(bool Inverted);
    void onNodeInputEnabledChanged(OrvSnBaseNode* ShaderNode, QString InputName, bool State);
    void onNodeInputConnectionChanged(QString InputName, OrvSnBaseNode* OutputNode, QString OutputName);
    void onGroupNodeInputNameChanged(OrvSnBaseNode* Node, QString OldName, QString NewName);
    void onNodeInputOrderChanged(OrvShaderNetwork* Network, OrvSnBaseNode* Node);
    void onSwitchInputEnabledChanged(bool Enabled);
    void onNodeReconnected(
        OrvShaderNetwork* Network, QString InputName, OrvSnBaseNode* NewInputNode, OrvSnBaseNode* Node);
    void onShaderRemoved(OrvSnBaseNode* NodeRemoved);
    void onShaderTagsChanged(QString Tag, OrvSnBaseNode* NodeChanged);
    void onCurrentLayerShaderChanged(OrvLayerShader* Shader);
    /// The user edited a row's text: the shader is renamed.
    void onItemChanged(QStandardItem* Item);
    // What the canvas is to show.
    void lastSelectedUserShader();
    void currentChannel();
    void currentLayerAndBelow();
    void currentLayer();
    void currentComponent();
    void currentMaterial();
    void onMenuManagerActionAdded(QString RootMenu, QString SubMenu, QString, QAction* Action);
    void onMenuManagerActionRemoved(QString RootMenu, QString SubMenu, QString, QAction* Action);
    void onRefreshTimerTimeout();
    void onRefreshTimerShaderPropertiesTimeout();

protected:
    void contextMenuEvent(QContextMenuEvent* pEvent) override;

private:
    QWidget* createListPane();
    QWidget* createInputsArea();
    void createToolBar();
    void addToolBarAction(const QString& Path);
    void connectParts();
    /// What the user does in the list reaches the host; what a refresh does there must not.
    void connectList();
    void disconnectList();
    void connectHost();
    void connectHostInputs();
    void registerShortcuts();

    void followCurrentNode(OrvSnBaseNode* pNode);
    /// Of no node but the current shader's are any shown.
    void refreshPropertiesOf(const OrvSnBaseNode* pNode);

    OrvShaderModel* m_Model = nullptr;
    OrvShaderListView* m_ListView = nullptr;
    OrvShaderRowSynchronizer* m_Rows = nullptr;
    OrvShaderSuccession* m_Succession = nullptr;
    OrvPanelToolBar* m_ToolBar = nullptr;
    QToolButton* m_AddButton = nullptr;
    OrvShaderTagActions* m_TagActions = nullptr;
    OrvShaderInputsPane* m_InputsPane = nullptr;
    OrvDeferredTimer* m_RefreshTimer = nullptr;
    OrvDeferredTimer* m_RefreshTimerShaderProperties = nullptr;
};
