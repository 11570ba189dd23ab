#include "OrvCore/Shaders/OrvSnSystemShaderNode.h"

#include "OrvCore/Network/OrvSnNames.h"
#include "OrvCore/Shaders/OrvLayerShaderManager.h"

#include <QtCore/QHash>

OrvSnSystemShaderNode::OrvSnSystemShaderNode(const QString& Tag)
    : OrvSnBaseNode({}, {OrvSnNames::ShaderTag, Tag})
    , m_Kind(Tag)
{
    using Manager = OrvLayerShaderManager;
    const QHash<QString, QString> Names{
        {Manager::nodeTagCurrentChannelShader(), tr("Current Channel")},
        {Manager::nodeTagCurrentLayerAndBelowShader(), tr("Current Layer & Below")},
        {Manager::nodeTagCurrentLayerShader(), tr("Current Layer")},
        {Manager::nodeTagCurrentComponentShader(), tr("Current Paint Target")},
        {Manager::nodeTagCurrentMaterialProxyShader(), tr("Current Material")},
        {Manager::nodeTagCurrentMaterialShader(), tr("Current Material Shader")},
    };
    setName(Names.value(Tag));
}

QString OrvSnSystemShaderNode::typeLabel() const
{
    return tr("System Shader");
}

const QStringList& OrvSnSystemShaderNode::kinds()
{
    using Manager = OrvLayerShaderManager;
    static const QStringList Kinds{Manager::nodeTagCurrentChannelShader(),
        Manager::nodeTagCurrentLayerAndBelowShader(), Manager::nodeTagCurrentLayerShader(),
        Manager::nodeTagCurrentComponentShader(), Manager::nodeTagCurrentMaterialProxyShader(),
        Manager::nodeTagCurrentMaterialShader()};
    return Kinds;
}

#include "moc_OrvSnSystemShaderNode.cpp"
