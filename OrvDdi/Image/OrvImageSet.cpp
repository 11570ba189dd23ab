#include "OrvDdi/Image/OrvImageSet.h"

#include "OrvDdi/Image/OrvChannel.h"
#include "OrvDdi/Image/OrvImage.h"

namespace {

/// Scalar pixels have one component and no transparency.
OrvColor storable(const OrvColor& Fill, const OrvPixelFormat& Format)
{
    return Format.Kind == OrvPixelFormat::Scalar ? OrvColor(Fill.red(), Fill.red(), Fill.red()) : Fill;
}

int blocksAlong(int Length)
{
    return (Length + OrvImageSet::BlockEdge - 1) / OrvImageSet::BlockEdge;
}

} // namespace

OrvImageSet::OrvImageSet(
    const OrvUdimLayout& Layout, const OrvPixelFormat& Format, const OrvColor& Fill, QObject* pParent)
    : QObject(pParent)
    , m_Layout(Layout)
    , m_Format(Format)
    , m_Fill(storable(Fill, Format))
{
    m_BlockKeys.resize(blockCount());
}

OrvImageSet::~OrvImageSet() = default;

QString OrvImageSet::imageSetDepthString() const
{
    return OrvImage::depthName(m_Format.Depth);
}

QString OrvImageSet::fileSpace() const
{
    if (m_Format.Curve == OrvPixelFormat::Srgb)
        return tr("sRGB");
    return m_Format.Kind == OrvPixelFormat::Scalar ? tr("Raw") : tr("Linear");
}

QList<OrvChannel*> OrvImageSet::channels() const
{
    if (!m_pChannel) {
        const QString Name = m_Format.Kind == OrvPixelFormat::Scalar ? tr("Mask") : tr("Color");
        m_pChannel = new OrvChannel(Name, const_cast<OrvImageSet*>(this));
    }
    return {m_pChannel};
}

OrvImageBuffer OrvImageSet::buffer()
{
    if (m_Buffer.isNull() && m_Layout.isValid()) {
        m_Buffer = OrvImageBuffer(extent(), m_Format);
        if (m_Fill != OrvColor::clear())
            m_Buffer.fill(m_Fill);
        // Whoever shows the set as one colour has to look at the pixels from now on.
        Q_EMIT replaced();
    }
    return m_Buffer;
}

OrvImageBuffer OrvImageSet::snapshot() const
{
    return m_Buffer.isNull() ? OrvImageBuffer() : m_Buffer.snapshot();
}

void OrvImageSet::pixelsWritten(const QRect& Region)
{
    const QRect Written = Region & extent();
    if (Written.isEmpty())
        return;
    const int PerRow = blocksAlong(extent().width());
    for (int Row = Written.top() / BlockEdge; Row <= Written.bottom() / BlockEdge; ++Row) {
        for (int Column = Written.left() / BlockEdge; Column <= Written.right() / BlockEdge; ++Column)
            m_BlockKeys[Row * PerRow + Column].clear();
    }
    Q_EMIT pixelsChanged(Written);
}

void OrvImageSet::restore(const OrvImageBuffer& Snapshot, const QRect& Region)
{
    const QRect Restored = Region & extent();
    if (Restored.isEmpty() || (Snapshot.isNull() && m_Buffer.isNull()))
        return;
    if (!Snapshot.isNull())
        buffer().copyFrom(Snapshot, Restored);
    else if (Restored == extent())
        m_Buffer = OrvImageBuffer();
    else
        m_Buffer.fill(m_Fill, Restored);
    if (m_Buffer.isNull()) {
        m_BlockKeys.fill(QByteArray());
        Q_EMIT replaced();
    }
    pixelsWritten(Restored);
}

void OrvImageSet::replace(const OrvUdimLayout& Layout, const OrvPixelFormat& Format, const OrvColor& Fill,
    const OrvImageBuffer& Buffer)
{
    if (Format.Kind != m_Format.Kind) {
        delete m_pChannel;
        m_pChannel = nullptr;
    }
    m_Layout = Layout;
    m_Format = Format;
    m_Fill = storable(Fill, Format);
    m_Buffer = Buffer;
    m_BlockKeys = QVector<QByteArray>(blockCount());
    Q_EMIT replaced();
    Q_EMIT pixelsChanged(extent());
}

QRect OrvImageSet::blockRect(int Index) const
{
    const int PerRow = blocksAlong(extent().width());
    if (Index < 0 || Index >= blockCount())
        return QRect();
    const QPoint TopLeft(Index % PerRow * BlockEdge, Index / PerRow * BlockEdge);
    return QRect(TopLeft, QSize(BlockEdge, BlockEdge)) & extent();
}

int OrvImageSet::blockCount() const
{
    return blocksAlong(extent().width()) * blocksAlong(extent().height());
}

QByteArray OrvImageSet::blockKey(int Index) const
{
    return m_BlockKeys.value(Index);
}

void OrvImageSet::setBlockKey(int Index, const QByteArray& Key)
{
    if (Index >= 0 && Index < m_BlockKeys.size())
        m_BlockKeys[Index] = Key;
}

#include "moc_OrvImageSet.cpp"
