#include "OrvCore/Shaders/OrvMultiChannelLayerUtils.h"

#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCore/Network/OrvSnNames.h"

bool OrvMultiChannelLayerUtils::DownstreamShaders::visit(OrvSnBaseNode* pNode)
{
    if (pNode->hasTag(OrvSnNames::ShaderTag))
        m_ShaderNodes.append(pNode);
    return true;
}
