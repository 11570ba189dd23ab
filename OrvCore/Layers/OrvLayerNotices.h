#pragma once

#include "OrvCore/Layers/OrvLayerDirtyNodes.h"
#include "OrvCore/Network/OrvSnBaseNode.h"

#include <QtCore/QObject>
#include <QtCore/QSet>

class OrvLayerManager;
class OrvShaderNetwork;
class OrvSnBakePointNode;

/// Puts what happens in the graph into the words of layers: a layer's own signals at once, the states that
/// follow from its surroundings (dirty, locked, cached, baked) when the edit is finished. OrvLayerManager
/// owns it and says when that is; it edits nothing.
class OrvLayerNotices : public QObject {
    Q_OBJECT

public:
    explicit OrvLayerNotices(OrvLayerManager& Manager);

    /// Sends what the edit has left to tell: of bake points first, because layers follow from them.
    void tellStates();
    /// Many layers are being told of at once; the manager's batchLayerStatesRefreshed() ends it.
    bool inBatch() const { return m_InBatch; }

private Q_SLOTS:
    void onNodeRegistered(OrvShaderNetwork* pNetwork, OrvSnBaseNode* pNode);
    void onNodeDeregistered(OrvShaderNetwork* pNetwork, OrvSnBaseNode* pNode);
    void onNodeReconnected(OrvShaderNetwork* pNetwork, QString InputName, OrvSnBaseNode* pNode,
        OrvSnBaseNode* pNewInputNode, OrvSnBaseNode* pOldInputNode);
    void onNodeEnabledChanged(OrvSnBaseNode* pNode, int Enabled);
    void onNodeLockedChanged(OrvSnBaseNode* pNode, bool Locked);
    void onNodeCacheActiveChanged(OrvSnBaseNode* pNode, OrvSnBaseNodeCacheActiveState State);
    void onNodeAttributeChanged(OrvSnBaseNode* pNode, QString Name);
    void onNodeNameChanged(OrvSnBaseNode* pNode, QString Name);
    void onNodeRefreshed(OrvSnBaseNode* pNode);

private:
    /// The custom procedural is described by another text now.
    void tellProceduralChanged(const OrvSnBaseNode* pNode);
    void refreshBakePoints();
    void refreshDirtyStates();

    OrvLayerManager& m_Manager;
    OrvLayerDirtyNodes m_Dirty;
    QSet<OrvSnBakePointNode*> m_BakePoints;
    bool m_InBatch = false;
};
