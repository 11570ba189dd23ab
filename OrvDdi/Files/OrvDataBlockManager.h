#pragma once

#include "OrvDdi/OrvDdiExport.h"

#include <QtCore/QStringList>

/// Where cached document data lies on disk: cache roots, the user's first, and below the first a directory
/// per project. What lies there may be lost at any time. One instance, GUI thread only; it never deletes
/// anything.
class ORVDDI_EXPORT OrvDataBlockManager {
public:
    static OrvDataBlockManager& instance();

    /// The directories that can be written, made when missing; empty when there is none.
    static QStringList cacheRoots();
    /// Replaces the default root, "projects" in the application's cache location; an empty list brings it
    /// back.
    void setCacheRoots(const QStringList& Roots);

    /// Name of the current project's directory below the first root; empty without a project.
    static QString subCache();
    /// Makes the directory. Characters that no directory name should hold are replaced by "_".
    void setSubCache(const QString& Name);
    /// The current project's directory, made when missing; empty when there is none or it cannot be made.
    static QString subCachePath();

private:
    OrvDataBlockManager() = default;

    QStringList m_Roots;
    QString m_SubCache;
};
