#pragma once

#include "OrvCore/OrvCoreExport.h"

#include <QtCore/QString>

class OrvImageSet;
class OrvInputStep;
class OrvShaderInput;
class OrvSnBaseNode;

/// In which colour space the numbers are that nodes yield. What a channel holds is blended in its working
/// space; its images are in the space in which they are stored, but for the curve of sRGB, and are converted
/// where they are read. Whoever takes pixels out of a channel, or brings some in, converts them too. The
/// names are always of usable spaces, ready for OrvColorManager.
namespace OrvChannelSpace {

/// What the channel yields: its working space. Where there is no channel: linear.
ORVCORE_EXPORT QString ofChannel(const OrvShaderInput* pChannel);
/// A node's own result: as its channel's, but as stored for images, linear for what knows no channel
/// (procedurals, lit pictures), and linear for masks, whose values mean no colour.
ORVCORE_EXPORT QString ofNode(const OrvSnBaseNode* pNode);
/// What a node at this place is to yield so that its channel, or mask, can take it as it is.
ORVCORE_EXPORT QString around(const OrvSnBaseNode* pNode);
/// What a node reads at an input, once it is converted.
ORVCORE_EXPORT QString ofInput(const OrvSnBaseNode* pReader, const QString& InputName);
/// Images of a channel, their curve undone.
ORVCORE_EXPORT QString storedIn(const OrvShaderInput* pChannel);
/// New images at this place, their curve undone.
ORVCORE_EXPORT QString storedAround(const OrvSnBaseNode* pNode);
/// The stored values of images, their curve included.
ORVCORE_EXPORT QString ofImages(const OrvImageSet& Images);
/// The space that images keep whatever channel shows them, because a conversion left them out or other
/// channels show them too; their curve is undone. Empty for all others: they are in their channel's.
ORVCORE_EXPORT QString keptSpace(const OrvSnBaseNode* pImageNode);
/// Undoable.
ORVCORE_EXPORT void keepSpace(OrvSnBaseNode* pImageNode, const QString& Space);
/// Adds to a step what it takes to read images, another channel, a procedural or a lit picture; nothing where
/// the numbers are in the reader's own space, as those of layers are.
ORVCORE_EXPORT void describeStep(
    const OrvSnBaseNode* pReader, const QString& InputName, const OrvSnBaseNode* pSource, OrvInputStep& Step);

} // namespace OrvChannelSpace
