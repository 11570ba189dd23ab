#include "OrvCore/Network/OrvSnNames.h"

namespace OrvSnNames {
const QString Base = QStringLiteral("Base");
const QString Over = QStringLiteral("Over");
const QString Mask = QStringLiteral("Mask");
const QString Input = QStringLiteral("Input");
const QString ShaderInputTag = QStringLiteral("_shaderInput");
const QString ShaderTag = QStringLiteral("_shader");
const QString StackShaderTag = QStringLiteral("_stackShader");
const QString AdjustmentStackTopTag = QStringLiteral("_adjustmentStackTop");
const QString AdjustmentStackBottomTag = QStringLiteral("_adjustmentStackBottom");
const QString MaterialShaderInputTag = QStringLiteral("_materialShaderInput");
const QString MaterialTag = QStringLiteral("_material");
const QString GroupTag = QStringLiteral("_group");
}

namespace OrvMergeAttributes {
const QString BlendMode = QStringLiteral("BlendMode");
const QString Amount = QStringLiteral("Amount");
const QString AmountEnabled = QStringLiteral("AmountEnabled");
const QString AdvancedEnabled = QStringLiteral("AdvancedEnabled");
const QString BlendOverRange = QStringLiteral("BlendOverRange");
const QString BlendBaseRange = QStringLiteral("BlendBaseRange");
const QString BlendChannels = QStringLiteral("BlendChannels");
const QString PassThrough = QStringLiteral("PassThrough");
const QString MaskEnabled = QStringLiteral("MaskEnabled");
const QString ColorTag = QStringLiteral("ColorTag");
const QString LayerCached = QStringLiteral("LayerCached");
const QString CrossChannelSharing = QStringLiteral("CrossChannelSharing");
const QString Stream = QStringLiteral("Stream");
}
