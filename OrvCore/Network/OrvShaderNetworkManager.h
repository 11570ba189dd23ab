#pragma once

#include "OrvCore/Network/OrvSnBaseNodeCacheActiveState.h"
#include "OrvCore/OrvCoreExport.h"

#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QStringList>

#include "OrvCore/Network/OrvShaderNetwork.h"

class OrvSnBaseNode;

/// The current network and the notices of all nodes of all networks. Nodes and networks send their signals through
/// it; it holds no nodes itself.
class ORVCORE_EXPORT OrvShaderNetworkManager : public QObject {
    Q_OBJECT

public:
    static OrvShaderNetworkManager& instance();

    OrvShaderNetwork* currentShaderNetwork() const { return m_pCurrent; }
    void setCurrentShaderNetwork(OrvShaderNetwork* pNetwork);

    /// Keys of all node types that can become layers; the key of such a type is its menu path.
    QStringList layerPathKeys() const;
    /// "/"-separated place of a node type in menus.
    QString nodeMenuPath(const QString& Key) const;

    /// Counts structural changes; whatever is derived from connections is valid for one revision.
    quint64 revision() const { return m_Revision; }

    /// Asks whoever shows node graphs to show the node.
    void focusOnNode(OrvSnBaseNode* pNode) { Q_EMIT nodeFocusRequested(pNode); }

public Q_SLOTS:
    /// Brings nodes of older projects up to date: shaders get the inputs that their models have gained since.
    void upgradeAllNodes();

Q_SIGNALS:
    void nodeReconnected(
        OrvShaderNetwork* pNetwork, QString InputName, OrvSnBaseNode* pNewInputNode, OrvSnBaseNode* pNode);
    void nodeReconnected(OrvShaderNetwork* pNetwork, QString InputName, OrvSnBaseNode* pNode,
        OrvSnBaseNode* pNewInputNode, OrvSnBaseNode* pOldInputNode);
    void nodeRegistered(OrvShaderNetwork* pNetwork, OrvSnBaseNode* pNode);
    void nodeDeregistered(OrvShaderNetwork* pNetwork, OrvSnBaseNode* pNode);
    void nodeNameChanged(OrvSnBaseNode* pNode, QString Name);
    void nodeTagsChanged(OrvSnBaseNode* pNode, QString Tag);
    void nodeLockedChanged(OrvSnBaseNode* pNode, bool Locked);
    void nodeBlockedChanged(OrvSnBaseNode* pNode, bool Blocked);
    void nodeCacheActiveChanged(OrvSnBaseNode* pNode, OrvSnBaseNodeCacheActiveState State);
    void nodeEnabledChanged(OrvSnBaseNode* pNode, int Enabled);
    void nodePositionChanged(OrvSnBaseNode* pNode);
    void nodeUserAttributeCreated(OrvSnBaseNode* pNode, QString Name);
    void nodeUserAttributeRemoved(OrvSnBaseNode* pNode, QString Name);
    void nodeUserAttributeChanged(OrvSnBaseNode* pNode, QString Name);
    void nodeRefreshed(OrvSnBaseNode* pNode);
    void nodeInputEnabledChanged(OrvSnBaseNode* pNode, QString InputName, bool Enabled);
    void nodeInputOrderChanged(OrvShaderNetwork* pNetwork, OrvSnBaseNode* pNode);
    void nodeFocusRequested(OrvSnBaseNode* pNode);
    void upgradeCompleted();
    void currentShaderNetworkChanged(OrvShaderNetwork* pNew, OrvShaderNetwork* pOld = nullptr);
    void registeredNodePopulationChanged();
    void groupNodeInputRenamed(OrvSnBaseNode* pNode, QString OldName, QString NewName);

private:
    friend class OrvSnBaseNode;
    friend class OrvShaderNetwork;
    OrvShaderNetworkManager();
    void structureChanged() { ++m_Revision; }

    QPointer<OrvShaderNetwork> m_pCurrent;
    quint64 m_Revision = 1;
};
