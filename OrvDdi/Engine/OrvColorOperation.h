#pragma once

#include "OrvDdi/Engine/OrvGegl.h"

class QString;

/// The operation that brings computed pixels from one colour space to another. Conversions that are but a matrix
/// work on premultiplied pixels as they come. It never touches alpha.
namespace OrvColorOperation {

constexpr char Name[] = "orv:color";

void registerType();
/// To be called once, before anything is computed.
void setSpaces(GeglNode* pNode, const QString& From, const QString& To);

} // namespace OrvColorOperation
