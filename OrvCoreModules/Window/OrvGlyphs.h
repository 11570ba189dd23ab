#pragma once

#include <QtGui/QColor>

class QIcon;
class QPainter;
class QRectF;

/// The few signs of the window's own furniture, drawn as shapes so that they are crisp at any size and follow
/// the colours of the style.
class OrvGlyphs {
public:
    enum Glyph { Close, Float, Dock, Pin, Unpin, Help, Strip };

    static QIcon icon(Glyph Sign);
    static void paint(QPainter* pPainter, const QRectF& Rect, Glyph Sign, const QColor& Color);
};
