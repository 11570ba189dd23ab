#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

#include "OrvCore/Network/OrvShaderNetwork.h"

#include <QtCore/QHash>
#include <QtCore/QPointer>
#include <QtCore/QSet>
#include <QtCore/QTimer>
#include <QtCore/QVector>
#include <QtWidgets/QGraphicsScene>

class OrvNodeItem;
class OrvSnBaseNode;
class OrvWireItem;

/// The items of one network's nodes and wires, kept in step with the document: what changes is noted as it
/// happens and shown together a moment later. A scene that nobody looks at holds no items and does nothing.
/// It edits nothing.
class ORVCOREMODULES_EXPORT OrvNodeGraphScene : public QGraphicsScene {
    Q_OBJECT

public:
    explicit OrvNodeGraphScene(QObject* pParent = nullptr);
    ~OrvNodeGraphScene() override;

    OrvShaderNetwork* network() const { return m_pNetwork; }
    /// Null: nothing is shown.
    void setNetwork(OrvShaderNetwork* pNetwork);
    bool isActive() const { return m_Active; }
    void setActive(bool Active);
    /// Shows now what has been noted.
    void synchronize();

    /// Null for a node that is not shown.
    OrvNodeItem* item(const OrvSnBaseNode* pNode) const { return m_Items.value(pNode); }
    const QHash<const OrvSnBaseNode*, OrvNodeItem*>& nodeItems() const { return m_Items; }
    QVector<OrvSnBaseNode*> selectedNodes() const;
    QVector<OrvWireItem*> selectedWires() const;
    QRectF nodesRect(const QVector<OrvSnBaseNode*>& Nodes) const;

    /// What lies under a place: a connector counts before a node, a node before a wire.
    struct Spot {
        OrvNodeItem* pNode = nullptr;
        OrvWireItem* pWire = nullptr;
        int Input = -1; ///< row of a connector, or -1
        int Output = -1;
    };
    Spot spotAt(const QPointF& Place, bool WithConnectors) const;

    /// While items are held, they stay where the user's hand takes them.
    void setItemsHeld(bool Held);

    /// Pre-selects what the network has selected.
    void readSelection();

Q_SIGNALS:
    /// After items came, went or changed.
    void synchronized();
    void networkChanged(OrvShaderNetwork* pNetwork);
    /// The network's selection was changed by somebody else.
    void selectionRead();

private Q_SLOTS:
    void onNodeRegistered(OrvShaderNetwork* pNetwork, OrvSnBaseNode* pNode);
    void onNodeDeregistered(OrvShaderNetwork* pNetwork, OrvSnBaseNode* pNode);
    void onNodeReconnected(OrvShaderNetwork* pNetwork, QString InputName, OrvSnBaseNode* pNode,
        OrvSnBaseNode* pNewInputNode, OrvSnBaseNode* pOldInputNode);
    void onNodePositionChanged(OrvSnBaseNode* pNode);
    void noteNode(OrvSnBaseNode* pNode);
    void noteSelection();

private:
    void listen();
    bool shows(const OrvSnBaseNode* pNode) const;
    void request();
    void forgetItems();
    void addMissingItems();
    void updateWires(OrvNodeItem* pItem);
    void applyPlaces();

    QPointer<OrvShaderNetwork> m_pNetwork;
    QHash<const OrvSnBaseNode*, OrvNodeItem*> m_Items;
    QVector<OrvNodeItem*> m_Leaving;
    QSet<OrvSnBaseNode*> m_Noted;
    QTimer m_Timer;
    bool m_Active = false;
    bool m_StructureNoted = false;
    bool m_PlacesNoted = false;
    bool m_SelectionNoted = false;
    bool m_Held = false;
};
