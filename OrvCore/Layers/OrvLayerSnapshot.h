#pragma once

#include "OrvCore/Layers/OrvChainEditing.h"
#include "OrvCore/Network/OrvNodeDescription.h"
#include "OrvCore/OrvCoreExport.h"

class OrvUdimLayout;

/// Layers detached from any document, with all that they hold: what is duplicated, copied and pasted. What
/// lies below them is no part of it. Pixels are copy-on-write snapshots until it is turned into bytes.
class ORVCORE_EXPORT OrvLayerSnapshot {
public:
    /// The merge nodes, topmost first. With channels followed, layers that share a channel can go to other
    /// projects.
    /// What is cached of the layers themselves is not: it belongs to their place.
    static OrvLayerSnapshot capture(
        const QVector<OrvSnMergeNode*>& Merges, OrvChainEditing::Channels Handling);

    /// The mask of a layer, held by one that has nothing else. It can go to other projects.
    static OrvLayerSnapshot captureMask(const OrvSnMergeNode* pMerge);

    bool isEmpty() const { return m_Roots.isEmpty(); }
    /// The colour space of paint where the layers stood; empty where values meant no colour.
    QString paintSpace() const { return m_PaintSpace; }

    /// Makes the layers, undoably, in no chain yet; topmost first. A channel that the network has is shared
    /// again; of one that it lacks its layers are taken, as a group. Images are brought to the layout where
    /// it is valid.
    QVector<OrvSnMergeNode*> instantiate(OrvShaderNetwork* pNetwork, const OrvUdimLayout& Layout) const;

    QByteArray toBytes() const;
    /// False, with a message, for bytes that are no snapshot.
    static bool fromBytes(const QByteArray& Bytes, OrvLayerSnapshot& Snapshot, QString& Error);

private:
    OrvNodeSubgraph withoutChannels(const OrvShaderNetwork* pNetwork) const;

    QStringList m_Roots;
    QString m_PaintSpace;
    OrvNodeSubgraph m_Nodes;
};
