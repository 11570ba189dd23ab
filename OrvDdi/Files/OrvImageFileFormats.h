#pragma once

#include "OrvDdi/Files/OrvImageFileProperties.h"

#include <memory>

/// An image file that is open for reading. Made by OrvImageFileFormats, owned and used by one thread. It
/// hands out what the file holds: it never converts colours, nor turns pixels.
class OrvImageFileReader {
public:
    virtual ~OrvImageFileReader() = default;

    /// The size is that of the picture as it is stored.
    virtual const OrvImageFileProperties& properties() const = 0;
    /// How the picture is to be turned to stand upright, for OrvImageOrientation.
    virtual int orientation() const = 0;
    /// What is decoded; of EXR files it can be larger or smaller than the picture.
    virtual QSize storedSize() const = 0;
    /// Reading starts at a multiple of this many rows, and such groups of rows cost least.
    virtual int rowsAtOnce() const = 0;
    /// Rows of straight RGBA; gray values stand in all three colour components, pixels without alpha are
    /// opaque.
    virtual bool readRows(int First, int Count, float* pPixels, QString& Reason) = 0;
};

/// An image file that is being written, from the top down. Made by OrvImageFileFormats, owned and used by one
/// thread. It writes to the very path that it was given; replacing an older file is the caller's affair.
class OrvImageFileWriter {
public:
    virtual ~OrvImageFileWriter() = default;

    /// Rows of as many components as the properties say, straight alpha.
    virtual bool writeRows(int First, int Count, const float* pPixels, QString& Reason) = 0;
    /// Completes the file. Without it the file is of no use.
    virtual bool finish(QString& Reason) = 0;
};

/// What the separately loaded library of image file formats does for OrvImageFiles, which alone uses it. It
/// owns nothing. Reasons are half sentences to follow the name of the file.
class OrvImageFileFormats {
public:
    virtual ~OrvImageFileFormats() = default;

    /// Reads the header alone; null with the reason for a file that is no image. ColorSpace is what the file
    /// says, empty where it says nothing.
    virtual std::unique_ptr<OrvImageFileReader> open(const QString& Path, QString& Reason) = 0;
    /// Format is "png", "tiff" or "exr". Precision, size and component count (1, 3 or 4) must suit it.
    virtual std::unique_ptr<OrvImageFileWriter> create(
        const QString& Path, const QString& Format, const OrvImageFileProperties& Properties, QString& Reason)
        = 0;
};

/// The library's only symbol: `extern "C" OrvImageFileFormats* orvImageFileFormats()`.
using OrvImageFileFormatsFactory = OrvImageFileFormats* (*)();
constexpr char OrvImageFileFormatsSymbol[] = "orvImageFileFormats";
