#pragma once

#include "OrvDdi/Engine/OrvGegl.h"

/// Small operations that work pixel by pixel, made by us because the engine has none like them. They describe
/// their parameters as the engine's own do, so that the registry needs to know nothing about them.
namespace OrvPointOperations {

constexpr char LevelsName[] = "orv:levels";
constexpr char HueSaturationValueName[] = "orv:hue-saturation-value";
constexpr char ConicalGradientName[] = "orv:conical-gradient";
constexpr char ScaleAndOffsetName[] = "orv:scale-and-offset";

void registerTypes();

} // namespace OrvPointOperations
