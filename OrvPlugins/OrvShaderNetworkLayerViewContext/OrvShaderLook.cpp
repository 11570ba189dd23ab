#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderLook.h"

#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCore/Network/OrvSnNames.h"
#include "OrvCore/Shaders/OrvLayerShader.h"
#include "OrvCore/Shaders/OrvLayerShaderManager.h"
#include "OrvCoreModules/Window/OrvIcon.h"

#include <QtCore/QCoreApplication>

namespace {

struct SystemLook {
    QString Tag;
    const char* pIcon;
    const char* pText;
};

const char TextOfOthers[] = QT_TRANSLATE_NOOP("OrvShaderLook", "Shows what is current.");

/// Null for a shader of the user's; the first tag that the node carries decides.
const SystemLook* systemLook(const OrvSnBaseNode* pNode)
{
    using Manager = OrvLayerShaderManager;
    static const SystemLook Looks[] = {
        {Manager::nodeTagCurrentChannelShader(), "ViewCurrentChannel.16x16.png",
            QT_TRANSLATE_NOOP("OrvShaderLook", "Shows the current channel as it is.")},
        {Manager::nodeTagCurrentLayerAndBelowShader(), "ViewCurrentLayerAndBelow1.16x16.png",
            QT_TRANSLATE_NOOP("OrvShaderLook", "Shows the current layer and everything below it.")},
        {Manager::nodeTagCurrentLayerShader(), "ViewCurrentLayer1.16x16.png",
            QT_TRANSLATE_NOOP("OrvShaderLook", "Shows the current layer alone.")},
        {Manager::nodeTagCurrentComponentShader(), "ViewCurrentPaint.16x16.png",
            QT_TRANSLATE_NOOP(
                "OrvShaderLook", "Shows what you paint on: the pixels or the mask of the current layer.")},
        {Manager::nodeTagCurrentMaterialProxyShader(), "ViewCurrentMaterial.16x16.svg",
            QT_TRANSLATE_NOOP("OrvShaderLook", "Shows the shader of your own that you chose last, lit.")},
        {Manager::nodeTagCurrentMaterialShader(), "ViewCurrentMaterial.16x16.svg", TextOfOthers},
    };
    for (const SystemLook& Look : Looks) {
        if (pNode->hasTag(Look.Tag))
            return &Look;
    }
    return nullptr;
}

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

QIcon OrvShaderLook::icon(const OrvSnBaseNode* pNode)
{
    const SystemLook* pSystem = systemLook(pNode);
    const char* pFile = pSystem ? pSystem->pIcon
        : takesMaterials(pNode) ? "Materials.16x16.png"
                                : "lighting_flat.16x16.png";
    return OrvIcon::createIconFromFilename(QString::fromLatin1(pFile));
}

QString OrvShaderLook::whatItShows(const OrvSnBaseNode* pNode)
{
    const SystemLook* pSystem = systemLook(pNode);
    return QCoreApplication::translate("OrvShaderLook", pSystem ? pSystem->pText : TextOfOthers);
}
