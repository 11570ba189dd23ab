#include "Orvi/OrvBrush.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double SizeStep = 1.15;
constexpr double SpacingOfSize = 0.06; // dabs this close merge to a smooth stroke
constexpr float SoftestEdge = 1.0f; // pixels

} // namespace

void OrvBrush::setSize(double Size)
{
    m_Size = std::clamp(Size, SmallestSize, LargestSize);
    updateEdge();
}

void OrvBrush::setHardness(double Hardness)
{
    m_Hardness = std::clamp(Hardness, 0.0, 1.0);
    updateEdge();
}

void OrvBrush::setOpacity(double Opacity)
{
    m_Opacity = std::clamp(Opacity, 0.0, 1.0);
}

void OrvBrush::setColor(const QColor& Color)
{
    if (Color.isValid())
        m_Color = Color.toRgb();
}

void OrvBrush::grow()
{
    setSize(std::max(std::round(m_Size * SizeStep), m_Size + 1.0));
}

void OrvBrush::shrink()
{
    setSize(std::min(std::round(m_Size / SizeStep), m_Size - 1.0));
}

OrvBrush OrvBrush::pressed(double Pressure) const
{
    const double Part = std::clamp(Pressure, 0.0, 1.0);
    OrvBrush Brush = *this;
    if (m_PressureSetsSize)
        Brush.setSize(m_Size * Part);
    if (m_PressureSetsOpacity)
        Brush.setOpacity(m_Opacity * Part);
    return Brush;
}

void OrvBrush::updateEdge()
{
    const float Radius = float(m_Size / 2.0);
    m_InnerRadius = Radius * float(m_Hardness);
    m_OuterRadius = Radius;
    if (m_OuterRadius - m_InnerRadius < SoftestEdge) {
        m_InnerRadius = std::max(0.0f, Radius - SoftestEdge / 2.0f);
        m_OuterRadius = Radius + SoftestEdge / 2.0f;
    }
}

float OrvBrush::coverage(float Distance) const
{
    if (Distance <= m_InnerRadius)
        return 1.0f;
    if (Distance >= m_OuterRadius)
        return 0.0f;
    const float Way = (m_OuterRadius - Distance) / (m_OuterRadius - m_InnerRadius);
    return Way * Way * (3.0f - 2.0f * Way);
}

double OrvBrush::reach() const
{
    return double(m_OuterRadius);
}

double OrvBrush::spacing() const
{
    return std::max(0.5, m_Size * SpacingOfSize);
}
