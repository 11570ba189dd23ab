#include "OrvCore/Channels/OrvChannelSnapshot.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvSnShaderInputNode.h"
#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvSnBottomTransparencyNode.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Project/OrvGeoEntity.h"

#include "OrvDdi/Image/OrvImage.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDataStream>
#include <QtCore/QJsonDocument>

namespace {

constexpr quint32 Magic = 0x4f727643; // "OrvC"
constexpr quint32 Version = 1;
constexpr int GreatestEdge = 32768;

QString tr(const char* pText)
{
    return QCoreApplication::translate("OrvChannelSnapshot", pText);
}

std::unique_ptr<OrvSnShaderInputNode> makeNode(const OrvNodeDescription& Description)
{
    auto pNode = std::make_unique<OrvSnShaderInputNode>();
    for (const OrvCustomAttribute& Attribute : Description.Attributes)
        pNode->createUserAttribute(Attribute);
    for (const QString& Tag : Description.Tags)
        pNode->addTag(Tag);
    return pNode;
}

/// Settings that a channel can have.
bool isUsable(const OrvNodeDescription& Description)
{
    const std::unique_ptr<OrvSnShaderInputNode> pNode = makeNode(Description);
    const OrvUdimLayout Layout = pNode->layout();
    return Description.Type == pNode->typeName() && Layout.isValid()
        && qMax(Layout.tileSize().width(), Layout.tileSize().height()) <= GreatestEdge
        && !OrvImage::depthName(GLenum(pNode->depth())).isEmpty();
}

} // namespace

OrvSnShaderInputNode* OrvChannelSnapshot::addChannel(
    OrvShaderNetwork* pNetwork, std::unique_ptr<OrvSnShaderInputNode> pNode, const QString& Name)
{
    OrvSnShaderInputNode* pChannel
        = OrvChainEditing::addNode(pNetwork, std::move(pNode), Name, nullptr, 0, 0);
    OrvSnBaseNode* pBottom = OrvChainEditing::addNode(
        pNetwork, std::make_unique<OrvSnBottomTransparencyNode>(), QString(), pChannel, -1, 0);
    pChannel->connectInput(OrvSnNames::Input, pBottom);
    return pChannel;
}

OrvChannelSnapshot OrvChannelSnapshot::capture(
    const OrvShaderInput* pChannel, OrvChainEditing::Channels Handling)
{
    OrvChannelSnapshot Snapshot;
    const OrvSnBaseNode* pNode = pChannel->node();
    Snapshot.m_Channel.Uuid = pNode->uuidString();
    Snapshot.m_Channel.Type = pNode->typeName();
    Snapshot.m_Channel.Name = pNode->name();
    for (const QString& Tag : pNode->tags())
        Snapshot.m_Channel.Tags.append(Tag);
    for (const OrvCustomAttribute& Attribute : pNode->ownUserAttributes())
        Snapshot.m_Channel.Attributes.append(Attribute);
    QVector<OrvSnMergeNode*> Merges;
    for (const OrvLayer* pLayer : pChannel->layerList())
        Merges.append(pLayer->blendNode());
    Snapshot.m_Layers = OrvLayerSnapshot::capture(Merges, Handling);
    return Snapshot;
}

OrvShaderInput* OrvChannelSnapshot::instantiate(
    OrvShaderNetwork* pNetwork, const QString& Name, const QVector<int>& Tiles) const
{
    std::unique_ptr<OrvSnShaderInputNode> pNode = makeNode(m_Channel);
    const OrvGeoEntity* pEntity = pNetwork->geoEntity();
    const OrvUdimLayout Wanted = pEntity && pEntity->isPtex() ? OrvUdimLayout(pEntity->faceResolution())
        : Tiles.isEmpty()                                      ? pNode->layout()
                                                               : OrvUdimLayout(pNode->layout().tileSize(), Tiles);
    OrvUdimLayout Layout;
    if (Wanted != pNode->layout()) {
        Layout = Wanted;
        pNode->setLayoutOfImages(Layout);
    }
    OrvSnShaderInputNode* pChannel = addChannel(pNetwork, std::move(pNode), Name);
    const QVector<OrvSnMergeNode*> Merges = m_Layers.instantiate(pNetwork, Layout);
    OrvSnBaseNode* pTarget = pChannel->preferredInputNode();
    for (auto Merge = Merges.rbegin(); Merge != Merges.rend(); ++Merge) {
        if (!OrvChainEditing::insertAbove(*Merge, pTarget))
            return nullptr;
        pTarget = *Merge;
    }
    return pChannel->shaderInput();
}

QByteArray OrvChannelSnapshot::toBytes() const
{
    QByteArray Bytes;
    QDataStream Stream(&Bytes, QIODevice::WriteOnly);
    Stream.setVersion(QDataStream::Qt_5_15);
    Stream << Magic << Version << QJsonDocument(m_Channel.toJson()).toJson(QJsonDocument::Compact)
           << (m_Layers.isEmpty() ? QByteArray() : m_Layers.toBytes());
    return Bytes;
}

bool OrvChannelSnapshot::fromBytes(const QByteArray& Bytes, OrvChannelSnapshot& Snapshot, QString& Error)
{
    QDataStream Stream(Bytes);
    Stream.setVersion(QDataStream::Qt_5_15);
    quint32 Mark = 0, StoredVersion = 0;
    QByteArray Json, Layers;
    Stream >> Mark >> StoredVersion;
    if (Mark == Magic && StoredVersion > Version) {
        Error = tr("The clipboard holds a channel of a newer version of Orvi");
        return false;
    }
    Stream >> Json >> Layers;
    OrvChannelSnapshot Read;
    if (Mark != Magic || Stream.status() != QDataStream::Ok
        || !OrvNodeDescription::fromJson(QJsonDocument::fromJson(Json).object(), Read.m_Channel, Error)
        || !isUsable(Read.m_Channel)) {
        Error = tr("The channel on the clipboard is damaged");
        return false;
    }
    if (!Layers.isEmpty() && !OrvLayerSnapshot::fromBytes(Layers, Read.m_Layers, Error))
        return false;
    Snapshot = Read;
    return true;
}
