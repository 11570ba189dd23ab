#pragma once

#include <QtCore/QRect>
#include <QtGui/QImage>
#include <QtGui/QPainterPath>

class OrvImageBuffer;
class OrvSelectionArea;
class OrvUdimLayout;

/// How much each pixel of a plane is selected, computed piece by piece from the outline with antialiased
/// edges. A value; it keeps no pixels.
class OrvSelectionCoverage {
public:
    /// Selects everything.
    OrvSelectionCoverage() = default;
    /// An empty area selects nothing.
    OrvSelectionCoverage(const OrvSelectionArea& Area, const OrvUdimLayout& Layout);

    bool isEverything() const { return m_Everything; }
    /// 0 to 255 for each pixel of a rectangle, in one byte.
    QImage raster(const QRect& Region) const;
    /// The whole plane as one scalar component, 0 to 1.
    OrvImageBuffer toBuffer(const QRect& Extent) const;

private:
    bool m_Everything = true;
    QPainterPath m_Outline;
};
