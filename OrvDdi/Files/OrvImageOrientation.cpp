#include "OrvDdi/Files/OrvImageOrientation.h"

#include <algorithm>

OrvImageOrientation::OrvImageOrientation(int Number)
{
    m_SwapsAxes = Number >= 5 && Number <= 8;
    m_FromRight = Number == 2 || Number == 3 || Number == 6 || Number == 7;
    m_FromBottom = Number == 3 || Number == 4 || Number == 7 || Number == 8;
}

QRect OrvImageOrientation::uprightRect(const QRect& Part, const QSize& Stored) const
{
    const QSize Whole = uprightSize(Stored);
    QRect Upright = m_SwapsAxes ? QRect(Part.y(), Part.x(), Part.height(), Part.width()) : Part;
    if (m_FromRight)
        Upright.moveLeft(Whole.width() - Upright.x() - Upright.width());
    if (m_FromBottom)
        Upright.moveTop(Whole.height() - Upright.y() - Upright.height());
    return Upright;
}

void OrvImageOrientation::turn(
    const float* pStored, const QSize& Part, int ComponentCount, float* pUpright) const
{
    const QSize Upright = uprightSize(Part);
    const qsizetype Across = m_FromRight ? -1 : 1;
    const qsizetype Down = m_FromBottom ? -Upright.width() : Upright.width();
    const qsizetype First = (m_FromRight ? Upright.width() - 1 : 0)
        + (m_FromBottom ? qsizetype(Upright.height() - 1) * Upright.width() : 0);
    const qsizetype NextColumn = m_SwapsAxes ? Down : Across, NextRow = m_SwapsAxes ? Across : Down;
    for (int Row = 0; Row < Part.height(); ++Row) {
        float* pTarget = pUpright + (First + Row * NextRow) * ComponentCount;
        for (int Column = 0; Column < Part.width(); ++Column) {
            std::copy_n(pStored, ComponentCount, pTarget);
            pStored += ComponentCount;
            pTarget += NextColumn * ComponentCount;
        }
    }
}
