#include "OrvCore/Shaders/OrvLayerShader.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvShaderInputUtils.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCore/Network/OrvSnNames.h"
#include "OrvCore/Shaders/OrvShadingModel.h"
#include "OrvCore/Shaders/OrvSnShaderNode.h"

namespace {

const OrvShadingModel::Input* modelInput(const OrvLayerShader* pShader, const QString& InputName)
{
    const OrvShadingModel* pModel = pShader->shaderModel();
    return pModel ? pModel->input(InputName) : nullptr;
}

} // namespace

OrvLayerShader::OrvLayerShader(OrvSnBaseNode* pNode)
    : m_pNode(pNode)
{
}

OrvLayerShader::~OrvLayerShader() = default;

QString OrvLayerShader::name() const
{
    return m_pNode->name();
}

const OrvShadingModel* OrvLayerShader::shaderModel() const
{
    const auto* pNode = qobject_cast<const OrvSnShaderNode*>(m_pNode);
    return pNode ? pNode->model() : nullptr;
}

QStringList OrvLayerShader::inputNames(int Kind) const
{
    QStringList Names;
    for (const OrvSnBaseNode::Input& Input : m_pNode->inputs()) {
        const bool ForMaterials = isInputForMaterialsStacks(Input.Name);
        if (Kind == AllInputs || (Kind == MaterialInputs) == ForMaterials)
            Names.append(Input.Name);
    }
    return Names;
}

bool OrvLayerShader::hasInputTag(const QString& InputName, const QString& Tag) const
{
    const OrvShadingModel::Input* pInput = modelInput(this, InputName);
    return pInput && pInput->Tags.contains(Tag);
}

bool OrvLayerShader::isInputForMaterialsStacks(const QString& InputName) const
{
    return hasInputTag(InputName, OrvSnNames::MaterialShaderInputTag);
}

bool OrvLayerShader::isInputScalar(const QString& InputName) const
{
    const OrvShadingModel::Input* pInput = modelInput(this, InputName);
    return pInput && pInput->Scalar;
}

OrvShaderInput* OrvLayerShader::inputShaderInput(const QString& InputName) const
{
    return OrvShaderInputUtils::getShaderInput(m_pNode->inputNode(InputName));
}

QList<OrvShaderInput*> OrvLayerShader::inputShaderInputs() const
{
    QList<OrvShaderInput*> Channels;
    for (const OrvSnBaseNode::Input& Input : m_pNode->inputs()) {
        OrvShaderInput* pChannel = OrvShaderInputUtils::getShaderInput(Input.pNode);
        if (pChannel && !Channels.contains(pChannel))
            Channels.append(pChannel);
    }
    return Channels;
}

QString OrvLayerShader::inputStreamName(const OrvShaderInput* pShaderInput) const
{
    for (const OrvSnBaseNode::Input& Input : m_pNode->inputs()) {
        if (pShaderInput && Input.pNode == pShaderInput->node())
            return Input.Name;
    }
    return {};
}

bool OrvLayerShader::canTakeShaderInput(const QString& InputName, const OrvShaderInput* pShaderInput) const
{
    if (!m_pNode->hasInput(InputName))
        return false;
    if (!pShaderInput)
        return true;
    const OrvShaderNetwork* pNetwork = m_pNode->network();
    return pNetwork && pShaderInput->network() == pNetwork
        && pShaderInput->isMaterialStack() == isInputForMaterialsStacks(InputName)
        && !pNetwork->wouldConnectionBreakDAG(pShaderInput->node(), m_pNode);
}

bool OrvLayerShader::setInputShaderInput(const QString& InputName, OrvShaderInput* pShaderInput)
{
    return canTakeShaderInput(InputName, pShaderInput)
        && m_pNode->connectInput(InputName, pShaderInput ? pShaderInput->node() : nullptr);
}

OrvColor OrvLayerShader::inputValue(const QString& InputName) const
{
    const auto* pNode = qobject_cast<const OrvSnShaderNode*>(m_pNode);
    return pNode ? pNode->inputValue(InputName) : OrvColor();
}

bool OrvLayerShader::isInputInverted(const QString& InputName) const
{
    const auto* pNode = qobject_cast<const OrvSnShaderNode*>(m_pNode);
    return pNode && pNode->isInputInverted(InputName);
}

bool OrvLayerShader::isInputEnabled(const QString& InputName) const
{
    const auto* pNode = qobject_cast<const OrvSnShaderNode*>(m_pNode);
    return pNode ? pNode->isInputEnabled(InputName) : m_pNode->hasInput(InputName);
}

void OrvLayerShader::setInputValue(const QString& InputName, const OrvColor& Value)
{
    if (auto* pNode = qobject_cast<OrvSnShaderNode*>(m_pNode))
        pNode->setInputValue(InputName, Value);
}

void OrvLayerShader::setInputInverted(const QString& InputName, bool Inverted)
{
    if (auto* pNode = qobject_cast<OrvSnShaderNode*>(m_pNode))
        pNode->setInputInverted(InputName, Inverted);
}

void OrvLayerShader::setInputEnabled(const QString& InputName, bool Enabled)
{
    if (auto* pNode = qobject_cast<OrvSnShaderNode*>(m_pNode))
        pNode->setInputEnabled(InputName, Enabled);
}

#include "moc_OrvLayerShader.cpp"
