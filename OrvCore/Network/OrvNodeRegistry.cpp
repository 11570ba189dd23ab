#include "OrvCore/Network/OrvNodeRegistry.h"

#include "OrvCore/Channels/OrvSnShaderInputNode.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Network/OrvSnBakePointNode.h"
#include "OrvCore/Network/OrvSnBottomTransparencyNode.h"
#include "OrvCore/Network/OrvSnChannelInputNode.h"
#include "OrvCore/Network/OrvSnGraphNode.h"
#include "OrvCore/Network/OrvSnGraphOutputNode.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Network/OrvSnMultiChannelMergeNode.h"
#include "OrvCore/Network/OrvSnOperationNode.h"
#include "OrvCore/Network/OrvSnPassNode.h"
#include "OrvCore/Shaders/OrvShadingModel.h"
#include "OrvCore/Shaders/OrvSnShaderNode.h"
#include "OrvCore/Shelf/OrvSnCustomProceduralNode.h"

#include "OrvDdi/Engine/OrvOperationRegistry.h"

OrvNodeRegistry& OrvNodeRegistry::instance()
{
    static OrvNodeRegistry Registry;
    return Registry;
}

OrvNodeRegistry::OrvNodeRegistry()
{
    enter(QStringLiteral("Merge"), [] { return std::make_unique<OrvSnMergeNode>(); });
    enter(QStringLiteral("MultiChannelMerge"), [] { return std::make_unique<OrvSnMultiChannelMergeNode>(); });
    enter(QStringLiteral("ImageSet"), [] { return std::make_unique<OrvSnChannelInputNode>(); });
    enter(QStringLiteral("BottomTransparency"), [] { return std::make_unique<OrvSnBottomTransparencyNode>(); });
    enter(QStringLiteral("BakePoint"), [] { return std::make_unique<OrvSnBakePointNode>(); });
    enter(QStringLiteral("Pass"), [] { return std::make_unique<OrvSnPassNode>(); });
    enter(QStringLiteral("Graph"), [] { return std::make_unique<OrvSnGraphNode>(); });
    enter(QStringLiteral("GraphOutput"), [] { return std::make_unique<OrvSnGraphOutputNode>(); });
    enter(QStringLiteral("CustomProcedural"), [] { return std::make_unique<OrvSnCustomProceduralNode>(); });
    enter(QStringLiteral("ShaderInput"), [] { return std::make_unique<OrvSnShaderInputNode>(); });
    for (const OrvShadingModel* pModel : OrvShadingModel::all()) {
        enterShader(pModel->key(), pModel->isLayered() ? LayeredShader : StandaloneShader,
            [pModel] { return std::make_unique<OrvSnShaderNode>(*pModel); });
    }
    m_IsComplete = true;
}

void OrvNodeRegistry::enter(const QString& TypeName, Factory Make)
{
    m_Factories.insert(TypeName, std::move(Make));
    if (m_IsComplete)
        Q_EMIT OrvShaderNetworkManager::instance().registeredNodePopulationChanged();
}

void OrvNodeRegistry::enterShader(const QString& TypeName, ShaderUses Uses, Factory Make)
{
    m_Shaders.append({TypeName, Uses});
    enter(TypeName, std::move(Make));
}

QStringList OrvNodeRegistry::shaderTypes(ShaderUse Use) const
{
    QStringList Types;
    for (const auto& Shader : m_Shaders) {
        if (Shader.second.testFlag(Use))
            Types.append(Shader.first);
    }
    return Types;
}

std::unique_ptr<OrvSnBaseNode> OrvNodeRegistry::create(const QString& TypeName) const
{
    const auto Found = m_Factories.find(TypeName);
    if (Found != m_Factories.end())
        return Found.value()();
    const QString OperationPrefix = QStringLiteral("Operation/");
    if (!TypeName.startsWith(OperationPrefix))
        return nullptr;
    const OrvOperation* pOperation = OrvOperationRegistry::instance().find(TypeName.mid(OperationPrefix.size()));
    return pOperation ? std::make_unique<OrvSnOperationNode>(*pOperation) : nullptr;
}

std::unique_ptr<OrvSnBaseNode> OrvNodeRegistry::createFromMenuPath(const QString& MenuPath) const
{
    const OrvOperation* pOperation = OrvOperationRegistry::instance().findByMenuPath(MenuPath);
    return pOperation ? std::make_unique<OrvSnOperationNode>(*pOperation) : nullptr;
}
