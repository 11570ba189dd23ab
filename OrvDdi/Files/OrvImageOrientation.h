#pragma once

#include <QtCore/QRect>
#include <QtCore/QSize>

/// How stored pixels lie in the upright picture: cameras store what the sensor saw and note how it was held.
/// A value with the numbers of the Exif tag "Orientation" (Exif 2.32, 4.6.4 A); it owns no pixels.
class OrvImageOrientation {
public:
    /// What is no number of the tag stands for upright pixels.
    explicit OrvImageOrientation(int Number = 1);

    bool isUpright() const { return !m_SwapsAxes && !m_FromRight && !m_FromBottom; }
    QSize uprightSize(const QSize& Stored) const { return m_SwapsAxes ? Stored.transposed() : Stored; }
    /// Where a part of the stored pixels lies in the upright picture.
    QRect uprightRect(const QRect& Part, const QSize& Stored) const;
    /// Puts the pixels of a stored part into the order of its uprightRect().
    void turn(const float* pStored, const QSize& Part, int ComponentCount, float* pUpright) const;

private:
    bool m_SwapsAxes = false; ///< a stored row is an upright column
    bool m_FromRight = false, m_FromBottom = false; ///< of the upright picture, where storing begins
};
