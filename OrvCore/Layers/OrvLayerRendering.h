#pragma once

#include "OrvCore/OrvCoreExport.h"

#include "OrvDdi/Files/OrvProgress.h"
#include "OrvDdi/Image/OrvImageBuffer.h"

class OrvSnBaseNode;
class OrvSnMergeNode;
class OrvUdimLayout;

/// Results of the document's nodes as pixels to keep: what merging, flattening, baking and converting layers
/// put in place of what was computed. It changes no node. Every operation works piece by piece, so that the
/// engine is never taken for long, and returns a null buffer when it was cancelled.
namespace OrvLayerRendering {

/// What the node yields; a null node, or one that yields nothing, is transparent. Colours are stored in the
/// given space (see OrvChannelSpace::storedAround()), here and below.
ORVCORE_EXPORT OrvImageBuffer render(const OrvSnBaseNode* pNode, const OrvUdimLayout& Layout,
    const OrvPixelFormat& Format, const QString& Space);
/// What the node reads at an input, brought to the size of its channel.
ORVCORE_EXPORT OrvImageBuffer renderInput(const OrvSnBaseNode* pNode, const QString& InputName,
    const OrvUdimLayout& Layout, const OrvPixelFormat& Format, const QString& Space);
/// What it reads as its mask.
ORVCORE_EXPORT OrvImageBuffer renderMask(
    const OrvSnBaseNode* pNode, const OrvUdimLayout& Layout, const OrvPixelFormat& Format);
/// How much of it is covered, in a scalar format.
ORVCORE_EXPORT OrvImageBuffer renderAlphaOfInput(const OrvSnBaseNode* pNode, const QString& InputName,
    const OrvUdimLayout& Layout, const OrvPixelFormat& Format);
/// A layer's content as its mask lets it through.
ORVCORE_EXPORT OrvImageBuffer renderMasked(const OrvSnMergeNode* pMerge, const OrvUdimLayout& Layout,
    const OrvPixelFormat& Format, const QString& Space);
/// What, laid over the lower node's result, looks like the upper one's; transparent where they are the same.
/// Exact where the lower one is opaque, or where colours outside 0 to 1 are not needed or the format holds
/// them.
ORVCORE_EXPORT OrvImageBuffer renderDifference(const OrvSnBaseNode* pUpper, const OrvSnBaseNode* pLower,
    const OrvUdimLayout& Layout, const OrvPixelFormat& Format, const QString& Space);

/// Who shows how far long work is, and may cancel it; an empty function for nobody. It must not edit the
/// document.
ORVCORE_EXPORT void setProgress(const OrvProgress& Progress);
/// Tells it; false when the work is to stop. The last step of all ends the report.
ORVCORE_EXPORT bool step(int Done, int Total);

} // namespace OrvLayerRendering
