#pragma once

#include "OrvCore/Network/OrvShaderNetworkUtils.h"

/// Questions about layers that stand in several channels of a shader.
namespace OrvMultiChannelLayerUtils {

/// Collects the shader nodes downstream of a node.
class ORVCORE_EXPORT DownstreamShaders : public OrvShaderNetworkUtils::OrvNodeWalker::Visitor {
public:
    OrvShaderNetworkUtils::OrvNodeWalker::Direction direction() const override
    {
        return OrvShaderNetworkUtils::OrvNodeWalker::Downstream;
    }
    bool visit(OrvSnBaseNode* pNode) override;

    const QVector<OrvSnBaseNode*>& shaderNodes() const { return m_ShaderNodes; }

private:
    QVector<OrvSnBaseNode*> m_ShaderNodes;
};

} // namespace OrvMultiChannelLayerUtils
