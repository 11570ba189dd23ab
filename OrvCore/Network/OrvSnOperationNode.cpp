#include "OrvCore/Network/OrvSnOperationNode.h"

#include "OrvDdi/Engine/OrvEngineNode.h"
#include "OrvDdi/Engine/OrvOperationRegistry.h"

#include <QtCore/QRect>

const QString OrvSnOperationNode::ExtentAttribute = QStringLiteral("_Extent");

OrvSnOperationNode::OrvSnOperationNode(const OrvOperation& Operation)
    : OrvSnBaseNode(Operation.Procedural ? QStringList() : QStringList{OrvSnNames::Input})
    , m_Operation(Operation)
{
}

QString OrvSnOperationNode::typeName() const
{
    return QStringLiteral("Operation/") + m_Operation.Name;
}

QString OrvSnOperationNode::typeLabel() const
{
    return m_Operation.MenuPath.section(QLatin1Char('/'), -1);
}

bool OrvSnOperationNode::isProcedural() const
{
    return m_Operation.Procedural;
}

const QVector<OrvCustomAttribute>& OrvSnOperationNode::attributeDefaults() const
{
    static QHash<QString, QVector<OrvCustomAttribute>> s_ByOperation;
    auto Found = s_ByOperation.find(m_Operation.Name);
    if (Found == s_ByOperation.end()) {
        QVector<OrvCustomAttribute> Defaults;
        for (const OrvOperationParameter& Parameter : m_Operation.Parameters)
            Defaults.append({Parameter.Name, Parameter.Default});
        Found = s_ByOperation.insert(m_Operation.Name, Defaults);
    }
    return Found.value();
}

std::unique_ptr<OrvEngineNode> OrvSnOperationNode::createEngineNode() const
{
    return OrvEngineNode::createOperation(m_Operation.Name);
}

void OrvSnOperationNode::updateEngineNode(OrvEngineNode& Node) const
{
    for (const OrvOperationParameter& Parameter : m_Operation.Parameters)
        Node.setParameter(Parameter.Name, userAttribute(Parameter.Name).value());
    Node.setExtent(QRect(QPoint(), userAttribute(ExtentAttribute).value().toSize()));
}

#include "moc_OrvSnOperationNode.cpp"
