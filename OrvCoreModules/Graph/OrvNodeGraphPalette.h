#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"
#include "OrvCoreModules/Window/OrvPalette.h"

#include "OrvCore/Network/OrvSnBaseNode.h"

class OrvNodeGraphBreadcrumb;
class OrvNodeGraphScene;
class OrvNodeGraphView;
class OrvNodePropertiesPane;
class OrvShaderNetwork;
class QSplitter;

/// The palette "Node Graph": the nodes of the current object's network, or of a network nested in it, with
/// their wires, and the properties of the one that is selected. It wires canvas, properties and commands
/// together, and does nothing while it is hidden.
class ORVCOREMODULES_EXPORT OrvNodeGraphPalette : public OrvPalette {
    Q_OBJECT

public:
    explicit OrvNodeGraphPalette(QWidget* pParent = nullptr);
    ~OrvNodeGraphPalette() override;

    OrvNodeGraphView* view() const { return m_pView; }
    /// The network that is shown, null when no object is open.
    OrvShaderNetwork* network() const;
    QSize sizeHint() const override;

public Q_SLOTS:
    void enter(OrvShaderNetwork* pNetwork);
    /// Shows the palette, and the node selected in its middle.
    void focusOnNode(OrvSnBaseNode* pNode);
    /// Into the selected node's own network.
    void enterNode();
    void leaveGraph();

    void addNode();
    void deleteSelection();
    void duplicateSelection();
    void renameNode();
    void toggleEnabled();
    void toggleLocked();
    void arrange();
    void selectAll();
    void frameSelection();
    void frameAll();

private Q_SLOTS:
    void onCurrentNetworkChanged(OrvShaderNetwork* pNetwork);
    void onNodeDeregistered(OrvShaderNetwork* pNetwork, OrvSnBaseNode* pNode);
    void onNodeActivated(OrvSnBaseNode* pNode);
    void showMenu(const QPoint& GlobalPosition, const QPointF& Place);
    void showSelection();

private:
    void createBody();
    QWidget* createToolBar();
    void createShortcuts();
    void addFromKey(const QString& Key, const QPointF& Place);
    void select(const QVector<OrvSnBaseNode*>& Nodes);
    OrvSnBaseNode* selectedNode() const;

    OrvNodeGraphScene* m_pScene;
    OrvNodeGraphView* m_pView;
    OrvNodeGraphBreadcrumb* m_pBreadcrumb;
    OrvNodePropertiesPane* m_pProperties;
    QSplitter* m_pSplitter;
};
