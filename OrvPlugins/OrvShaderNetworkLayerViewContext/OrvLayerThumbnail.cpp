#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerThumbnail.h"

#include "OrvCore/Channels/OrvChannelSpace.h"
#include "OrvCore/Channels/OrvSnShaderInputNode.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvDdi/Image/OrvImageSet.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerThumbnailPicture.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerThumbnails.h"

#include <QtGui/QGuiApplication>
#include <QtGui/QPixmap>

OrvLayerThumbnail::OrvLayerThumbnail(OrvImageSet* pImageSet)
    : m_ImageSet(pImageSet)
{
    m_Due.setSingleShot(true);
    connect(&m_Due, SIGNAL(timeout()), this, SLOT(make()));
    connect(pImageSet, SIGNAL(pixelsChanged(QRect)), this, SLOT(makeLater()));
    connect(pImageSet, SIGNAL(replaced()), this, SLOT(makeLater()));
    connect(&OrvShaderNetworkManager::instance(), SIGNAL(nodeUserAttributeChanged(OrvSnBaseNode*, QString)),
        this, SLOT(onNodeAttributeChanged(OrvSnBaseNode*, QString)));
    m_Due.start(0);
}

bool OrvLayerThumbnail::isOf(const OrvImageSet* pImageSet) const
{
    return m_ImageSet == pImageSet;
}

void OrvLayerThumbnail::makeLater()
{
    m_Due.start(RestInterval);
}

void OrvLayerThumbnail::onNodeAttributeChanged(OrvSnBaseNode*, QString Name)
{
    if (Name == OrvSnShaderInputNode::ColorSpaceAttribute)
        makeLater();
}

void OrvLayerThumbnail::make()
{
    if (!m_ImageSet)
        return;
    if (m_Reading) {
        makeLater();
        return;
    }
    const int DeviceEdge = qRound(Edge * qGuiApp->devicePixelRatio());
    const QString Space = OrvChannelSpace::ofNode(qobject_cast<OrvSnBaseNode*>(m_ImageSet->parent()));
    if (m_ImageSet->isUniform()) {
        showPicture(OrvLayerThumbnailPicture::ofColor(
            m_ImageSet->fillColor(), m_ImageSet->format(), Space, m_ImageSet->extent().size(), DeviceEdge));
        return;
    }
    m_Reading = true;
    // No snapshot: what is written while it is read announces itself, and makes the next picture.
    OrvLayerThumbnails::instance().read(shared_from_this(), m_ImageSet->buffer(), Space, DeviceEdge);
}

void OrvLayerThumbnail::showPicture(const QImage& Picture)
{
    m_Reading = false;
    QPixmap Pixmap = QPixmap::fromImage(Picture);
    Pixmap.setDevicePixelRatio(qreal(Picture.width()) / Edge);
    m_Icon = QIcon(Pixmap);
    Q_EMIT changed();
}

#include "moc_OrvLayerThumbnail.cpp"
