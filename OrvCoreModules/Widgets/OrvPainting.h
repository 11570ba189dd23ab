#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"
#include "OrvDdi/Image/OrvColor.h"

#include <QtGui/QColor>

class QPainter;
class QPalette;
class QRectF;

/// What the widgets that paint themselves have in common.
namespace OrvPainting {

/// The two greys that stand for transparency.
void drawChecker(QPainter& Painter, const QRectF& Area);
/// A colour above the checker pattern.
void drawColor(QPainter& Painter, const QRectF& Area, const QColor& Color);
/// The thin line around fields, brighter for one with the keyboard focus.
QColor frameColor(const QPalette& Palette, bool Focused = false);
/// Text that is there, but of second rank.
ORVCOREMODULES_EXPORT QColor dimTextColor(const QPalette& Palette);
/// What the screen shows of a colour of the picker's colour space.
QColor screenColor(const OrvColor& PickerColor);

} // namespace OrvPainting
