#pragma once

#include "OrvCore/OrvCoreExport.h"

#include "OrvDdi/Image/OrvPixelFormat.h"
#include "OrvDdi/Image/OrvUdimLayout.h"

class OrvLayerStack;
class OrvShaderInput;
class OrvSnBaseNode;

/// How new images at a place are stored: size and tiles, the format of paint and that of masks. A value, read
/// from the channel around the place, or the usual settings where there is none.
struct ORVCORE_EXPORT OrvImageSettings {
    OrvUdimLayout Layout;
    OrvPixelFormat Paint, Mask;

    static OrvImageSettings ofChannel(const OrvShaderInput* pChannel);
    /// For a layer with this blend node, or what it holds.
    static OrvImageSettings ofLayer(const OrvSnBaseNode* pNode);
    /// For new layers of a stack; paint inside a mask is data with alpha.
    static OrvImageSettings ofStack(const OrvLayerStack* pStack);
};
