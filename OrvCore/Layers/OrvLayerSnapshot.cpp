#include "OrvCore/Layers/OrvLayerSnapshot.h"

#include "OrvCore/Channels/OrvChannelConversion.h"
#include "OrvCore/Channels/OrvSnShaderInputNode.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Network/OrvSnMultiChannelMergeNode.h"
#include "OrvCore/Network/OrvSnOperationNode.h"
#include "OrvCore/Object/OrvObjectReferenceManager.h"

#include "OrvDdi/Image/OrvImageResampling.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDataStream>
#include <QtCore/QHash>
#include <QtCore/QJsonDocument>
#include <QtCore/QSet>

namespace {

constexpr quint32 Magic = 0x4f72764c; // "OrvL"
constexpr quint32 Version = 2;
constexpr int RowsAtOnce = 256;

QString tr(const char* pText)
{
    return QCoreApplication::translate("OrvLayerSnapshot", pText);
}

/// All nodes that have pixels of their own, nested ones too.
void collectImages(QVector<OrvNodeDescription>& Nodes, QHash<QString, OrvNodeDescription*>& Images)
{
    for (OrvNodeDescription& Node : Nodes) {
        if (Node.HasImages)
            Images.insert(Node.Uuid, &Node);
        collectImages(Node.Nested, Images);
    }
}

QRect band(const QRect& Extent, int Top)
{
    return Extent & QRect(Extent.left(), Extent.top() + Top, Extent.width(), RowsAtOnce);
}

qint64 bandSize(const QRect& Band, const OrvPixelFormat& Format)
{
    return qint64(Band.width()) * Band.height() * Format.bytesPerPixel();
}

void writePixels(QDataStream& Stream, const OrvNodeDescription& Node)
{
    const QRect Extent = Node.Layout.extent();
    for (int Top = 0; Top < Extent.height(); Top += RowsAtOnce) {
        const QRect Band = band(Extent, Top);
        QByteArray Pixels(int(bandSize(Band, Node.Format)), Qt::Uninitialized);
        Node.Pixels.read(Band, Node.Format, Pixels.data());
        Stream << qCompress(Pixels, 1);
    }
}

bool readPixels(QDataStream& Stream, OrvNodeDescription& Node)
{
    const QRect Extent = Node.Layout.extent();
    OrvImageBuffer Buffer(Extent, Node.Format);
    for (int Top = 0; Top < Extent.height(); Top += RowsAtOnce) {
        const QRect Band = band(Extent, Top);
        QByteArray Packed;
        Stream >> Packed;
        const QByteArray Pixels = qUncompress(Packed);
        if (Pixels.size() != bandSize(Band, Node.Format))
            return false;
        Buffer.write(Band, Node.Format, Pixels.constData());
    }
    Node.Pixels = Buffer;
    return true;
}

void dropCaches(OrvNodeDescription& Node)
{
    Node.CacheActive = false;
    Node.Attributes.erase(std::remove_if(Node.Attributes.begin(), Node.Attributes.end(),
                              [](const OrvCustomAttribute& Attribute) {
                                  return Attribute.name() == OrvMergeAttributes::LayerCached;
                              }),
        Node.Attributes.end());
}

/// One stream, captured without the others: an ordinary layer, which has of its own what they have in common.
void detach(OrvNodeDescription& Node, const OrvSnMergeNode& Merge)
{
    const OrvSnMultiChannelMergeNode& Common = *Merge.multiChannelNode();
    Node.Name = Common.name();
    Node.Enabled = Merge.isShown();
    Node.Locked = Common.locked();
    Node.Attributes.erase(std::remove_if(Node.Attributes.begin(), Node.Attributes.end(),
                              [](const OrvCustomAttribute& Attribute) {
                                  return Attribute.name() == OrvMergeAttributes::Stream;
                              }),
        Node.Attributes.end());
    for (const OrvCustomAttribute& Attribute : Common.ownUserAttributes()) {
        if (Attribute.name() != OrvSnMultiChannelMergeNode::ShaderModelAttribute)
            Node.Attributes.append(Attribute);
    }
    const OrvSnBaseNode* pMask = Merge.maskSource();
    for (int Index = Node.Connections.size() - 1; Index >= 0; --Index) {
        OrvNodeDescription::Connection& One = Node.Connections[Index];
        if (One.InputName != OrvSnNames::Mask)
            continue;
        if (pMask)
            One.SourceUuid = pMask->uuidString();
        else
            Node.Connections.removeAt(Index);
    }
}

void fit(OrvNodeDescription& Node, const OrvUdimLayout& Layout)
{
    if (Node.HasImages && Node.Layout != Layout) {
        if (!Node.Pixels.isNull())
            Node.Pixels = OrvImageResampling::fitted(Node.Pixels, Node.Layout, Layout);
        Node.Layout = Layout;
        Node.BlockKeys.clear();
    }
    for (OrvCustomAttribute& Attribute : Node.Attributes) {
        if (Attribute.name() == OrvSnOperationNode::ExtentAttribute)
            Attribute.setValue(Layout.extent().size());
    }
}

} // namespace

