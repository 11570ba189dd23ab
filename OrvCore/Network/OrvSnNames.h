#pragma once

#include "OrvCore/OrvCoreExport.h"

#include <QtCore/QString>

/// Names of inputs and tags that give the graph its meaning.
namespace OrvSnNames {
extern ORVCORE_EXPORT const QString Base, Over, Mask, Input;
extern ORVCORE_EXPORT const QString ShaderInputTag, ShaderTag, StackShaderTag, AdjustmentStackTopTag,
    AdjustmentStackBottomTag, MaterialShaderInputTag, MaterialTag, GroupTag;
}

/// Names of the user attributes of a merge node.
namespace OrvMergeAttributes {
extern ORVCORE_EXPORT const QString BlendMode, Amount, AmountEnabled, AdvancedEnabled, BlendOverRange, BlendBaseRange,
    BlendChannels, PassThrough, MaskEnabled, ColorTag, LayerCached, CrossChannelSharing, Stream;
}
