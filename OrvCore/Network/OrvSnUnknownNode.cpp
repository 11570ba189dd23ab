#include "OrvCore/Network/OrvSnUnknownNode.h"

#include "OrvCore/Network/OrvNodeDescription.h"

OrvSnUnknownNode::OrvSnUnknownNode(const QJsonObject& Stored, const QStringList& InputNames)
    : OrvSnBaseNode(InputNames)
    , m_pStored(std::make_unique<QJsonObject>(Stored))
{
}

OrvSnUnknownNode::~OrvSnUnknownNode() = default;

QString OrvSnUnknownNode::typeName() const
{
    return m_pStored->value(QStringLiteral("type")).toString();
}

QString OrvSnUnknownNode::typeLabel() const
{
    return tr("Unknown (%1)").arg(typeName());
}

void OrvSnUnknownNode::describe(OrvNodeDescription& Description) const
{
    Description.Foreign = *m_pStored;
    // All but its identity, which a copy has of its own, and the connections, which may have been changed
    // around the node since it was read.
    Description.Foreign.insert(QStringLiteral("id"), Description.Uuid);
    const QJsonObject Connections = Description.connectionsToJson();
    if (Connections.isEmpty())
        Description.Foreign.remove(QStringLiteral("inputs"));
    else
        Description.Foreign.insert(QStringLiteral("inputs"), Connections);
}

#include "moc_OrvSnUnknownNode.cpp"