OrvLayerSnapshot OrvLayerSnapshot::capture(
    const QVector<OrvSnMergeNode*>& Merges, OrvChainEditing::Channels Handling)
{
    OrvLayerSnapshot Snapshot;
    if (!Merges.isEmpty())
        Snapshot.m_PaintSpace = OrvChannelConversion::paintSpaceAt(Merges.first());
    const QVector<OrvSnBaseNode*> Nodes = OrvChainEditing::nodesOf(Merges, Handling);
    const QSet<const OrvSnBaseNode*> Inside(Nodes.begin(), Nodes.end());
    QSet<const OrvSnBaseNode*> Roots, BaseOperations;
    for (OrvSnMergeNode* pMerge : Merges) {
        Snapshot.m_Roots.append(pMerge->uuidString());
        Roots.insert(pMerge);
        BaseOperations.insert(OrvChainEditing::baseOperationOf(pMerge));
    }
    // A layer in several channels is captured as such where all its streams are.
    const auto isWhole = [&Inside](const OrvSnMultiChannelMergeNode* pCommon) {
        const QVector<OrvSnMergeNode*> Streams = pCommon->mergeNodes();
        return std::all_of(Streams.begin(), Streams.end(),
            [&Inside](const OrvSnMergeNode* pMerge) { return Inside.contains(pMerge); });
    };
    for (const OrvSnBaseNode* pNode : Nodes) {
        const auto* pCommon = qobject_cast<const OrvSnMultiChannelMergeNode*>(pNode);
        if (pCommon && !isWhole(pCommon))
            continue;
        OrvNodeDescription Node = OrvNodeSubgraph::describe(pNode);
        const auto* pMerge = qobject_cast<const OrvSnMergeNode*>(pNode);
        QVector<OrvNodeDescription::Connection> Kept;
        for (const OrvNodeDescription::Connection& One : qAsConst(Node.Connections)) {
            const OrvSnBaseNode* pSource = pNode->inputNode(One.InputName);
            const bool FromBelow = BaseOperations.contains(pNode)
                || (One.InputName == OrvSnNames::Base && Roots.contains(pNode));
            if (!FromBelow && (Inside.contains(pSource) || pSource->hasTag(OrvSnNames::ShaderInputTag)))
                Kept.append(One);
        }
        Node.Connections = Kept;
        if (pMerge && pMerge->multiChannelNode() && !isWhole(pMerge->multiChannelNode()))
            detach(Node, *pMerge);
        if (Roots.contains(pNode))
            dropCaches(Node);
        Snapshot.m_Nodes.append(Node);
    }
    return Snapshot;
}

OrvLayerSnapshot OrvLayerSnapshot::captureMask(const OrvSnMergeNode* pMerge)
{
    OrvLayerSnapshot Snapshot;
    Snapshot.m_Roots.append(pMerge->uuidString());
    OrvNodeDescription Carrier;
    Carrier.Uuid = pMerge->uuidString();
    Carrier.Type = pMerge->typeName();
    Carrier.Name = pMerge->name();
    QVector<const OrvSnBaseNode*> Nodes;
    if (const OrvSnBaseNode* pMask = pMerge->maskSource()) {
        Carrier.Connections.append({OrvSnNames::Mask, pMask->uuidString(), QString()});
        Nodes.append(pMask);
    }
    Snapshot.m_Nodes.append(Carrier);
    QSet<const OrvSnBaseNode*> Seen(Nodes.begin(), Nodes.end());
    for (int Index = 0; Index < Nodes.size(); ++Index) {
        const OrvSnBaseNode* pNode = Nodes[Index];
        Snapshot.m_Nodes.append(OrvNodeSubgraph::describe(pNode));
        for (const OrvSnBaseNode::Input& Input : pNode->inputs()) {
            if (Input.pNode && !Seen.contains(Input.pNode)) {
                Seen.insert(Input.pNode);
                Nodes.append(Input.pNode);
            }
        }
    }
    return Snapshot;
}

