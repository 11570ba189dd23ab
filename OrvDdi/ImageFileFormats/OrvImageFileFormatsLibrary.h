#pragma once

#include "OrvDdi/Files/OrvImageFileFormats.h"

/// The image file formats of OpenImageIO. One instance, made by the library's factory and kept until the
/// program ends; safe from any thread. No exception leaves it.
class OrvImageFileFormatsLibrary : public OrvImageFileFormats {
public:
    std::unique_ptr<OrvImageFileReader> open(const QString& Path, QString& Reason) override;
    std::unique_ptr<OrvImageFileWriter> create(const QString& Path, const QString& Format,
        const OrvImageFileProperties& Properties, QString& Reason) override;
};
