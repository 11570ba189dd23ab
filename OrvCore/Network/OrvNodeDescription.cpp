#include "OrvCore/Network/OrvNodeDescription.h"

#include "OrvCore/Network/OrvNodeRegistry.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvSnUnknownNode.h"
#include "OrvCore/Object/OrvDebug.h"
#include "OrvCore/Object/OrvObjectReferenceManager.h"

#include "OrvDdi/Image/OrvImageSet.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QHash>
#include <QtCore/QJsonArray>
#include <QtCore/QSize>

namespace {

/// Values keep their type: what JSON has by nature is stored as such, the rest as an object that names its type.
QJsonValue jsonFromVariant(const QVariant& Value)
{
    if (Value.userType() == qMetaTypeId<OrvColor>()) {
        const OrvColor Color = Value.value<OrvColor>();
        return QJsonObject{
            {"color", QJsonArray{Color.red(), Color.green(), Color.blue(), Color.alpha()}}};
    }
    switch (Value.userType()) {
    case QMetaType::Bool:
    case QMetaType::Double:
    case QMetaType::QString:
        return QJsonValue::fromVariant(Value);
    case QMetaType::Int:
        return QJsonObject{{"int", Value.toInt()}};
    case QMetaType::QSize:
        return QJsonObject{{"size", QJsonArray{Value.toSize().width(), Value.toSize().height()}}};
    case QMetaType::QVariantList: {
        QJsonArray Array;
        for (const QVariant& Item : Value.toList())
            Array.append(jsonFromVariant(Item));
        return Array;
    }
    case QMetaType::QVariantMap: {
        QJsonObject Map;
        const QVariantMap Items = Value.toMap();
        for (auto Item = Items.begin(); Item != Items.end(); ++Item)
            Map.insert(Item.key(), jsonFromVariant(Item.value()));
        return QJsonObject{{"map", Map}};
    }
    default:
        return QJsonValue::fromVariant(Value);
    }
}

QVariant variantFromJson(const QJsonValue& Value)
{
    if (Value.isArray()) {
        QVariantList List;
        for (const QJsonValue Item : Value.toArray())
            List.append(variantFromJson(Item));
        return List;
    }
    if (!Value.isObject())
        return Value.toVariant();
    const QJsonObject Object = Value.toObject();
    if (Object.contains(QLatin1String("int")))
        return Object.value(QLatin1String("int")).toInt();
    const QJsonArray Size = Object.value(QLatin1String("size")).toArray();
    if (Size.size() == 2)
        return QSize(Size[0].toInt(), Size[1].toInt());
    const QJsonArray Color = Object.value(QLatin1String("color")).toArray();
    if (Color.size() == 4) {
        return QVariant::fromValue(OrvColor(float(Color[0].toDouble()), float(Color[1].toDouble()),
            float(Color[2].toDouble()), float(Color[3].toDouble())));
    }
    QVariantMap Map;
    const QJsonObject Items = Object.value(QLatin1String("map")).toObject();
    for (auto Item = Items.begin(); Item != Items.end(); ++Item)
        Map.insert(Item.key(), variantFromJson(Item.value()));
    return Map;
}

QJsonObject jsonFromAttribute(const OrvCustomAttribute& Attribute)
{
    QJsonObject Json{{"name", Attribute.name()}, {"value", jsonFromVariant(Attribute.value())}};
    if (!Attribute.isVersionable())
        Json.insert("versionable", false);
    if (!Attribute.isTweakable())
        Json.insert("tweakable", false);
    if (!Attribute.isVisible())
        Json.insert("visible", false);
    if (!Attribute.isEnabled())
        Json.insert("enabled", false);
    return Json;
}

OrvCustomAttribute attributeFromJson(const QJsonObject& Json)
{
    OrvCustomAttribute Attribute(Json.value("name").toString(), variantFromJson(Json.value("value")));
    if (!Json.value("versionable").toBool(true))
        Attribute.setNonVersionable();
    Attribute.setTweakable(Json.value("tweakable").toBool(true));
    Attribute.setVisible(Json.value("visible").toBool(true));
    Attribute.setEnabled(Json.value("enabled").toBool(true));
    return Attribute;
}

QString tr(const char* pText)
{
    return QCoreApplication::translate("OrvNodeDescription", pText);
}

} // namespace

