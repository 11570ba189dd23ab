#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputConversion.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Layers/OrvEditObstacle.h"
#include "OrvCore/Object/OrvDebug.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewUtils.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputActionsConvertDialog.h"

namespace {

/// Values are widened before their colour space changes and narrowed after it.
bool isDepthConvertedFirst(GLenum From, GLenum To)
{
    switch (From) {
    case GL_UNSIGNED_BYTE:
        return true;
    case GL_FLOAT:
        return false;
    case GL_HALF_FLOAT:
        return To == GL_FLOAT;
    default:
        OrvDebug("OrvShaderInputActions", __LINE__,
            QStringLiteral("[ !! ] Unknown type : 0x%1").arg(From, 0, 16), false, false);
        return true;
    }
}

} // namespace

bool OrvShaderInputConversion::convert(
    OrvShaderInput* pShaderInput, const OrvShaderInputActionsConvertDialog& Wanted)
{
    const int Option = Wanted.choice() == OrvShaderInputActionsConvertDialog::ConvertAll
        ? OrvShaderInput::AllImages
        : OrvShaderInput::FreeImages;
    if (Option == OrvShaderInput::FreeImages && !pShaderInput->isModifiable()) {
        OrvLayerViewUtils::tell(OrvEditObstacle::of(pShaderInput));
        return false;
    }
    const GLenum Depth = Wanted.depth();
    const bool OtherDepth = Depth != pShaderInput->imageSetDepth();
    const bool DepthFirst = OtherDepth && isDepthConvertedFirst(pShaderInput->imageSetDepth(), Depth);
    if (DepthFirst && !pShaderInput->convertDepthTo(Depth, Option))
        return false;

    const OrvColorSpaceConfig& Color = Wanted.colorSpaceConfig();
    if (Color.colorSpace() != pShaderInput->colorSpaceConfig().colorSpace()
        && !pShaderInput->convertColorSpaceTo(Color.colorSpace(), Option))
        return false;
    pShaderInput->setColorSpaceConfig(Color, true);
    const OrvColorSpaceConfig& Scalar = Wanted.scalarColorSpaceConfig();
    if (Scalar.colorSpace() != pShaderInput->scalarColorSpaceConfig().colorSpace()
        && !pShaderInput->convertScalarColorSpaceTo(Scalar.colorSpace(), Option))
        return false;
    pShaderInput->setScalarColorSpaceConfig(Scalar, true);

    return DepthFirst || !OtherDepth || pShaderInput->convertDepthTo(Depth, Option);
}
