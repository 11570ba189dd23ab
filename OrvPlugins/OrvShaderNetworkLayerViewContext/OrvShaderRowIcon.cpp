#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderRowIcon.h"

#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCore/Network/OrvSnNames.h"
#include "OrvCore/Shaders/OrvLayerShader.h"
#include "OrvCore/Shaders/OrvLayerShaderManager.h"
#include "OrvCoreModules/Window/OrvIcon.h"

#include <QtCore/QPair>

namespace {

bool takesMaterials(const OrvSnBaseNode* pNode)
{
    const OrvLayerShader* pShader = OrvLayerShaderManager::instance().getLayerShader(pNode);
    if (!pShader)
        return false;
    for (const QString& InputName : pShader->inputNames(0)) {
        if (pShader->hasInputTag(InputName, OrvSnNames::MaterialShaderInputTag))
            return true;
    }
    return false;
}

} // namespace

QIcon OrvShaderRowIcon::of(const OrvSnBaseNode* pNode)
{
    using Manager = OrvLayerShaderManager;
    // The first tag that the node carries decides.
    const QPair<QString, const char*> IconsByTag[]
        = {{Manager::nodeTagCurrentChannelShader(), "ViewCurrentChannel.16x16.png"},
            {Manager::nodeTagCurrentLayerAndBelowShader(), "ViewCurrentLayerAndBelow1.16x16.png"},
            {Manager::nodeTagCurrentLayerShader(), "ViewCurrentLayer1.16x16.png"},
            {Manager::nodeTagCurrentComponentShader(), "ViewCurrentPaint.16x16.png"},
            {Manager::nodeTagCurrentMaterialProxyShader(), "ViewCurrentMaterial.16x16.svg"},
            {Manager::nodeTagCurrentMaterialShader(), "ViewCurrentMaterial.16x16.svg"}};
    const char* pFile = takesMaterials(pNode) ? "Materials.16x16.png" : "lighting_flat.16x16.png";
    for (const auto& Candidate : IconsByTag) {
        if (pNode->hasTag(Candidate.first)) {
            pFile = Candidate.second;
            break;
        }
    }
    return OrvIcon::createIconFromFilename(QString::fromLatin1(pFile));
}
