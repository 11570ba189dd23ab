#pragma once

class OrvBrush;
class OrvCanvasSource;
class OrvCanvasView;
class QFont;
class QPainter;
class QPointF;
class QRect;

/// What is drawn around and above the canvas's picture: the checker pattern beneath it, tile borders with
/// their numbers, the picture's name, the brush's outline. Stateless; the painter's unit is a device pixel.
namespace OrvCanvasOverlay {

void drawBackground(QPainter& Painter, const QRect& Viewport);
/// Where the picture is transparent; limits the painter to the tiles of the picture.
void drawChecker(QPainter& Painter, const OrvCanvasSource& Source, const OrvCanvasView& View);
void drawTileBorders(
    QPainter& Painter, const OrvCanvasSource& Source, const OrvCanvasView& View, double PixelRatio);
/// Dark plates for words, one below the other at the upper left.
QRect chip(int Line, int WidthOfWords, double PixelRatio);
QFont chipFont(double PixelRatio);
void drawChip(QPainter& Painter, const QRect& Chip, double PixelRatio);
/// Name, size, depth and zoom, on the first plate.
void drawTitle(
    QPainter& Painter, const OrvCanvasSource& Source, const OrvCanvasView& View, double PixelRatio);
/// What to do when there is nothing to show.
void drawHint(QPainter& Painter, const QRect& Viewport, double PixelRatio);
void drawDropFrame(QPainter& Painter, const QRect& Viewport, double PixelRatio);
void drawBrush(
    QPainter& Painter, const OrvBrush& Brush, const QPointF& Centre, double Zoom, double PixelRatio);

} // namespace OrvCanvasOverlay
