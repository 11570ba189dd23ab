#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerThumbnails.h"

#include "OrvCore/Object/OrvSettings.h"
#include "OrvDdi/Image/OrvImageSet.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerThumbnail.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerThumbnailPicture.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QPointer>

OrvLayerThumbnails& OrvLayerThumbnails::instance()
{
    static QPointer<OrvLayerThumbnails> Instance;
    if (!Instance)
        Instance = new OrvLayerThumbnails(qApp);
    return *Instance;
}

OrvLayerThumbnails::OrvLayerThumbnails(QObject* pParent)
    : QObject(pParent)
{
    m_Thread.setMaxThreadCount(1);
    connect(qApp, SIGNAL(aboutToQuit()), this, SLOT(finish()));
}

OrvLayerThumbnails::~OrvLayerThumbnails()
{
    finish();
}

void OrvLayerThumbnails::finish()
{
    m_Thread.clear();
    m_Thread.waitForDone();
}

std::shared_ptr<OrvLayerThumbnail> OrvLayerThumbnails::thumbnail(OrvImageSet* pImageSet)
{
    if (!pImageSet || !OrvSettings().value(QStringLiteral("LayerView/Thumbnails"), true).toBool())
        return nullptr;
    // The place of an image set that is gone may be another's before its thumbnail goes.
    const auto Existing = m_Thumbnails.value(pImageSet).lock();
    if (Existing && Existing->isOf(pImageSet))
        return Existing;
    const auto forget = [this, pImageSet] {
        if (m_Thumbnails.value(pImageSet).expired())
            m_Thumbnails.remove(pImageSet);
    };
    const auto Fresh = std::make_shared<OrvLayerThumbnail>(pImageSet);
    m_Thumbnails.insert(pImageSet, Fresh);
    connect(Fresh.get(), &QObject::destroyed, this, forget);
    return Fresh;
}

void OrvLayerThumbnails::read(const std::weak_ptr<OrvLayerThumbnail>& Thumbnail, const OrvImageBuffer& Buffer,
    const QString& Space, int Edge)
{
    m_Thread.start([this, Thumbnail, Buffer, Space, Edge] {
        if (Thumbnail.expired())
            return;
        const QImage Picture = OrvLayerThumbnailPicture::ofPixels(Buffer, Space, Edge);
        QMetaObject::invokeMethod(
            this,
            [Thumbnail, Picture] {
                if (const auto Shown = Thumbnail.lock())
                    Shown->showPicture(Picture);
            },
            Qt::QueuedConnection);
    });
}

#include "moc_OrvLayerThumbnails.cpp"
