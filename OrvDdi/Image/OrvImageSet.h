#pragma once

#include "OrvDdi/Image/OrvColor.h"
#include "OrvDdi/Image/OrvImageBuffer.h"
#include "OrvDdi/Image/OrvUdimLayout.h"

#include <QtCore/QByteArray>
#include <QtCore/QObject>
#include <QtCore/QVector>

class OrvChannel;

/// The images of one layer component (paint or mask), one per UDIM tile, kept in one pixel plane. Owned by an image
/// node of the document. It announces every change of its pixels, remembers which parts are already stored as data
/// blocks, and never records undo itself.
class ORVDDI_EXPORT OrvImageSet : public QObject {
    Q_OBJECT
    Q_PROPERTY(QSize imageSetSize READ imageSetSize)
    Q_PROPERTY(QString imageSetDepthString READ imageSetDepthString)
    Q_PROPERTY(QString fileSpace READ fileSpace)
    Q_PROPERTY(int tileCount READ tileCount)

public:
    /// A plane of one colour; it takes no pixel memory until first written or read through buffer().
    OrvImageSet(const OrvUdimLayout& Layout, const OrvPixelFormat& Format, const OrvColor& Fill,
        QObject* pParent = nullptr);
    ~OrvImageSet() override;

    const OrvUdimLayout& layout() const { return m_Layout; }
    QRect extent() const { return m_Layout.extent(); }
    const OrvPixelFormat& format() const { return m_Format; }
    OrvColor fillColor() const { return m_Fill; }

    QSize imageSetSize() const { return m_Layout.tileSize(); }
    QString imageSetDepthString() const;
    QString fileSpace() const;
    int tileCount() const { return m_Layout.tiles().size(); }
    /// Pixel channels, for display: one, named "Color" or "Mask".
    QList<OrvChannel*> channels() const;

    /// True while no pixel was ever written: everything is fillColor().
    bool isUniform() const { return m_Buffer.isNull(); }
    /// The pixels, made on demand. Whoever writes through it calls pixelsWritten() with the region afterwards.
    OrvImageBuffer buffer();
    /// A cheap copy of the present pixels, null while uniform; for undo and for saving.
    OrvImageBuffer snapshot() const;

    /// Announces a write through buffer().
    void pixelsWritten(const QRect& Region);
    /// Puts back pixels of a snapshot of this set within the region (a null snapshot: the fill colour).
    void restore(const OrvImageBuffer& Snapshot, const QRect& Region);
    /// Takes other pixels, and with them another layout and format (conversion, resizing, loading); null: uniform.
    void replace(const OrvUdimLayout& Layout, const OrvPixelFormat& Format, const OrvColor& Fill,
        const OrvImageBuffer& Buffer);

    /// Bookkeeping of saving: the plane is cut into squares of this edge, row by row; the key of a square is the
    /// content address of its data block, empty when it has changed since it was stored.
    static constexpr int BlockEdge = 512;
    QRect blockRect(int Index) const;
    int blockCount() const;
    QByteArray blockKey(int Index) const;
    void setBlockKey(int Index, const QByteArray& Key);

Q_SIGNALS:
    void pixelsChanged(const QRect& Region);
    /// Layout, format or the buffer itself was replaced.
    void replaced();

private:
    OrvUdimLayout m_Layout;
    OrvPixelFormat m_Format;
    OrvColor m_Fill;
    OrvImageBuffer m_Buffer;
    QVector<QByteArray> m_BlockKeys;
    mutable OrvChannel* m_pChannel = nullptr;
};
