#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

#include "OrvDdi/Image/OrvColor.h"

#include <QtWidgets/QWidget>

#include <array>

class OrvColorField;
class OrvSliderSpinBox;
class QLineEdit;
class QVBoxLayout;

/// Edits one colour by eye, by numbers or by its hexadecimal name. Its colours are in the picker's colour
/// space, as the user sees them; whoever opens it converts. It stands in a window or pops up, and keeps
/// nothing once closed.
class ORVCOREMODULES_EXPORT OrvColorPicker : public QWidget {
    Q_OBJECT

public:
    explicit OrvColorPicker(QWidget* pParent = nullptr, Qt::WindowFlags Flags = {});
    ~OrvColorPicker() override;

    const OrvColor& color() const { return m_Color; }
    void setAlphaShown(bool Shown);
    /// Opens as a popup next to a widget, inside the screen.
    void popupAt(const QWidget* pAnchor);

public Q_SLOTS:
    /// Sends no signal. A grey keeps the hue that is shown.
    void setColor(const OrvColor& Color);
    /// The colour to compare with and to go back to.
    void setOriginalColor(const OrvColor& Color);

Q_SIGNALS:
    void editBegun();
    void colorEdited(OrvColor Color);
    void editFinished();

protected:
    void paintEvent(QPaintEvent* pEvent) override;
    void mouseReleaseEvent(QMouseEvent* pEvent) override;
    void closeEvent(QCloseEvent* pEvent) override;

private:
    enum Component { Red, Green, Blue, Hue, Saturation, Value, Alpha, ComponentCount };
    void createSliders(QVBoxLayout* pLayout);
    void begin();
    void finish();
    void take(const OrvColor& Color);
    void takeFromFields();
    void takeFromSlider(Component Which, double Number);
    void takeFromHex();
    void followHsv(const OrvColor& Color);
    void showColor();
    QRect comparison() const;

    OrvColor m_Color, m_Original;
    qreal m_Hue = 0.0, m_Saturation = 0.0, m_Value = 0.0;
    OrvColorField *m_pSquare, *m_pStrip;
    std::array<OrvSliderSpinBox*, ComponentCount> m_Sliders{};
    QWidget* m_pComparison;
    QLineEdit* m_pHex;
    int m_OpenEdits = 0;
    bool m_AlphaShown = true;
};