QJsonObject OrvNodeDescription::connectionsToJson() const
{
    QJsonObject InputMap;
    for (const Connection& One : Connections) {
        InputMap.insert(One.InputName,
            One.OutputName.isEmpty() ? QJsonValue(One.SourceUuid)
                                     : QJsonValue(QJsonArray{One.SourceUuid, One.OutputName}));
    }
    return InputMap;
}

QJsonArray OrvNodeDescription::attributesToJson(const QVector<OrvCustomAttribute>& Attributes)
{
    QMap<QString, OrvCustomAttribute> Sorted;
    for (const OrvCustomAttribute& Attribute : Attributes)
        Sorted.insert(Attribute.name(), Attribute);
    QJsonArray List;
    for (const OrvCustomAttribute& Attribute : qAsConst(Sorted))
        List.append(jsonFromAttribute(Attribute));
    return List;
}

void OrvNodeDescription::setImages(const OrvImageSet& Images)
{
    HasImages = true;
    Layout = Images.layout();
    Format = Images.format();
    Fill = Images.fillColor();
    Pixels = Images.snapshot();
}

std::unique_ptr<OrvImageSet> OrvNodeDescription::makeImages() const
{
    if (!HasImages)
        return nullptr;
    auto pImages = std::make_unique<OrvImageSet>(Layout, Format, Fill);
    if (!Pixels.isNull())
        pImages->replace(Layout, Format, Fill, Pixels.snapshot());
    for (int Block = 0; Block < BlockKeys.size(); ++Block)
        pImages->setBlockKey(Block, BlockKeys[Block]);
    return pImages;
}

QJsonObject OrvNodeDescription::toJson() const
{
    if (!Foreign.isEmpty())
        return Foreign;
    QJsonObject Json{{"id", Uuid}, {"type", Type}};
    if (!Name.isEmpty())
        Json.insert("name", Name);
    if (!Tags.isEmpty())
        Json.insert("tags", QJsonArray::fromStringList(Tags));
    if (!Position.isNull())
        Json.insert("position", QJsonArray{Position.x(), Position.y()});
    if (Locked)
        Json.insert("locked", true);
    if (!Enabled)
        Json.insert("enabled", false);
    if (CacheActive)
        Json.insert("cached", true);
    const QJsonArray AttributeList = attributesToJson(Attributes);
    if (!AttributeList.isEmpty())
        Json.insert("attributes", AttributeList);
    const QJsonObject InputMap = connectionsToJson();
    if (!InputMap.isEmpty())
        Json.insert("inputs", InputMap);
    if (HasImages) {
        QJsonArray Tiles;
        for (const int Tile : Layout.tiles())
            Tiles.append(Tile);
        Json.insert("images",
            QJsonObject{{"size", QJsonArray{Layout.tileSize().width(), Layout.tileSize().height()}}, {"tiles", Tiles},
                {"depth", int(Format.Depth)}, {"scalar", Format.Kind == OrvPixelFormat::Scalar},
                {"srgb", Format.Curve == OrvPixelFormat::Srgb},
                {"fill", QJsonArray{Fill.red(), Fill.green(), Fill.blue(), Fill.alpha()}}});
    }
    QJsonArray NestedNodes;
    for (const OrvNodeDescription& Node : Nested)
        NestedNodes.append(Node.toJson());
    if (!NestedNodes.isEmpty())
        Json.insert("nodes", NestedNodes);
    return Json;
}

