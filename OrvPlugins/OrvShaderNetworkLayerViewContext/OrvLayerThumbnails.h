#pragma once

#include <QtCore/QHash>
#include <QtCore/QObject>
#include <QtCore/QThreadPool>

#include <memory>

class OrvImageBuffer;
class OrvImageSet;
class OrvLayerThumbnail;

/// The pictures of all image sets that rows show, and the one thread that reads their pixels. It keeps no
/// picture alive; the application owns it. The setting "LayerView/Thumbnails" switches it off for rows that
/// are made from then on.
class OrvLayerThumbnails : public QObject {
    Q_OBJECT

public:
    static OrvLayerThumbnails& instance();
    ~OrvLayerThumbnails() override;

    /// Null without an image set, and where thumbnails are switched off.
    std::shared_ptr<OrvLayerThumbnail> thumbnail(OrvImageSet* pImageSet);
    /// Hands the thumbnail its picture later, unless it is gone by then.
    void read(const std::weak_ptr<OrvLayerThumbnail>& Thumbnail, const OrvImageBuffer& Buffer,
        const QString& Space, int Edge);

private Q_SLOTS:
    /// No pixels may be held when the image engine ends.
    void finish();

private:
    explicit OrvLayerThumbnails(QObject* pParent);

    QHash<const OrvImageSet*, std::weak_ptr<OrvLayerThumbnail>> m_Thumbnails;
    QThreadPool m_Thread;
};
