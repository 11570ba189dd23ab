#pragma once

#include "OrvCore/Layers/OrvLayerSnapshot.h"

class OrvShaderInput;
class OrvSnShaderInputNode;

/// A channel detached from any document, with its settings and its layers: what is duplicated, copied and
/// pasted. What the channel feeds is no part of it.
class ORVCORE_EXPORT OrvChannelSnapshot {
public:
    /// With channels followed, those that layers share go along to other projects.
    static OrvChannelSnapshot capture(const OrvShaderInput* pChannel, OrvChainEditing::Channels Handling);

    QString name() const { return m_Channel.Name; }
    /// Makes the channel, undoably; null when its layers cannot stand in the network, the macro is then to be
    /// cancelled. Images are brought to the tiles unless these are empty.
    OrvShaderInput* instantiate(
        OrvShaderNetwork* pNetwork, const QString& Name, const QVector<int>& Tiles) const;

    QByteArray toBytes() const;
    /// False, with a message, for bytes that are no channel.
    static bool fromBytes(const QByteArray& Bytes, OrvChannelSnapshot& Snapshot, QString& Error);

    /// A channel node, which goes into the network, and the bottom of its stack.
    static OrvSnShaderInputNode* addChannel(
        OrvShaderNetwork* pNetwork, std::unique_ptr<OrvSnShaderInputNode> pNode, const QString& Name);

private:
    OrvNodeDescription m_Channel; ///< name, tags and attributes
    OrvLayerSnapshot m_Layers;
};
