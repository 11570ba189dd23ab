#pragma once

#include <QtCore/Qt>

class QColor;
class QPainter;
class QRect;
class QStyleOption;
class QStyleOptionComplex;
class QStyleOptionHeader;
class QStyleOptionProgressBar;
class QStyleOptionSlider;
class QStyleOptionTab;

/// The shapes that the program's style is made of. Each draws one part of a widget from its style option and
/// leaves the painter as it was.
namespace OrvStyleShapes {

constexpr int FrameRadius = 3;

void drawButtonPanel(QPainter* pPainter, const QStyleOption* pOption, bool IsDefault);
void drawToolButtonPanel(QPainter* pPainter, const QStyleOption* pOption);
void drawToolButtonFocus(QPainter* pPainter, const QRect& Rect);
/// Of line edits, spin boxes and editable combo boxes.
void drawFieldFrame(QPainter* pPainter, const QStyleOption* pOption, bool Filled);
void drawCheckBox(QPainter* pPainter, const QStyleOption* pOption);
void drawRadioButton(QPainter* pPainter, const QStyleOption* pOption);
void drawArrow(QPainter* pPainter, const QRect& Rect, Qt::ArrowType Direction, const QColor& Color);
/// The triangle before a row that has children.
void drawBranch(QPainter* pPainter, const QStyleOption* pOption);
void drawTab(QPainter* pPainter, const QStyleOptionTab* pOption);
void drawHeaderSection(QPainter* pPainter, const QStyleOptionHeader* pOption);
void drawProgress(QPainter* pPainter, const QStyleOptionProgressBar* pOption);
void drawScrollBar(QPainter* pPainter, const QStyleOptionSlider* pOption, const QRect& Slider);
void drawSlider(
    QPainter* pPainter, const QStyleOptionSlider* pOption, const QRect& Groove, const QRect& Handle);
void drawSplitterHandle(QPainter* pPainter, const QStyleOption* pOption);

} // namespace OrvStyleShapes
