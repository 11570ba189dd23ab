#include "OrvCore/Shaders/OrvSnShaderNode.h"

#include "OrvCore/Channels/OrvChannelSpace.h"
#include "OrvCore/Channels/OrvSnShaderInputNode.h"
#include "OrvCore/Layers/OrvChainTargets.h"
#include "OrvCore/Network/OrvInputStep.h"
#include "OrvCore/Network/OrvNodeDescription.h"
#include "OrvCore/Network/OrvNodeEvaluation.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Network/OrvSnNames.h"
#include "OrvCore/Shaders/OrvFlatShading.h"
#include "OrvCore/Shaders/OrvLayerShaderManager.h"
#include "OrvCore/Shaders/OrvShadingModel.h"
#include "OrvCore/Undo/OrvUndoManager.h"

#include "OrvDdi/Engine/OrvEngineNode.h"

#include <QtCore/QHash>

namespace {

const QString ValuePrefix = QStringLiteral("Value ");
const QString InvertedPrefix = QStringLiteral("Inverted ");
const QString EnabledPrefix = QStringLiteral("Enabled ");

QVector<OrvCustomAttribute> attributesOf(const OrvShadingModel& Model)
{
    QVector<OrvCustomAttribute> All;
    const auto append = [&All](const QString& Name, const QVariant& Value) {
        OrvCustomAttribute Attribute(Name, Value);
        // The inputs pane has controls of its own for them.
        Attribute.setVisible(false);
        All.append(Attribute);
    };
    for (const OrvShadingModel::Input& Input : Model.inputs()) {
        append(OrvSnShaderNode::valueAttribute(Input.Name), QVariant::fromValue(Input.Default));
        append(OrvSnShaderNode::invertedAttribute(Input.Name), false);
        append(OrvSnShaderNode::enabledAttribute(Input.Name), true);
    }
    return All;
}

qint64 area(const OrvUdimLayout& Layout)
{
    return qint64(Layout.tileSize().width()) * Layout.tileSize().height();
}

} // namespace

OrvSnShaderNode::OrvSnShaderNode(const OrvShadingModel& Model)
    : OrvSnBaseNode(Model.inputNames(), {OrvSnNames::ShaderTag})
    , m_pModel(&Model)
{
    // The light changes without any edit of the node.
    connect(&OrvFlatShading::instance(), &OrvFlatShading::changed, this,
        [this] { OrvNodeEvaluation::parametersChanged(this); });
}

QString OrvSnShaderNode::typeName() const
{
    return m_pModel->key();
}

QString OrvSnShaderNode::typeLabel() const
{
    return m_pModel->label();
}

QString OrvSnShaderNode::valueAttribute(const QString& InputName)
{
    return ValuePrefix + InputName;
}

QString OrvSnShaderNode::invertedAttribute(const QString& InputName)
{
    return InvertedPrefix + InputName;
}

QString OrvSnShaderNode::enabledAttribute(const QString& InputName)
{
    return EnabledPrefix + InputName;
}

const QVector<OrvCustomAttribute>& OrvSnShaderNode::attributeDefaults() const
{
    static QHash<const OrvShadingModel*, QVector<OrvCustomAttribute>> ByModel;
    auto Found = ByModel.find(m_pModel);
    if (Found == ByModel.end())
        Found = ByModel.insert(m_pModel, attributesOf(*m_pModel));
    return *Found;
}

OrvColor OrvSnShaderNode::inputValue(const QString& InputName) const
{
    const QVariant Value = userAttribute(valueAttribute(InputName)).value();
    if (Value.userType() == qMetaTypeId<OrvColor>())
        return Value.value<OrvColor>();
    const OrvShadingModel::Input* pInput = m_pModel->input(InputName);
    return pInput ? pInput->Default : OrvColor();
}

bool OrvSnShaderNode::isInputInverted(const QString& InputName) const
{
    const QVariant Value = userAttribute(invertedAttribute(InputName)).value();
    return Value.userType() == QMetaType::Bool && Value.toBool();
}

bool OrvSnShaderNode::isInputEnabled(const QString& InputName) const
{
    const QVariant Value = userAttribute(enabledAttribute(InputName)).value();
    return Value.userType() != QMetaType::Bool || Value.toBool();
}

bool OrvSnShaderNode::setInputValue(const QString& InputName, const OrvColor& Value)
{
    const OrvShadingModel::Input* pInput = m_pModel->input(InputName);
    if (!pInput || pInput->isForMaterialStacks())
        return false;
    const OrvUndoManager::AutoMacro Macro(tr("Set %1 of '%2'").arg(InputName, name()));
    const OrvColor Stored = pInput->Scalar ? OrvColor(Value.red(), Value.red(), Value.red()) : Value;
    setUserAttributeValue(valueAttribute(InputName), QVariant::fromValue(Stored));
    return true;
}

bool OrvSnShaderNode::setInputInverted(const QString& InputName, bool Inverted)
{
    if (!m_pModel->input(InputName))
        return false;
    const OrvUndoManager::AutoMacro Macro(tr("Invert %1 of '%2'").arg(InputName, name()));
    setUserAttributeValue(invertedAttribute(InputName), Inverted);
    return true;
}

