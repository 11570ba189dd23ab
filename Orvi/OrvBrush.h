#pragma once

#include <QtGui/QColor>

/// The round brush: how it looks and what it does. A value; painting with it is a stroke's work.
class OrvBrush {
public:
    static constexpr double SmallestSize = 1.0;
    static constexpr double LargestSize = 2000.0;

    double size() const { return m_Size; } ///< diameter in pixels of the picture
    double hardness() const { return m_Hardness; } ///< part of the radius that is covered fully
    double opacity() const { return m_Opacity; } ///< what one stroke covers at most
    QColor color() const { return m_Color; } ///< as seen on the display
    bool erases() const { return m_Erases; }
    // Whether a pen that presses less paints smaller, or covers less.
    bool pressureSetsSize() const { return m_PressureSetsSize; }
    bool pressureSetsOpacity() const { return m_PressureSetsOpacity; }

    // Values out of range are brought into it.
    void setSize(double Size);
    void setHardness(double Hardness);
    void setOpacity(double Opacity);
    void setColor(const QColor& Color);
    void setErases(bool Erases) { m_Erases = Erases; }
    void setPressureSetsSize(bool Sets) { m_PressureSetsSize = Sets; }
    void setPressureSetsOpacity(bool Sets) { m_PressureSetsOpacity = Sets; }

    /// Next size up or down, in steps that feel alike at any size.
    void grow();
    void shrink();

    /// The brush as a pen paints that presses so much, 0 to 1; a mouse presses fully.
    OrvBrush pressed(double Pressure) const;

    /// How much a point at a distance from the centre is covered, 0 to 1; the edge is at least a pixel soft.
    float coverage(float Distance) const;
    /// Outside of this radius nothing is covered.
    double reach() const;
    /// Between two dabs of a stroke.
    double spacing() const;

    bool operator==(const OrvBrush& Other) const
    {
        return m_Size == Other.m_Size && m_Hardness == Other.m_Hardness && m_Opacity == Other.m_Opacity
            && m_Color == Other.m_Color && m_Erases == Other.m_Erases
            && m_PressureSetsSize == Other.m_PressureSetsSize
            && m_PressureSetsOpacity == Other.m_PressureSetsOpacity;
    }

private:
    void updateEdge();

    double m_Size = 64.0;
    double m_Hardness = 0.7;
    double m_Opacity = 1.0;
    QColor m_Color = QColor(226, 88, 34);
    bool m_Erases = false;
    bool m_PressureSetsSize = true, m_PressureSetsOpacity = false;
    float m_InnerRadius = 22.4f, m_OuterRadius = 32.0f;
};
