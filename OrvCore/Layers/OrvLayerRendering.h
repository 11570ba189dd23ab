#pragma once

#include "OrvCore/OrvCoreExport.h"

#include "OrvDdi/Image/OrvImageBuffer.h"

class OrvSnBaseNode;
class OrvUdimLayout;

/// Results of the document's nodes as pixels to keep: what merging, flattening and converting layers put in
/// place of what was computed. It changes no node.
namespace OrvLayerRendering {

/// What the node yields; a null node, or one that yields nothing, is transparent.
ORVCORE_EXPORT OrvImageBuffer render(
    const OrvSnBaseNode* pNode, const OrvUdimLayout& Layout, const OrvPixelFormat& Format);
/// Only what the upper node's result differs in from the lower one's: laid over that, it looks like the upper
/// one.
ORVCORE_EXPORT OrvImageBuffer renderDifference(const OrvSnBaseNode* pUpper, const OrvSnBaseNode* pLower,
    const OrvUdimLayout& Layout, const OrvPixelFormat& Format);

} // namespace OrvLayerRendering