bool OrvNodeDescription::fromJson(const QJsonObject& Json, OrvNodeDescription& Description, QString& Error)
{
    Description.Uuid = Json.value("id").toString();
    Description.Type = Json.value("type").toString();
    Description.Name = Json.value("name").toString();
    if (Description.Uuid.isEmpty() || Description.Type.isEmpty()) {
        Error = tr("A node without identity or type ('%1')").arg(Description.Name);
        return false;
    }
    for (const QJsonValue Tag : Json.value("tags").toArray())
        Description.Tags.append(Tag.toString());
    const QJsonArray Position = Json.value("position").toArray();
    Description.Position = QPointF(Position.at(0).toDouble(), Position.at(1).toDouble());
    Description.Locked = Json.value("locked").toBool();
    Description.Enabled = Json.value("enabled").toBool(true);
    Description.CacheActive = Json.value("cached").toBool();
    for (const QJsonValue Attribute : Json.value("attributes").toArray())
        Description.Attributes.append(attributeFromJson(Attribute.toObject()));
    const QJsonObject Inputs = Json.value("inputs").toObject();
    for (auto Input = Inputs.begin(); Input != Inputs.end(); ++Input) {
        const QJsonArray Pair = Input.value().toArray();
        Description.Connections.append(Pair.isEmpty()
                ? Connection{Input.key(), Input.value().toString(), QString()}
                : Connection{Input.key(), Pair.at(0).toString(), Pair.at(1).toString()});
    }
    if (Json.contains("images")) {
        const QJsonObject Images = Json.value("images").toObject();
        const QJsonArray Size = Images.value("size").toArray();
        QVector<int> Tiles;
        for (const QJsonValue Tile : Images.value("tiles").toArray())
            Tiles.append(Tile.toInt());
        Description.Layout = OrvUdimLayout(QSize(Size.at(0).toInt(), Size.at(1).toInt()), Tiles);
        Description.Format.Depth = GLenum(Images.value("depth").toInt());
        const bool KnownDepth = Description.Format.Depth == GL_UNSIGNED_BYTE
            || Description.Format.Depth == GL_HALF_FLOAT || Description.Format.Depth == GL_FLOAT;
        if (!Description.Layout.isValid() || !KnownDepth) {
            Error = tr("The images of node '%1' have no valid size or depth").arg(Description.Name);
            return false;
        }
        Description.Format.Kind
            = Images.value("scalar").toBool() ? OrvPixelFormat::Scalar : OrvPixelFormat::Rgba;
        Description.Format.Curve
            = Images.value("srgb").toBool() ? OrvPixelFormat::Srgb : OrvPixelFormat::Linear;
        const QJsonArray Fill = Images.value("fill").toArray();
        Description.Fill = OrvColor(float(Fill.at(0).toDouble()), float(Fill.at(1).toDouble()),
            float(Fill.at(2).toDouble()), float(Fill.at(3).toDouble()));
        Description.HasImages = true;
    }
    for (const QJsonValue Node : Json.value("nodes").toArray()) {
        OrvNodeDescription Inside;
        if (!fromJson(Node.toObject(), Inside, Error))
            return false;
        Description.Nested.append(Inside);
    }
    if (!OrvNodeRegistry::instance().create(Description.Type))
        Description.Foreign = Json;
    return true;
}

OrvNodeDescription OrvNodeSubgraph::describe(const OrvSnBaseNode* pNode)
{
    OrvNodeDescription Description;
    Description.Uuid = pNode->uuidString();
    Description.Type = pNode->typeName();
    Description.Name = pNode->name();
    Description.Tags = pNode->tags();
    Description.Position = pNode->position();
    Description.Locked = pNode->locked();
    Description.Enabled = pNode->enabledAsBool();
    Description.CacheActive = pNode->cacheActive() == OrvSnCacheActive;
    Description.Attributes = pNode->ownUserAttributes();
    for (const OrvSnBaseNode::Input& Input : pNode->inputs()) {
        if (Input.pNode)
            Description.Connections.append({Input.Name, Input.pNode->uuidString(), Input.OutputName});
    }
    pNode->describe(Description);
    return Description;
}

