#pragma once

#include "OrvCore/Shaders/OrvFlatShading.h"

#include <QtCore/QObject>
#include <QtCore/QPointF>

class OrvCanvasView;
class QPainter;

/// The handle on the canvas by which the light above a lit picture is moved, raised and dimmed. A light that
/// stands out of view is held at the canvas's edge, so that it can always be fetched. The canvas owns it and
/// hands it the pointer; the light itself is OrvFlatShading's. The unit of all points is a device pixel of
/// the viewport.
class OrvCanvasLight : public QObject {
    Q_OBJECT

public:
    explicit OrvCanvasLight(QObject* pParent = nullptr);

    /// The picture's tiles; an invalid layout means that no lit picture is shown.
    void setPicture(const OrvUdimLayout& Layout);
    bool isShown() const { return m_IsWanted && m_Layout.isValid(); }
    /// Where the handle is drawn.
    QPointF place(const OrvCanvasView& View, double PixelRatio) const;
    bool isAt(const QPointF& Point, const OrvCanvasView& View, double PixelRatio) const;

    void beginDrag(const QPointF& Point, const OrvCanvasView& View, double PixelRatio);
    void dragTo(const QPointF& Point, const OrvCanvasView& View);
    void endDrag() { m_IsDragged = false; }
    /// Puts the light back where it was.
    void cancelDrag();
    /// Raises and lowers it; with the control key, brightens and dims it.
    void turnWheel(int Units, Qt::KeyboardModifiers Modifiers);

    void draw(QPainter& Painter, const OrvCanvasView& View, double PixelRatio, bool IsUnderPointer) const;
    /// What can be done with it, and how it stands.
    QString toolTip() const;

public Q_SLOTS:
    /// For users who want to see the picture alone; stays so from one start to the next.
    void toggleHandle();
    void resetLight();

Q_SIGNALS:
    void changed();

private:
    OrvUdimLayout m_Layout;
    OrvFlatShading::Light m_Before; ///< the drag
    QPointF m_Grip; ///< from the pointer to the light
    bool m_IsDragged = false;
    bool m_IsWanted = true;
};
