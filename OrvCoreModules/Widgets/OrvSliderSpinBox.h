#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

#include <QtCore/QPointer>
#include <QtCore/QTimer>
#include <QtWidgets/QWidget>

class OrvInPlaceEdit;

/// The number editor of all properties: drag to scrub, click to type, wheel and arrow keys to step. The range
/// to drag in may be narrower than the range of what may be typed. Between editBegun and editFinished lies
/// one edit of the user, be it a whole drag or a burst of steps, so that whoever listens can make it one undo
/// step.
class ORVCOREMODULES_EXPORT OrvSliderSpinBox : public QWidget {
    Q_OBJECT

public:
    explicit OrvSliderSpinBox(QWidget* pParent = nullptr);
    ~OrvSliderSpinBox() override;

    double value() const { return m_Value; }
    double minimum() const { return m_Minimum; }
    double maximum() const { return m_Maximum; }
    /// What may be typed at all.
    void setRange(double Minimum, double Maximum);
    /// What the width of the editor stands for; an empty one means that dragging counts steps.
    void setUiRange(double Minimum, double Maximum);
    /// Above 1, small values get more of the width.
    void setUiGamma(double Gamma);
    void setStep(double Step) { m_Step = Step; }
    /// 0 for whole numbers; as many as the user wants sliders to show, unless set.
    void setDecimals(int Decimals);
    int decimals() const { return m_Decimals; }
    void setSuffix(const QString& Suffix);
    /// Shown and typed numbers are the value times the factor (100 for percent). Decimals count in what is
    /// shown.
    void setDisplayFactor(double Factor);
    /// Going past one end comes in at the other (angles, hues).
    void setWrapping(bool Wrapping) { m_Wrapping = Wrapping; }
    /// Short text in front of the number.
    void setPrefix(const QString& Prefix);

    bool isTyping() const;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

public Q_SLOTS:
    /// Sends no signal.
    void setValue(double Value);
    /// Turns into a line edit.
    void type();

Q_SIGNALS:
    void editBegun();
    void valueEdited(double Value);
    void editFinished();

protected:
    bool event(QEvent* pEvent) override;
    void paintEvent(QPaintEvent* pEvent) override;
    void mousePressEvent(QMouseEvent* pEvent) override;
    void mouseMoveEvent(QMouseEvent* pEvent) override;
    void mouseReleaseEvent(QMouseEvent* pEvent) override;
    void wheelEvent(QWheelEvent* pEvent) override;
    void keyPressEvent(QKeyEvent* pEvent) override;
    void focusOutEvent(QFocusEvent* pEvent) override;
    void changeEvent(QEvent* pEvent) override;

private Q_SLOTS:
    void onTypingEnded(QString Text, bool Committed);

private:
    bool hasUiRange() const { return m_UiMaximum > m_UiMinimum; }
    double shareFromValue(double Value) const;
    double valueFromShare(double Share) const;
    double bounded(double Value) const;
    QString numberText() const;
    void begin();
    void finish();
    void take(double Value);
    void step(double Steps);

    double m_Value = 0.0, m_Minimum = 0.0, m_Maximum = 1.0, m_UiMinimum = 0.0, m_UiMaximum = 1.0,
           m_Step = 0.01;
    double m_Factor = 1.0, m_UiGamma = 1.0;
    int m_Decimals;
    QString m_Prefix, m_Suffix;
    QPointer<OrvInPlaceEdit> m_pEditor;
    QString m_TextBefore; ///< what typing began with
    QTimer m_BurstEnd; ///< steps that follow each other closely are one edit
    QPoint m_PressPosition;
    double m_DragValue = 0.0; ///< unrounded
    double m_ValueBefore = 0.0;
    int m_DragX = 0;
    enum class Gesture { None, Pressed, Dragging, Burst } m_Gesture = Gesture::None;
    bool m_Wrapping = false;
};
