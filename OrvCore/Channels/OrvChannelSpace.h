#pragma once

#include "OrvCore/OrvCoreExport.h"

#include <QtCore/QString>

class OrvImageSet;
class OrvInputStep;
class OrvShaderInput;
class OrvSnBaseNode;

/// In which colour space the numbers are that nodes yield. What a channel holds is blended as its images store it,
/// but for the curve of sRGB; whoever takes pixels out of a channel, or brings some in, converts them. The names are
/// always of usable spaces, ready for OrvColorManager.
namespace OrvChannelSpace {

/// Where there is no channel: linear.
ORVCORE_EXPORT QString ofChannel(const OrvShaderInput* pChannel);
/// A node's own result: as its channel's, but linear for what knows no channel (procedurals, lit pictures), and
/// for masks, whose values mean no colour.
ORVCORE_EXPORT QString ofNode(const OrvSnBaseNode* pNode);
/// What a node at this place is to yield so that its channel, or mask, can take it as it is.
ORVCORE_EXPORT QString around(const OrvSnBaseNode* pNode);
/// The stored values of images, their curve included.
ORVCORE_EXPORT QString ofImages(const OrvImageSet& Images);
/// The space that images keep whatever channel shows them, because a conversion left them out or other channels show
/// them too; their curve is undone. Empty for all others: they are in their channel's.
ORVCORE_EXPORT QString keptSpace(const OrvSnBaseNode* pImageNode);
/// Undoable.
ORVCORE_EXPORT void keepSpace(OrvSnBaseNode* pImageNode, const QString& Space);
/// Adds to a step what it takes to read another channel, a procedural, a lit picture or images that keep their
/// space; nothing where the numbers are in the reader's own, as those of layers are.
ORVCORE_EXPORT void describeStep(const OrvSnBaseNode* pSource, const QString& ReaderSpace, OrvInputStep& Step);
/// As a merge node, which the reader is, reads at an input.
ORVCORE_EXPORT void describeMergeStep(
    const OrvSnBaseNode* pMerge, const QString& InputName, const OrvSnBaseNode* pSource, OrvInputStep& Step);

} // namespace OrvChannelSpace
