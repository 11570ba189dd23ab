#pragma once

#include "OrvCore/Shelf/OrvShelfEntry.h"

#include <QtCore/QHash>
#include <QtCore/QMap>
#include <QtCore/QObject>
#include <QtCore/QPair>
#include <QtCore/QPointer>
#include <QtCore/QTimer>
#include <QtCore/QVariant>
#include <QtCore/QVector>
#include <QtGui/QIcon>

class QFileSystemWatcher;
class QMimeData;

/// A material as menus show it.
struct ORVCORE_EXPORT OrvShelfMaterial {
    QString Name;
    QIcon Icon;
    QVariant Data; ///< to be carried by the action: the path of the file
};

/// The shelf: the custom procedurals and materials that come with the program and those of the user. It is
/// read when it is first asked for, and again when its files change. It keeps no document data; whoever puts
/// an entry into a document takes the text along.
class ORVCORE_EXPORT OrvMaterialPaintManager : public QObject {
    Q_OBJECT

public:
    static OrvMaterialPaintManager& instance();

    /// Cheap: the names of the files decide, nothing is read.
    static bool isMimeDataMaterialFile(const QMimeData* pData);
    static bool isMimeDataCustomProceduralFile(const QMimeData* pData);
    static QStringList pathListFromMimeData(const QMimeData* pData);

    /// All files of the shelf by their keys, damaged ones too.
    const QVector<OrvShelfEntry>& entries();
    /// Null for an unknown key.
    const OrvShelfEntry* entry(const QString& Key);

    /// What menus offer: names and icons by menu path, which is the key.
    QMap<QString, QPair<QString, QIcon>> customProceduralsFromShelf();
    QVector<OrvShelfMaterial> materialsFromShelf();
    /// The text of a file, or of the entry of that key, checked. False, with the reason, when there is none.
    bool readCustomProcedural(const QString& PathOrKey, QByteArray& Text, QString& Error);

    /// The file, in the icon directory, of the kind's icon; it warns of damage and of missing geometry
    /// channels.
    static QString iconFileOfKind(const OrvShelfEntry& Entry);
    /// The thumbnail that somebody made, else the icon of the kind.
    QIcon icon(const OrvShelfEntry& Entry) const;
    void setThumbnail(const QString& Key, const QIcon& Icon);
    bool hasThumbnail(const QString& Key) const { return m_Thumbnails.contains(Key); }

public Q_SLOTS:
    /// Reads the shelf again, whatever the file system says.
    void reload();

Q_SIGNALS:
    /// The entries are other ones now.
    void shelfChanged();

private:
    OrvMaterialPaintManager();
    bool readEntries();
    void watch();

    QVector<OrvShelfEntry> m_Entries;
    QHash<QString, QIcon> m_Thumbnails;
    QPointer<QFileSystemWatcher> m_pWatcher;
    QTimer m_ReloadTimer; ///< files that are being written change several times
    bool m_WasRead = false;
};
