#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

#include <QtWidgets/QProxyStyle>

/// The program's look: one dark, quiet style over Fusion, drawn with lines and shapes only, so that it is
/// crisp at any scale. It draws what Fusion draws too light or too heavy and leaves the rest to it.
class ORVCOREMODULES_EXPORT OrvCustomFusionStyle : public QProxyStyle {
    Q_OBJECT

public:
    OrvCustomFusionStyle();

    /// The colours of the house, also for widgets that paint themselves.
    static QColor windowColor();
    static QColor baseColor();
    static QColor textColor();
    static QColor borderColor();
    static QColor accentColor();

    QPalette standardPalette() const override;
    void polish(QPalette& Palette) override;
    void polish(QApplication* pApplication) override;
    /// Gives message boxes room for their titles, to which the window system adds the program's name.
    void polish(QWidget* pWidget) override;
    using QProxyStyle::polish;

    int pixelMetric(PixelMetric Metric, const QStyleOption* pOption = nullptr,
        const QWidget* pWidget = nullptr) const override;
    int styleHint(StyleHint Hint, const QStyleOption* pOption = nullptr, const QWidget* pWidget = nullptr,
        QStyleHintReturn* pReturn = nullptr) const override;
    QSize sizeFromContents(ContentsType Type, const QStyleOption* pOption, const QSize& Size,
        const QWidget* pWidget) const override;
    QRect subControlRect(ComplexControl Control, const QStyleOptionComplex* pOption, SubControl Sub,
        const QWidget* pWidget) const override;
    void drawPrimitive(PrimitiveElement Element, const QStyleOption* pOption, QPainter* pPainter,
        const QWidget* pWidget = nullptr) const override;
    void drawControl(ControlElement Element, const QStyleOption* pOption, QPainter* pPainter,
        const QWidget* pWidget = nullptr) const override;
    void drawComplexControl(ComplexControl Control, const QStyleOptionComplex* pOption, QPainter* pPainter,
        const QWidget* pWidget = nullptr) const override;
};
