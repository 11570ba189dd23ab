#pragma once

#include "OrvDdi/Engine/OrvGegl.h"
#include "OrvDdi/Engine/OrvOperationRegistry.h"

/// Translates between the engine's properties and what the rest of the program knows as parameters.
namespace OrvOperationParameters {

/// False for properties that users cannot set in an editor: buffers, formats, curves, paths of points.
bool describe(GParamSpec* pSpec, OrvOperationParameter& Parameter);
/// False for an unknown property or a value that cannot be converted. Numbers are brought into the property's
/// range.
bool set(GeglNode* pNode, const QString& Name, const QVariant& Value);

} // namespace OrvOperationParameters
