#pragma once

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Network/OrvNodeNames.h"
#include "OrvCore/OrvCoreExport.h"

#include <QtCore/QHash>
#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QSet>
#include <QtCore/QVector>

class OrvShaderNetwork;
class OrvSnBaseNode;

/// All channels and the current one of each network. Channel objects are made and dropped as their nodes come
/// and go.
class ORVCORE_EXPORT OrvShaderInputManager : public QObject {
    Q_OBJECT

public:
    enum DestroyStrategy { SharersBecomeGroups = 0, SharersAreDeleted = 1 };

    static OrvShaderInputManager& instance();

    /// The current channel of a network; null: of the current network.
    OrvShaderInput* currentShaderInput(OrvShaderNetwork* pNetwork = nullptr) const;
    OrvSnBaseNode* currentShaderInputNode() const;
    /// Of another object than the current one it is not told before that becomes current.
    void makeShaderInputCurrent(OrvShaderInput* pInput, bool Notify);
    /// A null channel is allowed.
    void makeShaderInputCurrent(OrvShaderNetwork* pNetwork, OrvShaderInput* pInput, bool Notify);
    QList<OrvShaderInput*> getShaderInputsFromNetwork(const OrvShaderNetwork* pNetwork) const;
    /// A name that no channel of the network has: the given one, or the same with a number.
    QString uniqueName(const OrvShaderNetwork* pNetwork, const QString& Base) const
    {
        return m_Names.unique(pNetwork, Base);
    }
    /// Makes the next channel by name current, or the previous one when there is none.
    void selectNextShaderInput();
    /// Undoable. False, with nothing changed and the reason told (OrvLayerManager::refused), when the channel is
    /// locked.
    bool destroy(OrvShaderInput* pInput, int Strategy);

    /// The layer that the channel had as its current one last.
    OrvLayer* currentLayerOf(const OrvShaderInput* pInput) const;
    void setCurrentLayerOf(OrvShaderInput* pInput, OrvLayer* pLayer);

Q_SIGNALS:
    void shaderInputCreated(OrvShaderInput* pInput);
    void shaderInputAdded(OrvShaderInput* pInput);
    void shaderInputRemoved(OrvShaderInput* pInput);
    void shaderInputRenamed(OrvShaderInput* pInput);
    void currentShaderInputChanged(OrvShaderInput* pInput);
    void newShaderInputConnected(QString InputName, OrvSnBaseNode* pNode);

private Q_SLOTS:
    void onNodeRegistered(OrvShaderNetwork* pNetwork, OrvSnBaseNode* pNode);
    void onNodeDeregistered(OrvShaderNetwork* pNetwork, OrvSnBaseNode* pNode);
    void onNodeNameChanged(OrvSnBaseNode* pNode, QString Name);
    void onNodeLockedChanged(OrvSnBaseNode* pNode, bool Locked);
    void onNodeAttributeChanged(OrvSnBaseNode* pNode, QString Name);
    void onNodeReconnected(OrvShaderNetwork* pNetwork, QString InputName, OrvSnBaseNode* pNode,
        OrvSnBaseNode* pNewInputNode, OrvSnBaseNode* pOldInputNode);
    void onCurrentNetworkChanged();
    void onStructureRefreshed();

private:
    OrvShaderInputManager();
    /// The next channel by name, else the previous one, or null; a channel that is not listed: the first by
    /// name.
    OrvShaderInput* neighborOf(const OrvShaderNetwork* pNetwork, const OrvShaderInput* pInput) const;
    /// The channel of the network that was the current one last, except for this one; or null.
    OrvShaderInput* formerOf(const OrvShaderNetwork* pNetwork, const OrvShaderInput* pInput) const;

    QHash<const OrvShaderNetwork*, QList<OrvShaderInput*>> m_Channels;
    OrvNodeNames m_Names;
    QHash<OrvShaderInput*, bool> m_Empty; ///< as last told
    QSet<OrvShaderInput*> m_Reconnected; ///< may have become empty, or no longer be
    QHash<const OrvShaderNetwork*, QPointer<OrvShaderInput>> m_Current;
    QHash<const OrvShaderNetwork*, QVector<QPointer<OrvShaderInput>>> m_Visited; ///< the latest last
    QHash<const OrvShaderInput*, QPointer<OrvLayer>> m_CurrentLayers;
};
