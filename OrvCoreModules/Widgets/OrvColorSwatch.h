#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

#include "OrvDdi/Color/OrvColorSpaceDefaults.h"
#include "OrvDdi/Image/OrvColor.h"

#include <QtCore/QPointer>
#include <QtWidgets/QWidget>

class OrvColorPicker;

/// One colour with the colour space it is expressed in, above a checker pattern. A click opens a picker;
/// colours can be dragged from swatch to swatch. It holds its colour alone: who listens puts it into the
/// document.
class ORVCOREMODULES_EXPORT OrvColorSwatch : public QWidget {
    Q_OBJECT

public:
    explicit OrvColorSwatch(QWidget* pParent = nullptr);
    ~OrvColorSwatch() override;

    const OrvColor& color() const { return m_Color; }
    OrvColorSpaceDefaults::ColorSpaceTarget target() const { return m_Target; }
    /// Sends no signal; an open picker follows.
    void setColor(const OrvColor& Color);
    void setColor(const OrvColor& Color, OrvColorSpaceDefaults::ColorSpaceTarget Target);

    void setDrawBorder(bool DrawBorder);
    void setPickingEnabled(bool Enabled) { m_PickingEnabled = Enabled; }
    void setAcceptsColorDrops(bool Accepts) { setAcceptDrops(Accepts); }
    /// A click sends colorChanged with the colour as it is.
    void setEmitOnClick(bool EmitOnClick) { m_EmitOnClick = EmitOnClick; }
    /// Shows nothing but the checker pattern: transparency itself.
    void setCheckerOnly(bool CheckerOnly);
    void setAlphaShown(bool Shown) { m_AlphaShown = Shown; }
    /// A text of its own in place of the colour's numbers.
    void setToolTipOverride(const QString& ToolTip) { m_ToolTipOverride = ToolTip; }

    /// Null while none is open.
    OrvColorPicker* picker() const;
    QSize sizeHint() const override;

public Q_SLOTS:
    void openPicker();

Q_SIGNALS:
    /// The user chose the colour: at the end of each gesture in the picker, by a drop, or by a click.
    void colorChanged(OrvColor Color, OrvColorSpaceDefaults::ColorSpaceTarget Target);
    /// A gesture in the picker, and every colour on its way.
    void editBegun();
    void colorEdited(OrvColor Color);
    void editFinished();

protected:
    bool event(QEvent* pEvent) override;
    void paintEvent(QPaintEvent* pEvent) override;
    void mousePressEvent(QMouseEvent* pEvent) override;
    void mouseMoveEvent(QMouseEvent* pEvent) override;
    void mouseReleaseEvent(QMouseEvent* pEvent) override;
    void keyPressEvent(QKeyEvent* pEvent) override;
    void dragEnterEvent(QDragEnterEvent* pEvent) override;
    void dropEvent(QDropEvent* pEvent) override;

private:
    void click();
    void startDrag();
    void takeFromPicker(const OrvColor& Color);
    OrvColor pickerColor() const;
    QString description() const;

    OrvColor m_Color;
    OrvColorSpaceDefaults::ColorSpaceTarget m_Target = OrvColorSpaceDefaults::Picker;
    QPointer<OrvColorPicker> m_pPicker;
    QString m_ToolTipOverride;
    QPoint m_PressPosition;
    bool m_Pressed = false;
    bool m_DrawBorder = true;
    bool m_PickingEnabled = true;
    bool m_EmitOnClick = false;
    bool m_CheckerOnly = false;
    bool m_AlphaShown = true;
};
