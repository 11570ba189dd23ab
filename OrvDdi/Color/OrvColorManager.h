#pragma once

#include "OrvDdi/Color/OrvColorSpaceDefaults.h"
#include "OrvDdi/OrvDdiExport.h"

#include <QtCore/QStringList>

class OrvColor;
class OrvColorSpaceConfig;

/// Converts colours and pixels between named colour spaces. The spaces named here are built in and mean the
/// same everywhere; a readable OpenColorIO configuration named by the environment variable OCIO adds its own.
/// Stateless for callers and safe from any thread; it never touches alpha.
class ORVDDI_EXPORT OrvColorManager {
public:
    static QString srgb(); ///< Rec.709 primaries, curve of IEC 61966-2-1
    static QString linear(); ///< Rec.709 primaries, proportional to light
    static QString raw(); ///< plain numbers; converting from or to it changes nothing
    static QString acesCg(); ///< linear, AP1 primaries

    /// The built-in spaces, then those of the user's configuration.
    static QStringList colorSpaces();
    static bool isColorSpace(const QString& Name);

    /// In and Out may be the same object. Values are unbounded. False when a space is unknown: Out is then
    /// In.
    static bool transform(const OrvColor& In, OrvColor& Out, OrvColorSpaceDefaults::ColorSpaceTarget From,
        OrvColorSpaceDefaults::ColorSpaceTarget To, const OrvColorSpaceConfig* pConfig = nullptr);
    static bool transform(const OrvColor& In, OrvColor& Out, const QString& From, const QString& To);

    /// Converts rows of straight RGBA in place, the rows split over the processor's cores. The stride counts
    /// floats from row to row; 0: rows follow each other. On failure the pixels are as they were and Error
    /// says why.
    static bool transformPixels(float* pPixels, int Width, int Height, qsizetype Stride, const QString& From,
        const QString& To, QString& Error);
    /// Whether converting between the two changes nothing.
    static bool isIdentity(const QString& From, const QString& To);
    /// Whether the conversion is linear without an offset; then its nine factors, row by row. Such a one may be
    /// applied to premultiplied pixels.
    static bool matrix(const QString& From, const QString& To, float* pFactors);

    /// The space of values that are stored in a space once they are read without its curve: pixel formats undo
    /// that of sRGB, and no other. A space that cannot be converted to light (any more) counts as linear; the
    /// log says so once.
    static QString computedSpace(const QString& Stored);

    /// Why the configuration named by OCIO is not in use; empty while it is, or while none is named. The same
    /// text goes to the log once.
    static QString configurationError();
    /// Looks at OCIO again.
    static void reloadConfiguration();
};
