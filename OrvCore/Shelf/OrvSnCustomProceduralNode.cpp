#include "OrvCore/Shelf/OrvSnCustomProceduralNode.h"

#include "OrvCore/Network/OrvNodeEvaluation.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Network/OrvSnOperationNode.h"
#include "OrvCore/Object/OrvDebug.h"
#include "OrvCore/Shelf/OrvSnCustomProceduralOutputNode.h"
#include "OrvCore/Undo/OrvUndoManager.h"

#include <QtCore/QSize>

const QString OrvSnCustomProceduralNode::ProceduralAttribute = QStringLiteral("_Procedural");

namespace {

/// Blends have parameters of other names than the attributes of their nodes.
QString attributeName(const OrvProceduralDescription::Node& Node, const QString& Parameter)
{
    if (Node.What != OrvProceduralDescription::Node::Blend)
        return Parameter;
    return Parameter == QLatin1String("amount") ? OrvMergeAttributes::Amount : OrvMergeAttributes::BlendMode;
}

OrvCustomAttribute hidden(const QString& Name, const QVariant& Value)
{
    OrvCustomAttribute Attribute(Name, Value);
    Attribute.setVisible(false);
    return Attribute;
}

QVariant driven(const QVariant& Value, const OrvProceduralDescription::Binding& Binding,
    const OrvOperationParameter& Target)
{
    switch (Target.Type) {
    case OrvOperationParameter::Real:
    case OrvOperationParameter::Angle:
        return Value.toDouble() * Binding.Factor + Binding.Offset;
    case OrvOperationParameter::Integer:
        return qRound(Value.toDouble() * Binding.Factor + Binding.Offset);
    default:
        return Value;
    }
}

} // namespace

OrvSnCustomProceduralNode::OrvSnCustomProceduralNode()
    : m_pProcedural(std::make_unique<OrvProceduralDescription>())
    , m_pInside(new OrvShaderNetwork(this))
{
}

OrvSnCustomProceduralNode::~OrvSnCustomProceduralNode()
{
    // While the nodes inside can still ask what is around them.
    delete m_pInside;
}

QString OrvSnCustomProceduralNode::typeLabel() const
{
    return tr("Custom Procedural");
}

std::unique_ptr<OrvSnCustomProceduralNode> OrvSnCustomProceduralNode::create(
    const QByteArray& Text, const QSize& Extent, QString& Error)
{
    OrvProceduralDescription Checked;
    if (!OrvProceduralDescription::fromText(Text, Checked, Error))
        return nullptr;
    auto pNode = std::make_unique<OrvSnCustomProceduralNode>();
    pNode->setName(Checked.Name);
    pNode->createUserAttribute(hidden(ProceduralAttribute, QString::fromUtf8(Text)));
    pNode->createUserAttribute(hidden(OrvSnOperationNode::ExtentAttribute, Extent));
    return pNode;
}

void OrvSnCustomProceduralNode::applyUserAttribute(const OrvCustomAttribute& Attribute)
{
    // The inside follows the attributes of this node: undoing those undoes it too.
    const OrvUndoManager::NoRecording NoRecording;
    const bool NewText
        = Attribute.name() == ProceduralAttribute && !(userAttribute(ProceduralAttribute) == Attribute);
    if (NewText)
        rebuild(Attribute.value().toString().toUtf8());
    OrvSnBaseNode::applyUserAttribute(Attribute);
    if (NewText) {
        passExtentOn();
        driveAll();
    } else if (Attribute.name() == OrvSnOperationNode::ExtentAttribute) {
        passExtentOn();
        if (network())
            OrvNodeEvaluation::layoutChanged(this);
    }
    for (const OrvProceduralDescription::Parameter& Parameter : qAsConst(m_pProcedural->Parameters)) {
        if (Parameter.Editor.Name == Attribute.name())
            drive(Parameter);
    }
}

void OrvSnCustomProceduralNode::applyUserAttributeRemoval(const QString& Name)
{
    const OrvUndoManager::NoRecording NoRecording;
    if (Name == ProceduralAttribute)
        rebuild(QByteArray());
    OrvSnBaseNode::applyUserAttributeRemoval(Name);
    passExtentOn();
    driveAll();
}

