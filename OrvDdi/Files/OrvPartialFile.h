#pragma once

#include "OrvDdi/OrvDdiExport.h"

#include <QtCore/QString>

/// A file beside the wanted one that takes its place when it is complete, and goes away otherwise. Whoever
/// writes owns it for as long; it writes nothing itself.
class ORVDDI_EXPORT OrvPartialFile {
public:
    explicit OrvPartialFile(const QString& Target);
    ~OrvPartialFile();
    OrvPartialFile(const OrvPartialFile&) = delete;
    OrvPartialFile& operator=(const OrvPartialFile&) = delete;

    /// Where to write.
    const QString& path() const { return m_Path; }
    /// Forces what was written onto the disk and puts it in the place of the wanted file, with that one's
    /// permissions if there is one already.
    bool takePlace(QString& Reason) const;

    /// Removes what writers of a file left that were killed. Not to be called while another one writes it.
    static void removeLeftovers(const QString& Target);

private:
    QString m_Target, m_Path;
};
