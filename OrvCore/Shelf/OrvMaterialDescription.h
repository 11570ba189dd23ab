#pragma once

#include "OrvCore/OrvCoreExport.h"

#include "OrvDdi/Image/OrvColor.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QVariantMap>
#include <QtCore/QVector>

/// A material of the shelf (".orvmat"): what goes into which input of a shader. A value; it is checked when
/// it is read, the custom procedurals that it names included. It makes no layers.
struct ORVCORE_EXPORT OrvMaterialDescription {
    static constexpr int FormatVersion = 1;
    static const QString FormatName, Suffix; ///< the suffix with its dot

    struct Stream {
        enum Kind { Color, Value, Image, Procedural };
        QString InputName;
        Kind What = Color;
        OrvColor Fill; ///< a value is grey
        QString ImagePath; ///< absolute
        QByteArray ProceduralText; ///< self-contained
        QVariantMap ProceduralValues; ///< of its shown parameters, where they differ from the defaults
    };

    QString Name, Description;
    QVector<Stream> Streams;

    static bool read(const QString& Path, OrvMaterialDescription& Material, QString& Error);
    /// The names of the geometry channels that its procedurals need.
    QStringList geoChannels() const;
};
