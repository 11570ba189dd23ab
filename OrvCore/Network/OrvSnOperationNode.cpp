#include "OrvCore/Network/OrvSnOperationNode.h"

#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Shelf/OrvSnCustomProceduralNode.h"

#include "OrvDdi/Engine/OrvEngineNode.h"
#include "OrvDdi/Engine/OrvOperationRegistry.h"

#include <QtCore/QRect>

const QString OrvSnOperationNode::ExtentAttribute = QStringLiteral("_Extent");

namespace {

/// It makes noise, or reads more of its input than the part that is asked of it.
bool looksAround(const QString& MenuPath)
{
    for (const char* pGroup :
        {"Procedural/Noise/", "Filter/Blur/", "Filter/Sharpen/", "Filter/Transform/", "Filter/Noise/"}) {
        if (MenuPath.startsWith(QLatin1String(pGroup)))
            return true;
    }
    return false;
}

} // namespace

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
    // Some read whole rows and columns for every part that is asked of them, and all that they stand on with it.
    const bool IsPart = network() && qobject_cast<const OrvSnCustomProceduralNode*>(network()->container());
    Node.setCached(IsPart && looksAround(m_Operation.MenuPath));
}

#include "moc_OrvSnOperationNode.cpp"
