#pragma once

#include <QtCore/QSet>
#include <QtCore/QString>

class OrvShaderInput;

/// What the files of one export are called: no two images of it share a file, whatever their names are. Lives
/// as long as the export is put together; it looks at no file.
class OrvExportNames {
public:
    explicit OrvExportNames(const QString& Directory);

    /// "Color.png", "Color.<UDIM>.exr", and "Color 2.png" once that is taken. Letter case makes no
    /// difference: on some systems both would be one file.
    QString take(const OrvShaderInput* pChannel, const QString& Name, const QString& Suffix);

    /// The file that was meant in a dialog: a suffix that image files have decides the type, whether it can
    /// be written or not. Any other belongs to the name, and the type that was chosen is added, or the usual
    /// one where the filter takes several.
    static QString typedPath(const QString& Path, const QString& Filter, const QString& UsualSuffix);

private:
    QString m_Directory;
    QSet<QString> m_Taken; ///< in lower case
};
