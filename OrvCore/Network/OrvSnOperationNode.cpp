#include "OrvCore/Network/OrvSnOperationNode.h"

#include "OrvCore/Channels/OrvChannelSpace.h"
#include "OrvCore/Network/OrvContentScale.h"
#include "OrvCore/Network/OrvInputStep.h"
#include "OrvCore/Network/OrvNodeEvaluation.h"
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

void OrvSnOperationNode::describeInputStep(const QString& InputName, OrvInputStep& Step) const
{
    OrvChannelSpace::describeStep(this, InputName, inputNode(InputName), Step);
}

void OrvSnOperationNode::applyUserAttribute(const OrvCustomAttribute& Attribute)
{
    OrvSnBaseNode::applyUserAttribute(Attribute);
    if (Attribute.name() == ExtentAttribute && network())
        OrvNodeEvaluation::layoutChanged(this);
}

void OrvSnOperationNode::updateEngineNode(OrvEngineNode& Node) const
{
    for (const OrvOperationParameter& Parameter : m_Operation.Parameters)
        Node.setParameter(Parameter.Name, userAttribute(Parameter.Name).value());
    const OrvContentScale Scale = OrvContentScale::at(this);
    Node.setScale(Scale.Lengths);
    Node.setExtent(Scale.plane(userAttribute(ExtentAttribute).value().toSize()));
    // Some read whole rows and columns for every part that is asked of them, and all that they stand on with it.
    const bool IsPart = network() && qobject_cast<const OrvSnCustomProceduralNode*>(network()->container());
    Node.setCached(IsPart && looksAround(m_Operation.MenuPath));
}

#include "moc_OrvSnOperationNode.cpp"