bool OrvSnShaderNode::setInputEnabled(const QString& InputName, bool Enabled)
{
    if (!m_pModel->input(InputName))
        return false;
    const OrvUndoManager::AutoMacro Macro(
        (Enabled ? tr("Enable %1 of '%2'") : tr("Disable %1 of '%2'")).arg(InputName, name()));
    setUserAttributeValue(enabledAttribute(InputName), Enabled);
    return true;
}

void OrvSnShaderNode::applyUserAttribute(const OrvCustomAttribute& Attribute)
{
    const QString InputName
        = Attribute.name().startsWith(EnabledPrefix) ? Attribute.name().mid(EnabledPrefix.size()) : QString();
    const bool WasEnabled = isInputEnabled(InputName);
    OrvSnBaseNode::applyUserAttribute(Attribute);
    if (network() && hasInput(InputName) && isInputEnabled(InputName) != WasEnabled)
        Q_EMIT OrvShaderNetworkManager::instance().nodeInputEnabledChanged(this, InputName, !WasEnabled);
}

OrvUdimLayout OrvSnShaderNode::layout() const
{
    OrvUdimLayout Largest;
    for (const Input& One : inputs()) {
        const auto* pChannel = qobject_cast<const OrvSnShaderInputNode*>(One.pNode);
        const OrvUdimLayout Layout = pChannel ? pChannel->layout() : OrvUdimLayout();
        if (Layout.isValid() && (!Largest.isValid() || area(Layout) > area(Largest)))
            Largest = Layout;
    }
    if (Largest.isValid() || !network())
        return Largest;
    // One that shows values alone is as large as what it stands in, or as the object's first channel.
    if (const auto* pAround = qobject_cast<const OrvSnShaderInputNode*>(OrvChainTargets::channel(this)))
        return pAround->layout();
    for (const OrvSnBaseNode* pNode : network()->nodes()) {
        if (const auto* pChannel = qobject_cast<const OrvSnShaderInputNode*>(pNode))
            return pChannel->layout();
    }
    return {};
}

OrvShadingParameters OrvSnShaderNode::shadingParameters() const
{
    OrvShadingParameters Parameters;
    Parameters.WhichModel = m_pModel->evaluation();
    Parameters.Lamp = OrvFlatShading::light();
    Parameters.setLayout(layout());
    for (const OrvShadingModel::Input& Input : m_pModel->inputs()) {
        OrvShadingParameters::SlotValue& Slot = Parameters.Slots[Input.Slot];
        Slot.Used = isInputEnabled(Input.Name);
        if (!Slot.Used)
            continue;
        Slot.Connected = inputNode(Input.Name) != nullptr;
        Slot.Inverted = isInputInverted(Input.Name);
        const OrvColor Value = inputValue(Input.Name);
        std::copy_n(Value.components(), 4, Slot.Value);
    }
    return Parameters;
}

std::unique_ptr<OrvEngineNode> OrvSnShaderNode::createEngineNode() const
{
    return OrvEngineNode::createShading();
}

QStringList OrvSnShaderNode::enginePadInputs() const
{
    QStringList Pads;
    for (int Slot = 0; Slot < OrvShadingParameters::SlotCount; ++Slot)
        Pads.append(QString());
    for (const OrvShadingModel::Input& Input : m_pModel->inputs())
        Pads[Input.Slot] = Input.Name;
    return Pads;
}

void OrvSnShaderNode::describeInputStep(const QString& InputName, OrvInputStep& Step) const
{
    if (const auto* pChannel = qobject_cast<const OrvSnShaderInputNode*>(inputNode(InputName))) {
        Step.From = pChannel->layout();
        Step.To = layout();
        OrvChannelSpace::describeStep(this, InputName, pChannel, Step);
    }
}

void OrvSnShaderNode::updateEngineNode(OrvEngineNode& Node) const
{
    Node.setShading(shadingParameters());
}

void OrvSnShaderNode::describe(OrvNodeDescription& Description) const
{
    // Which one was chosen last is no property of the shader.
    Description.Tags.removeAll(OrvLayerShaderManager::nodeTagUserSelectedShader());
}

void OrvSnShaderNode::adopt(const OrvNodeDescription& Description)
{
    for (const OrvNodeDescription::Connection& One : Description.Connections)
        addInput(One.InputName, inputs().size());
}

bool OrvSnShaderNode::renew()
{
    bool Renewed = false;
    const QStringList Names = m_pModel->inputNames();
    for (int Index = 0; Index < Names.size(); ++Index)
        Renewed |= addInput(Names[Index], Index);
    const QVector<OrvCustomAttribute> Own = ownUserAttributes();
    for (const OrvCustomAttribute& Attribute : Own) {
        const auto& Defaults = attributeDefaults();
        const auto Default = std::find_if(Defaults.begin(), Defaults.end(),
            [&](const OrvCustomAttribute& One) { return One.name() == Attribute.name(); });
        if (Default != Defaults.end() && Default->value().userType() != Attribute.value().userType()) {
            createUserAttribute(*Default);
            Renewed = true;
        }
    }
    return Renewed;
}

#include "moc_OrvSnShaderNode.cpp"
