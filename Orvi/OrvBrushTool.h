#pragma once

#include "Orvi/OrvBrush.h"

#include "OrvDdi/Image/OrvUdimLayout.h"

#include <QtCore/QObject>
#include <QtCore/QPointF>

#include <memory>

class OrvBrushStroke;
class OrvCanvasSelection;
class OrvSnChannelInputNode;

/// The brush in the user's hand: its settings, and the stroke being painted on the current component. It
/// refuses where nothing may be painted and says why on the status line, and it paints within the selection
/// when there is one. It knows no widget.
class OrvBrushTool : public QObject {
    Q_OBJECT

public:
    explicit OrvBrushTool(const OrvCanvasSelection* pSelection, QObject* pParent = nullptr);
    ~OrvBrushTool() override;

    const OrvBrush& brush() const { return m_Brush; }
    void setBrush(const OrvBrush& Brush);

    /// What a stroke would be painted on; null, with a reason, where there is nothing or it must not be
    /// changed.
    static OrvSnChannelInputNode* target(QString& Reason);

    /// Starts a stroke at a point of the picture; one that goes on from the end of the last makes a straight
    /// line, as broad as a full pressure makes it. The picture has the layout of the layer's channel where
    /// none is given. Mice press fully.
    bool begin(const QPointF& Point, bool FromLastEnd = false, const OrvUdimLayout& Picture = {},
        double Pressure = 1.0);
    void moveTo(const QPointF& Point, double Pressure = 1.0);
    void end();
    void cancel();
    bool isPainting() const { return m_pStroke != nullptr; }

public Q_SLOTS:
    void growBrush();
    void shrinkBrush();
    void toggleEraser();

Q_SIGNALS:
    void brushChanged();

private:
    /// Images may be smaller or larger than the picture that they are seen in.
    QPointF onImage(const QPointF& Point) const { return {Point.x() * m_ScaleX, Point.y() * m_ScaleY}; }
    void load();
    void store() const;

    const OrvCanvasSelection* m_pSelection;
    OrvBrush m_Brush;
    std::unique_ptr<OrvBrushStroke> m_pStroke;
    double m_ScaleX = 1.0, m_ScaleY = 1.0; ///< pixels of the image that is painted on for one of the picture
    QPointF m_LastEnd;
    QSize m_LastTileSize; ///< of the picture that the last end is a point of
    bool m_HasLastEnd = false;
};