OrvNodeSubgraph OrvLayerSnapshot::withoutChannels(const OrvShaderNetwork* pNetwork) const
{
    static const QString ChannelType = OrvSnShaderInputNode().typeName();
    QHash<QString, const OrvNodeDescription*> Table;
    for (const OrvNodeDescription& Node : m_Nodes.nodes())
        Table.insert(Node.Uuid, &Node);
    // The source behind channels that the network lacks; what it has is left to be found there by identity.
    const auto source = [&](QString Uuid) {
        while (const OrvNodeDescription* pNode = Table.value(Uuid)) {
            if (pNode->Type != ChannelType)
                break;
            const auto* pPresent
                = qobject_cast<OrvSnBaseNode*>(OrvObjectReferenceManager::instance().getPointer(Uuid));
            if (pPresent && pPresent->network() == pNetwork)
                break;
            Uuid = pNode->Connections.isEmpty() ? QString() : pNode->Connections.first().SourceUuid;
        }
        return Uuid;
    };
    OrvNodeSubgraph Reached;
    QSet<QString> Seen;
    QStringList Pending = m_Roots;
    for (int Index = 0; Index < Pending.size(); ++Index) {
        const OrvNodeDescription* pNode = Table.value(Pending[Index]);
        if (!pNode || pNode->Type == ChannelType || Seen.contains(pNode->Uuid))
            continue;
        Seen.insert(pNode->Uuid);
        OrvNodeDescription Node = *pNode;
        for (OrvNodeDescription::Connection& One : Node.Connections) {
            One.SourceUuid = source(One.SourceUuid);
            Pending.append(One.SourceUuid);
        }
        Reached.append(Node);
    }
    return Reached;
}

QVector<OrvSnMergeNode*> OrvLayerSnapshot::instantiate(
    OrvShaderNetwork* pNetwork, const OrvUdimLayout& Layout) const
{
    const OrvNodeSubgraph Reached = withoutChannels(pNetwork);
    OrvNodeSubgraph Fitted;
    for (OrvNodeDescription Node : Reached.nodes()) {
        if (Layout.isValid())
            fit(Node, Layout);
        if (Node.Tags.contains(OrvSnNames::ShaderTag) && !Node.Tags.contains(OrvSnNames::StackShaderTag))
            Node.Tags.append(OrvSnNames::StackShaderTag); // the copy of a listed shader is the layers' own
        Fitted.append(Node);
    }
    const QVector<OrvSnBaseNode*> Made = Fitted.instantiate(pNetwork);
    QHash<QString, OrvSnMergeNode*> ByUuid;
    for (int Index = 0; Index < Made.size(); ++Index)
        ByUuid.insert(Fitted.nodes()[Index].Uuid, qobject_cast<OrvSnMergeNode*>(Made[Index]));
    QVector<OrvSnMergeNode*> Merges;
    for (const QString& Root : m_Roots) {
        if (OrvSnMergeNode* pMerge = ByUuid.value(Root))
            Merges.append(pMerge);
    }
    return Merges;
}

QByteArray OrvLayerSnapshot::toBytes() const
{
    QByteArray Bytes;
    QDataStream Stream(&Bytes, QIODevice::WriteOnly);
    Stream.setVersion(QDataStream::Qt_5_15);
    Stream << Magic << Version << m_Roots << m_PaintSpace
           << QJsonDocument(m_Nodes.toJson()).toJson(QJsonDocument::Compact);
    QVector<OrvNodeDescription> Nodes = m_Nodes.nodes();
    QHash<QString, OrvNodeDescription*> Images;
    collectImages(Nodes, Images);
    for (const OrvNodeDescription* pNode : qAsConst(Images)) {
        if (pNode->Pixels.isNull())
            continue;
        Stream << pNode->Uuid;
        writePixels(Stream, *pNode);
    }
    return Bytes;
}

bool OrvLayerSnapshot::fromBytes(const QByteArray& Bytes, OrvLayerSnapshot& Snapshot, QString& Error)
{
    QDataStream Stream(Bytes);
    Stream.setVersion(QDataStream::Qt_5_15);
    quint32 Mark = 0, StoredVersion = 0;
    QStringList Roots;
    QString PaintSpace;
    QByteArray Json;
    Stream >> Mark >> StoredVersion;
    if (Mark != Magic || StoredVersion != Version) {
        Error = tr("The clipboard holds layers of another version of Orvi");
        return false;
    }
    Stream >> Roots >> PaintSpace >> Json;
    OrvNodeSubgraph Read;
    if (Stream.status() != QDataStream::Ok
        || !OrvNodeSubgraph::fromJson(QJsonDocument::fromJson(Json).array(), Read, Error) || Read.isEmpty()) {
        Error = tr("The layers on the clipboard are damaged");
        return false;
    }
    QVector<OrvNodeDescription> Nodes = Read.nodes();
    QHash<QString, OrvNodeDescription*> Images;
    collectImages(Nodes, Images);
    while (!Stream.atEnd()) {
        QString Uuid;
        Stream >> Uuid;
        OrvNodeDescription* pNode = Images.take(Uuid);
        if (!pNode || !readPixels(Stream, *pNode) || Stream.status() != QDataStream::Ok) {
            Error = tr("The pixels of the layers on the clipboard are damaged");
            return false;
        }
    }
    OrvLayerSnapshot Whole;
    Whole.m_Roots = Roots;
    Whole.m_PaintSpace = PaintSpace;
    for (const OrvNodeDescription& Node : qAsConst(Nodes))
        Whole.m_Nodes.append(Node);
    Snapshot = Whole;
    return true;
}
