#pragma once

#include "OrvDdi/OrvDdiExport.h"

#include <QtCore/QMetaType>

class QColor;

/// A colour of four floating-point components, straight alpha, without bounds. It does not know its colour space:
/// whoever passes one says in which space it is expressed.
class ORVDDI_EXPORT OrvColor {
public:
    OrvColor() = default; ///< transparent black
    OrvColor(float Red, float Green, float Blue, float Alpha = 1.0f)
        : m_Components{Red, Green, Blue, Alpha}
    {
    }

    static OrvColor black() { return {0.0f, 0.0f, 0.0f, 1.0f}; }
    static OrvColor white() { return {1.0f, 1.0f, 1.0f, 1.0f}; }
    static OrvColor grey50() { return {0.5f, 0.5f, 0.5f, 1.0f}; }
    static OrvColor clear() { return {}; }
    /// Component by component, no conversion.
    static OrvColor fromQColor(const QColor& Color);
    /// Component by component, clamped to 0 to 1.
    QColor toQColor() const;

    float red() const { return m_Components[0]; }
    float green() const { return m_Components[1]; }
    float blue() const { return m_Components[2]; }
    float alpha() const { return m_Components[3]; }
    const float* components() const { return m_Components; }

    bool operator==(const OrvColor& Other) const
    {
        return red() == Other.red() && green() == Other.green() && blue() == Other.blue() && alpha() == Other.alpha();
    }
    bool operator!=(const OrvColor& Other) const { return !(*this == Other); }

private:
    float m_Components[4] = {0.0f, 0.0f, 0.0f, 0.0f};
};

Q_DECLARE_METATYPE(OrvColor)
