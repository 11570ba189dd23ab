#pragma once

#include "OrvDdi/Image/OrvTileFlags.h"

#include <deque>
#include <mutex>

struct _GeglBuffer;

/// What is known of an image buffer besides its pixels: which of its tiles hold any at all, and how it looks
/// at reduced scales. There colours count by their alpha, which the engine's own averages of straight colours
/// leave out: bright strokes would get dark edges. Goes with the buffer of an OrvImageBuffer, which says what
/// it is about to do; the engine's own buffers have none. Used under the engine's lock, atLevel() also by the
/// threads that it computes on.
class OrvBufferContent {
public:
    /// Null for buffers of the engine's own.
    static OrvBufferContent* of(_GeglBuffer* pBuffer);
    static OrvBufferContent& attachTo(_GeglBuffer* pBuffer);
    ~OrvBufferContent();
    OrvBufferContent(const OrvBufferContent&) = delete;
    OrvBufferContent& operator=(const OrvBufferContent&) = delete;

    /// All of its pixels are zero, or there are none.
    bool isEmpty(const QRect& Region) const { return !m_Painted.any(Region); }
    /// Around all that may not be zero.
    const QRect& bounds() const;

    /// Before pixels change, within the extent. False when it makes no difference: zeros to where nothing
    /// was.
    bool willWrite(const QRect& Region, const void* pPixels, int BytesPerPixel, qsizetype Stride);
    bool willFill(const QRect& Region, bool WithZeros);
    bool willCopy(const OrvBufferContent& Source, const QRect& Region);

    /// A buffer whose pixels are those of a mipmap level, up to date in a region (both in pixels of the
    /// level).
    _GeglBuffer* atLevel(int Level, const QRect& Region);

private:
    /// A level, half as large as the one before.
    struct Level {
        _GeglBuffer* pBuffer;
        OrvTileFlags Painted;
        OrvTileFlags Current; ///< squares that nothing was written below of since they were computed
    };

    explicit OrvBufferContent(_GeglBuffer* pBuffer);
    void addLevel();
    void update(int Number, const QRect& Region);
    void reduce(int Number, const QRect& Square) const;
    /// What is known of the region has to be found out again.
    void outdate(const QRect& Region);
    _GeglBuffer* bufferAt(int Number) const
    {
        return Number == 0 ? m_pBuffer : m_Levels[size_t(Number) - 1].pBuffer;
    }

    _GeglBuffer* const m_pBuffer; ///< owns this
    OrvTileFlags m_Painted;
    std::deque<Level> m_Levels;
    mutable QRect m_Bounds;
    mutable bool m_BoundsKnown = true; ///< at first there is nothing
    std::mutex m_Mutex;
};
