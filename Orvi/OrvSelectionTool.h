#pragma once

#include "OrvCore/Project/OrvSelectionArea.h"

#include "OrvDdi/Image/OrvUdimLayout.h"

#include <QtCore/QObject>
#include <QtCore/QPointF>
#include <QtGui/QPolygonF>

class OrvCanvasSelection;

/// Selects with the pointer, from pressing to releasing: a rectangle of whole pixels, or what a freely drawn
/// line encloses. Keys held when it is pressed say how that combines with what is selected; without any the
/// mode does. It knows no widget.
class OrvSelectionTool : public QObject {
    Q_OBJECT

public:
    enum Shape { Rectangle, Lasso };

    explicit OrvSelectionTool(OrvCanvasSelection* pSelection, QObject* pParent = nullptr);

    Shape shape() const { return m_Shape; }
    void setShape(Shape NewShape);
    OrvSelectionArea::Combination mode() const { return m_Mode; }
    void setMode(OrvSelectionArea::Combination Mode);
    /// Shift adds, Alt subtracts, both keep what is in both.
    static OrvSelectionArea::Combination combination(
        Qt::KeyboardModifiers Modifiers, OrvSelectionArea::Combination Mode);

    void begin(const QPointF& Point, const OrvUdimLayout& Layout, Qt::KeyboardModifiers Modifiers);
    void moveTo(const QPointF& Point);
    /// A press without a drag deselects, unless it was to combine.
    void end();
    void cancel();
    bool isSelecting() const { return !m_Points.isEmpty(); }
    /// What has been drawn so far, in the picture.
    QPainterPath draft() const;

Q_SIGNALS:
    void modeChanged();
    void draftChanged();

private:
    OrvCanvasSelection* m_pSelection;
    Shape m_Shape = Rectangle;
    OrvSelectionArea::Combination m_Mode = OrvSelectionArea::Replace;
    OrvSelectionArea::Combination m_Combination = OrvSelectionArea::Replace; ///< of the present gesture
    OrvUdimLayout m_Layout;
    QPolygonF m_Points; ///< start and end of a rectangle, all of a lasso
};
