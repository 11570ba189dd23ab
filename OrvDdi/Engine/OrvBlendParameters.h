#pragma once

#include "OrvDdi/OrvDdiExport.h"

#include <QtCore/QStringList>
#include <QtCore/QVector>

/// Blend modes in menu order. Formulas: W3C Compositing and Blending Level 1 for Normal to Luminosity; the others are
/// arithmetic on straight colour, composited like the separable modes. Values are stored in projects by name.
enum class OrvBlendMode {
    Normal,
    Multiply,
    Screen,
    Overlay,
    Darken,
    Lighten,
    ColorDodge,
    ColorBurn,
    HardLight,
    SoftLight,
    Difference,
    Exclusion,
    Hue,
    Saturation,
    Color,
    Luminosity,
    Add,
    Subtract,
    Divide,
    Average,
    Count
};

/// What the blend of one layer depends on besides its three images. A value, written by the document, read by the
/// blend operation.
struct ORVDDI_EXPORT OrvBlendParameters {
    OrvBlendMode Mode = OrvBlendMode::Normal;
    float Amount = 1.0f; ///< 0 to 1, multiplies the over image's alpha
    bool Enabled = true; ///< false: the base passes through untouched
    bool MaskEnabled = true; ///< false: the mask is not read
    bool PassThrough = false; ///< over is already a whole picture: result = mix(base, over, amount * mask)
    bool AdvancedEnabled = false; ///< the fields below count
    bool WriteRed = true, WriteGreen = true, WriteBlue = true, WriteAlpha = true;
    /// Luminance ramps of the over image and of the base: the layer shows fully between [1] and [2] and fades out
    /// towards [0] and [3]; 0 to 1, ascending.
    float OverRange[4] = {0.0f, 0.0f, 1.0f, 1.0f};
    float BaseRange[4] = {0.0f, 0.0f, 1.0f, 1.0f};

    bool operator==(const OrvBlendParameters& Other) const;
    bool operator!=(const OrvBlendParameters& Other) const { return !(*this == Other); }

    /// Names as shown and stored ("Normal", "Color Dodge", ...), in the order of OrvBlendMode.
    static const QStringList& modeNames();
    /// Normal for an unknown name.
    static OrvBlendMode modeFromName(const QString& Name);
};
