#include "OrvDdi/Image/OrvChannel.h"

OrvChannel::OrvChannel(const QString& Name, QObject* pParent)
    : QObject(pParent)
    , m_Name(Name)
{
}

OrvChannel::~OrvChannel() = default;

QList<QSize> OrvChannel::supportedTextureSizes()
{
    QList<QSize> Sizes;
    for (int Edge = 256; Edge <= 16384; Edge *= 2)
        Sizes.append(QSize(Edge, Edge));
    return Sizes;
}

#include "moc_OrvChannel.cpp"
