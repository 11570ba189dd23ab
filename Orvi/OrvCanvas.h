#pragma once

#include "Orvi/OrvCanvasActivity.h"
#include "Orvi/OrvCanvasLight.h"
#include "Orvi/OrvCanvasRenderer.h"
#include "Orvi/OrvCanvasSource.h"
#include "Orvi/OrvCanvasTiles.h"
#include "Orvi/OrvCanvasView.h"
#include "Orvi/OrvSelectionOutline.h"

#include <QtCore/QTimer>
#include <QtWidgets/QWidget>

class OrvCanvasTools;

/// The picture in the middle of the window: shows what the current shader shows, follows every edit region by
/// region, and takes the tools in hand. It owns what it shows with (view, tiles, renderer) and keeps nothing
/// of the document.
class OrvCanvas : public QWidget {
    Q_OBJECT

public:
    explicit OrvCanvas(OrvCanvasTools* pTools, QWidget* pParent = nullptr);
    ~OrvCanvas() override;

    /// Everything in view is up to date and nothing is being computed.
    bool isSettled() const;
    /// The user is told that something is being computed.
    bool showsActivity() const { return m_Activity.isShown(); }
    /// What computes, for those who need it to pause.
    OrvCanvasRenderer* renderer() { return &m_Renderer; }
    /// The light's handle, for commands.
    OrvCanvasLight* light() { return &m_Light; }
    double zoom() const { return m_View.zoom(); }
    QPointF toPicture(const QPointF& WidgetPoint) const;
    QPointF toWidget(const QPointF& PicturePoint) const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

public Q_SLOTS:
    void fit();
    void showActualSize();
    void zoomIn();
    void zoomOut();

protected:
    bool event(QEvent* pEvent) override;
    void paintEvent(QPaintEvent* pEvent) override;
    void resizeEvent(QResizeEvent* pEvent) override;
    void wheelEvent(QWheelEvent* pEvent) override;
    void mousePressEvent(QMouseEvent* pEvent) override;
    void mouseMoveEvent(QMouseEvent* pEvent) override;
    void mouseReleaseEvent(QMouseEvent* pEvent) override;
    void mouseDoubleClickEvent(QMouseEvent* pEvent) override;
    void tabletEvent(QTabletEvent* pEvent) override;
    void leaveEvent(QEvent* pEvent) override;
    void keyPressEvent(QKeyEvent* pEvent) override;
    void keyReleaseEvent(QKeyEvent* pEvent) override;
    void focusOutEvent(QFocusEvent* pEvent) override;
    void dragEnterEvent(QDragEnterEvent* pEvent) override;
    void dragLeaveEvent(QDragLeaveEvent* pEvent) override;
    void dropEvent(QDropEvent* pEvent) override;

private:
    enum class Gesture { None, Pan, Paint, PickColor, Select, MoveLight };

    void showSource();
    void onPieceReady(const OrvCanvasRenderer::Piece& Finished, const QImage& Pixels);
    void onInvalidated(const QRegion& Region);
    void requestMissing();
    void updateActivity();
    void zoomBy(double Factor, const QPointF& WidgetPoint);
    void pickColor(const QPointF& WidgetPoint);
    void beginTool(const QMouseEvent& Event);
    bool startsStroke(const QTabletEvent& Event) const;
    void movePointer(const QPointF& WidgetPoint, double Pressure);
    void finishGesture();
    void updateOutline();
    void stepOutline();
    void updateCursor();
    bool isOverLight() const;
    void showLightToolTip();
    QRect brushCursorRect(const QPointF& WidgetPoint) const;
    QSize deviceSize() const;
    QRect toWidgetRect(const QRectF& DeviceRect) const;
    QPointF toDevice(const QPointF& WidgetPoint) const { return WidgetPoint * devicePixelRatioF(); }

    OrvCanvasTools* m_pTools;
    OrvCanvasSource m_Source;
    OrvCanvasRenderer m_Renderer;
    OrvCanvasTiles m_Tiles;
    OrvCanvasView m_View;
    OrvCanvasLight m_Light;
    OrvCanvasActivity m_Activity;
    OrvSelectionOutline m_Outline;
    QTimer m_OutlineTimer;
    int m_OutlineStep = 0;

    Gesture m_Gesture = Gesture::None;
    QPointF m_Pointer; ///< in the widget
    bool m_PointerInside = false;
    bool m_PenPaints = false; ///< from a stroke's begin until the pen is lifted, cancelled or not
    bool m_SpaceHeld = false;
    bool m_DropHovers = false;
};
