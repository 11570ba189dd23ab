#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

#include <QtCore/QAbstractListModel>

class OrvShelfThumbnailer;
struct OrvShelfEntry;

/// The shelf as a list: names, thumbnails, what is to be told of each entry, and the files for dragging. It
/// wraps the shelf's entries and keeps none of them; thumbnails come one by one and are handed to the shelf,
/// where menus find them.
class ORVCOREMODULES_EXPORT OrvShelfModel : public QAbstractListModel {
    Q_OBJECT

public:
    /// The key of an entry, whether it can become a layer or a mask of one stack, whether it is a material that
    /// can become a layer of several channels, and the text that searches go by.
    enum Role { KeyRole = Qt::UserRole, UsableRole, MaterialRole, SearchRole };

    explicit OrvShelfModel(QObject* pParent = nullptr);

    int rowCount(const QModelIndex& Parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& Index, int Role) const override;
    Qt::ItemFlags flags(const QModelIndex& Index) const override;
    QStringList mimeTypes() const override;
    QMimeData* mimeData(const QModelIndexList& Indexes) const override;
    Qt::DropActions supportedDragActions() const override { return Qt::CopyAction; }

    const OrvShelfThumbnailer* thumbnailer() const { return m_pThumbnailer; }
    /// Reads the shelf when that was not done yet, and makes the thumbnails that are missing. Until then the
    /// list is empty: reading needs the image engine.
    void open();

private Q_SLOTS:
    void onShelfChanged();
    void onThumbnailReady(const QString& Key, const QImage& Picture);

private:
    static const OrvShelfEntry* entryAt(const QModelIndex& Index);
    void requestThumbnails();

    OrvShelfThumbnailer* m_pThumbnailer;
    bool m_IsOpen = false;
};
