#pragma once

#include "OrvCore/Object/OrvCustomAttribute.h"

#include "OrvDdi/Image/OrvColor.h"
#include "OrvDdi/Image/OrvImageBuffer.h"
#include "OrvDdi/Image/OrvUdimLayout.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>
#include <QtCore/QPointF>
#include <QtCore/QStringList>
#include <QtCore/QVector>

#include <memory>

class OrvImageSet;
class OrvShaderNetwork;
class OrvSnBaseNode;

/// Everything that makes up one node, detached from any document: what is copied, duplicated, shared between projects
/// and stored. Pixels are held as copy-on-write snapshots.
struct ORVCORE_EXPORT OrvNodeDescription {
    struct Connection {
        QString InputName;
        QString SourceUuid;
        QString OutputName;
    };

    QString Uuid;
    QString Type;
    QString Name;
    QStringList Tags;
    QPointF Position;
    bool Locked = false;
    bool Enabled = true;
    bool CacheActive = false;
    QVector<OrvCustomAttribute> Attributes;
    QVector<Connection> Connections;

    bool HasImages = false;
    OrvUdimLayout Layout;
    OrvPixelFormat Format;
    OrvColor Fill;
    OrvImageBuffer Pixels; ///< null: uniform in Fill
    QVector<QByteArray> BlockKeys; ///< where the project that is being opened stores them; otherwise empty

    QVector<OrvNodeDescription> Nested; ///< nodes of a nested network
    QJsonObject Foreign; ///< a node of unknown type, exactly as it was read

    /// Without pixels, which go to data blocks (see OrvImageBlocks); "images" then only says how they are stored.
    QJsonObject toJson() const;
    /// Attributes alone, as they stand under "attributes": the same for the same attributes, whichever was set first.
    static QJsonArray attributesToJson(const QVector<OrvCustomAttribute>& Attributes);
    /// The connections alone, as they stand under "inputs".
    QJsonObject connectionsToJson() const;
    /// False, with a message that names the node, for an object that is no node.
    static bool fromJson(const QJsonObject& Json, OrvNodeDescription& Description, QString& Error);

    void setImages(const OrvImageSet& Images);
    /// Null when it describes none.
    std::unique_ptr<OrvImageSet> makeImages() const;
};

/// A set of nodes with their connections among each other and, by identity, to nodes outside the set.
class ORVCORE_EXPORT OrvNodeSubgraph {
public:
    static OrvNodeSubgraph capture(const QVector<OrvSnBaseNode*>& Nodes);
    static OrvNodeDescription describe(const OrvSnBaseNode* pNode);

    bool isEmpty() const { return m_Nodes.isEmpty(); }
    const QVector<OrvNodeDescription>& nodes() const { return m_Nodes; }

    enum Identity { NewIdentities, KeepIdentities };
    /// Makes the nodes in the network, undoably, in the order in which they were captured. Connections to nodes
    /// outside the set are kept where the network has that node.
    QVector<OrvSnBaseNode*> instantiate(OrvShaderNetwork* pNetwork, Identity Identities = NewIdentities) const;

    QJsonArray toJson() const;
    static bool fromJson(const QJsonArray& Json, OrvNodeSubgraph& Subgraph, QString& Error);
    void append(const OrvNodeDescription& Description) { m_Nodes.append(Description); }

private:
    QVector<OrvNodeDescription> m_Nodes;
};
