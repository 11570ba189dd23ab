#pragma once

#include "OrvCore/OrvCoreExport.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QVariantMap>

/// One file of the shelf as it was read. A value; a damaged file has an entry too, which says what is wrong.
struct ORVCORE_EXPORT OrvShelfEntry {
    enum Kind { CustomProcedural, Material };

    QString Key; ///< the place on the shelf, with "/", without suffix: the menu path
    QString Path;
    Kind What = CustomProcedural;
    QString Name, Description;
    QByteArray Text; ///< of the procedural, or of a material's most telling one; what a thumbnail shows
    QVariantMap Values; ///< of its parameters, where the material sets them
    int ProceduralType = 0; ///< OrvProceduralDescription::Kind
    bool MissesGeoChannels = false;
    bool IsUsers = false; ///< not shipped with the program
    QString Error; ///< empty for a file in order

    /// Never fails: the entry of a bad file has its error.
    static OrvShelfEntry read(const QString& Path, const QString& Key);

    bool operator==(const OrvShelfEntry& Other) const;
};
