#pragma once

#include "OrvCore/OrvCoreExport.h"

#include "OrvDdi/Image/OrvPixelFormat.h"
#include "OrvDdi/Image/OrvUdimLayout.h"

#include <QtCore/QString>

class OrvLayerStack;
class OrvShaderInput;
class OrvSnBaseNode;

/// How new images at a place are stored: size and tiles, the format of paint and that of masks. A value, read
/// from the channel around the place, or the usual settings where there is none.
struct ORVCORE_EXPORT OrvImageSettings {
    OrvUdimLayout Layout;
    OrvPixelFormat Paint, Mask;
    QString PaintSpace; ///< the colour space of paint, its curve included; empty: as its curve says

    static OrvImageSettings ofChannel(const OrvShaderInput* pChannel);
    /// For a layer with this blend node, or what it holds.
    static OrvImageSettings ofLayer(const OrvSnBaseNode* pNode);
    /// For new layers of a stack; paint inside a mask is data with alpha.
    static OrvImageSettings ofStack(const OrvLayerStack* pStack);

private:
    void takeDataAsPaint();
};
