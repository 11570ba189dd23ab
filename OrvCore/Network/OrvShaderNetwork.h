#pragma once

#include "OrvCore/OrvCoreExport.h"

#include <QtCore/QObject>
#include <QtCore/QSet>
#include <QtCore/QVector>

#include <memory>

class OrvGeoEntity;
class OrvSnBaseNode;

/// One object's graph of nodes, or the graph inside a node. Owns its nodes; a removed one moves into the undo
/// history. It knows the selection, but no layers, channels or shaders: those are views on its nodes.
class ORVCORE_EXPORT OrvShaderNetwork : public QObject {
    Q_OBJECT

public:
    explicit OrvShaderNetwork(OrvGeoEntity* pGeoEntity, QObject* pParent = nullptr);
    /// The network inside a node.
    explicit OrvShaderNetwork(OrvSnBaseNode* pContainer);
    ~OrvShaderNetwork() override;

    /// Not those of nested networks.
    const QVector<OrvSnBaseNode*>& nodes() const { return m_Nodes; }
    /// Nodes that belong to the program rather than to the document (system shaders): they have this network and an
    /// identity, but are not among its nodes, and neither the undo history nor the project file sees them.
    const QVector<OrvSnBaseNode*>& systemNodes() const { return m_SystemNodes; }
    /// The object that this network, or the one around it, belongs to.
    OrvGeoEntity* geoEntity() const;
    OrvSnBaseNode* container() const { return m_pContainer; }
    OrvShaderNetwork* parentNetwork() const;
    /// The node lies in this network or in one nested in it.
    bool contains(const OrvSnBaseNode* pNode) const;

    /// Undoable. The network takes the node.
    OrvSnBaseNode* addNode(std::unique_ptr<OrvSnBaseNode> pNode);
    template <class Node>
    Node* addNode(std::unique_ptr<Node> pNode)
    {
        Node* pAdded = pNode.get();
        addNode(std::unique_ptr<OrvSnBaseNode>(std::move(pNode)));
        return pAdded;
    }
    /// Undoable: disconnects the node on all sides and takes it out.
    void removeNode(OrvSnBaseNode* pNode);

    /// Takes all nodes away, without undo: the project closes.
    void clear();

    /// Whether feeding the target with the source would close a cycle.
    bool wouldConnectionBreakDAG(const OrvSnBaseNode* pSource, const OrvSnBaseNode* pTarget) const;

    const QSet<OrvSnBaseNode*>& selectedNodes() const { return m_Selected; }
    void setSelected(OrvSnBaseNode* pNode, bool Selected);
    /// Deselects all nodes but those given; the layers of deselected nodes follow.
    void selectNone(const QSet<OrvSnBaseNode*>& Keep = {});

private:
    friend class OrvNodePopulationEdit;
    friend class OrvLayerShaderManager;
    OrvSnBaseNode* addSystemNode(std::unique_ptr<OrvSnBaseNode> pNode);
    /// The last one is no longer listed, then deleted as soon as nobody can be using it.
    OrvSnBaseNode* takeSystemNode() { return m_SystemNodes.takeLast(); }
    void releaseSystemNode(OrvSnBaseNode* pNode);
    void applyAddition(std::unique_ptr<OrvSnBaseNode> pNode, int Index);
    std::unique_ptr<OrvSnBaseNode> applyRemoval(OrvSnBaseNode* pNode);

    OrvGeoEntity* m_pGeoEntity = nullptr;
    OrvSnBaseNode* m_pContainer = nullptr;
    QVector<OrvSnBaseNode*> m_Nodes;
    QVector<OrvSnBaseNode*> m_SystemNodes;
    QSet<OrvSnBaseNode*> m_Selected;
};