void OrvSnCustomProceduralNode::rebuild(const QByteArray& Text)
{
    m_pOutput = nullptr;
    m_Nodes.clear();
    m_Defaults.clear();
    m_pInside->clear();
    m_pProcedural = std::make_unique<OrvProceduralDescription>();
    if (Text.isEmpty())
        return;
    QString Error;
    if (!OrvProceduralDescription::fromText(Text, *m_pProcedural, Error)) {
        OrvDebug("OrvSnCustomProceduralNode", __LINE__,
            QStringLiteral("[ !! ] The custom procedural '%1' is damaged: %2").arg(name(), Error), false,
            false);
        return;
    }
    for (const OrvProceduralDescription::Parameter& Parameter : qAsConst(m_pProcedural->Parameters))
        m_Defaults.append({Parameter.Editor.Name, Parameter.Editor.Default});
    connectInside();
}

std::unique_ptr<OrvSnBaseNode> OrvSnCustomProceduralNode::makeNode(
    const OrvProceduralDescription::Node& Node) const
{
    std::unique_ptr<OrvSnBaseNode> pMade;
    if (Node.pOperation) {
        pMade = std::make_unique<OrvSnOperationNode>(*Node.pOperation);
    } else if (Node.pIncluded) {
        pMade = std::make_unique<OrvSnCustomProceduralNode>();
        pMade->createUserAttribute(hidden(ProceduralAttribute, QString::fromUtf8(Node.IncludedText)));
    } else {
        pMade = std::make_unique<OrvSnMergeNode>();
    }
    pMade->setName(Node.Id);
    for (auto Value = Node.Values.begin(); Value != Node.Values.end(); ++Value)
        pMade->setUserAttributeValue(attributeName(Node, Value.key()), Value.value());
    return pMade;
}

void OrvSnCustomProceduralNode::connectInside()
{
    // Connected before they enter the network, so that nobody is told of each step.
    std::vector<std::unique_ptr<OrvSnBaseNode>> Made;
    for (const OrvProceduralDescription::Node& Node : qAsConst(m_pProcedural->Nodes)) {
        Made.push_back(makeNode(Node));
        m_Nodes.insert(Node.Id, Made.back().get());
    }
    for (const OrvProceduralDescription::Node& Node : qAsConst(m_pProcedural->Nodes)) {
        for (auto Source = Node.Sources.begin(); Source != Node.Sources.end(); ++Source)
            m_Nodes.value(Node.Id)->connectInput(Source.key(), m_Nodes.value(Source.value()));
    }
    auto pOutput = std::make_unique<OrvSnCustomProceduralOutputNode>();
    pOutput->connectInput(OrvSnNames::Input, m_Nodes.value(m_pProcedural->Output));
    m_pOutput = pOutput.get();
    Made.push_back(std::move(pOutput));
    for (std::unique_ptr<OrvSnBaseNode>& pNode : Made)
        m_pInside->addNode(std::move(pNode));
}

void OrvSnCustomProceduralNode::drive(const OrvProceduralDescription::Parameter& Parameter)
{
    const QVariant Value = userAttribute(Parameter.Editor.Name).value();
    for (const OrvProceduralDescription::Binding& Binding : Parameter.Bindings) {
        const OrvProceduralDescription::Node& Node = *m_pProcedural->node(Binding.Node);
        m_Nodes.value(Binding.Node)
            ->setUserAttributeValue(attributeName(Node, Binding.Parameter),
                driven(Value, Binding, *Node.parameter(Binding.Parameter)));
    }
}

void OrvSnCustomProceduralNode::driveAll()
{
    for (const OrvProceduralDescription::Parameter& Parameter : qAsConst(m_pProcedural->Parameters))
        drive(Parameter);
}

void OrvSnCustomProceduralNode::passExtentOn()
{
    if (!m_pOutput)
        return;
    const OrvCustomAttribute Extent = hidden(OrvSnOperationNode::ExtentAttribute,
        userAttribute(OrvSnOperationNode::ExtentAttribute).value().toSize());
    m_pOutput->createUserAttribute(Extent);
    for (const OrvProceduralDescription::Node& Node : qAsConst(m_pProcedural->Nodes)) {
        const bool Procedural = Node.pIncluded || (Node.pOperation && Node.pOperation->Procedural);
        if (Procedural && !Node.Unbounded)
            m_Nodes.value(Node.Id)->createUserAttribute(Extent);
    }
}

#include "moc_OrvSnCustomProceduralNode.cpp"
