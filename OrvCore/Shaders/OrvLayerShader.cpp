#include "OrvCore/Shaders/OrvLayerShader.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvShaderInputUtils.h"
#include "OrvCore/Network/OrvSnBaseNode.h"

OrvLayerShader::OrvLayerShader(OrvSnBaseNode* pNode)
    : m_pNode(pNode)
{
}

OrvLayerShader::~OrvLayerShader() = default;

QString OrvLayerShader::name() const
{
    return m_pNode->name();
}

QStringList OrvLayerShader::inputNames() const
{
    QStringList Names;
    for (const OrvSnBaseNode::Input& Input : m_pNode->inputs())
        Names.append(Input.Name);
    return Names;
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

bool OrvLayerShader::setInputShaderInput(const QString& InputName, OrvShaderInput* pShaderInput)
{
    return m_pNode->connectInput(InputName, pShaderInput ? pShaderInput->node() : nullptr);
}

#include "moc_OrvLayerShader.cpp"
