#pragma once

#include "OrvDdi/OrvDdiExport.h"

#include <QtCore/QList>
#include <QtCore/QMap>
#include <QtCore/QString>
#include <QtCore/QStringList>

/// The files that make up one image: one per UDIM tile ("color.1001.exr", "color_1002.exr"), or a single file
/// under the tile number 0. A value; it looks at names only, and at a directory only where that is said.
struct ORVDDI_EXPORT OrvUdimSet {
    static constexpr int FirstTile = 1001;
    static constexpr int LastTile = 1999;

    QString BaseName; ///< file name without tile number and suffix
    QString Suffix; ///< lower case, without dot
    QString Pattern; ///< path with "<UDIM>" in place of the tile number; of a single file, its path
    QMap<int, QString> Paths; ///< by tile number

    bool isUdim() const { return !Paths.isEmpty() && Paths.firstKey() != 0; }

    /// Sorts paths into sets, in the order in which each set's first path came. Only the given files take
    /// part.
    static QList<OrvUdimSet> fromPaths(const QStringList& Paths);
    /// The tile number in a file name before the suffix, after ".", "_" or "-"; 0 when there is none.
    static int tileOf(const QString& Path);
    /// Replaces "<UDIM>" in the file name; without it the number is inserted before the suffix.
    static QString pathForTile(const QString& Pattern, int Tile);
    /// The files of the same set in the file's directory, itself included; just the file when it has no tile
    /// number.
    static QStringList brothersOf(const QString& Path);
};
