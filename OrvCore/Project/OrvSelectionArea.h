#pragma once

#include "OrvCore/OrvCoreExport.h"

#include <QtGui/QPainterPath>

class OrvUdimLayout;
class QJsonArray;

/// A part of an object's surface that the user has selected. Its outline is kept in tiles, not in pixels
/// (tile 1001 is the unit square, v grows upwards), so that it fits channels of every size and stays in its
/// place when the object gains tiles. A value; an empty one selects nothing, and it knows no pixels.
class ORVCORE_EXPORT OrvSelectionArea {
public:
    enum Combination { Replace, Add, Subtract, Intersect };

    OrvSelectionArea() = default;
    /// What a shape in the pixel plane of a layout encloses; a line that crosses itself encloses all its
    /// loops. What lies beside the tiles is left out.
    static OrvSelectionArea fromPlane(const QPainterPath& Shape, const OrvUdimLayout& Layout);
    static OrvSelectionArea ofAllTiles(const OrvUdimLayout& Layout);

    bool isEmpty() const { return m_Outline.isEmpty(); }
    OrvSelectionArea combinedWith(const OrvSelectionArea& Other, Combination How) const;
    /// Closed polygons in the pixel plane of a layout.
    QPainterPath toPlane(const OrvUdimLayout& Layout) const;

    /// One list of alternating u and v for each polygon.
    QJsonArray toJson() const;
    /// False, with nothing changed, for what is no such list.
    static bool fromJson(const QJsonArray& Json, OrvSelectionArea& Area);

    bool operator==(const OrvSelectionArea& Other) const { return m_Outline == Other.m_Outline; }
    bool operator!=(const OrvSelectionArea& Other) const { return !(*this == Other); }

private:
    explicit OrvSelectionArea(const QPainterPath& Outline);

    QPainterPath m_Outline; ///< polygons that do not cross, each within or beside the others
};