OrvNodeSubgraph OrvNodeSubgraph::capture(const QVector<OrvSnBaseNode*>& Nodes)
{
    OrvNodeSubgraph Subgraph;
    Subgraph.m_Nodes.reserve(Nodes.size());
    for (const OrvSnBaseNode* pNode : Nodes)
        Subgraph.m_Nodes.append(describe(pNode));
    return Subgraph;
}

QVector<OrvSnBaseNode*> OrvNodeSubgraph::instantiate(OrvShaderNetwork* pNetwork, Identity Identities) const
{
    QVector<OrvSnBaseNode*> Made;
    QHash<QString, OrvSnBaseNode*> ByOldIdentity;
    for (const OrvNodeDescription& Description : m_Nodes) {
        std::unique_ptr<OrvSnBaseNode> pNode = OrvNodeRegistry::instance().create(Description.Type);
        if (!pNode) {
            QStringList InputNames;
            for (const OrvNodeDescription::Connection& One : Description.Connections)
                InputNames.append(One.InputName);
            pNode = std::make_unique<OrvSnUnknownNode>(
                Description.Foreign.isEmpty() ? Description.toJson() : Description.Foreign, InputNames);
            OrvDebug("OrvNodeDescription", __LINE__,
                tr("'%1' is of a type that this version of Orvi does not know (%2); it is kept as it is")
                    .arg(Description.Name.isEmpty() ? Description.Uuid : Description.Name, Description.Type));
        }
        if (Identities == KeepIdentities)
            pNode->setUuidString(Description.Uuid);
        pNode->setName(Description.Name);
        for (const QString& Tag : Description.Tags)
            pNode->addTag(Tag);
        pNode->setPosition(Description.Position);
        pNode->setLocked(Description.Locked);
        pNode->setEnabledAsBool(Description.Enabled);
        pNode->setCacheActive(Description.CacheActive ? OrvSnCacheActive : OrvSnCacheInactive);
        for (const OrvCustomAttribute& Attribute : Description.Attributes)
            pNode->createUserAttribute(Attribute);
        pNode->adopt(Description);
        OrvSnBaseNode* pAdded = pNetwork->addNode(std::move(pNode));
        ByOldIdentity.insert(Description.Uuid, pAdded);
        Made.append(pAdded);
    }
    const auto outside = [pNetwork](const QString& Uuid) {
        auto* pNode = qobject_cast<OrvSnBaseNode*>(OrvObjectReferenceManager::instance().getPointer(Uuid));
        return pNode && pNode->network() == pNetwork ? pNode : nullptr;
    };
    for (int Index = 0; Index < m_Nodes.size(); ++Index) {
        for (const OrvNodeDescription::Connection& One : m_Nodes[Index].Connections) {
            OrvSnBaseNode* pSource = ByOldIdentity.value(One.SourceUuid);
            if (!pSource)
                pSource = outside(One.SourceUuid);
            if (pSource)
                Made[Index]->connectInput(One.InputName, pSource, One.OutputName);
        }
    }
    return Made;
}

QJsonArray OrvNodeSubgraph::toJson() const
{
    QJsonArray Json;
    for (const OrvNodeDescription& Description : m_Nodes)
        Json.append(Description.toJson());
    return Json;
}

bool OrvNodeSubgraph::fromJson(const QJsonArray& Json, OrvNodeSubgraph& Subgraph, QString& Error)
{
    for (const QJsonValue Node : Json) {
        OrvNodeDescription Description;
        if (!OrvNodeDescription::fromJson(Node.toObject(), Description, Error))
            return false;
        Subgraph.m_Nodes.append(Description);
    }
    return true;
}
