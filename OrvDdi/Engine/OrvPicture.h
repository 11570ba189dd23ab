#pragma once

#include "OrvDdi/Engine/OrvBlendParameters.h"
#include "OrvDdi/Engine/OrvGegl.h"

#include <memory>

class OrvLitPicture;

/// What one step of an evaluation yields, before anything is computed: pixels that exist, one colour, a blend of
/// other pictures, or a lit one. Blend steps hand such descriptions to each other instead of buffers, so that a
/// whole stack is computed in one pass (see OrvPictureProgram). Lives during one evaluation; immutable.
class OrvPicture {
public:
    enum Kind { Nothing, Pixels, Uniform, Blend, Lit };
    using Pointer = std::shared_ptr<const OrvPicture>;

    static Pointer nothing();
    static Pointer pixels(GeglBuffer* pBuffer);
    /// Four floats, linear, premultiplied; transparent outside the extent.
    static Pointer uniform(const float* pColor, const GeglRectangle& Extent);
    /// A null mask means none; a null or empty base or over image means transparent.
    static Pointer blend(const OrvBlendParameters& Parameters, Pointer pBase, Pointer pOver, Pointer pMask);
    /// For delivery alone: nothing is blended with it.
    static Pointer lit(std::shared_ptr<const OrvLitPicture> pLit);
    ~OrvPicture();

    Kind kind() const { return m_Kind; }
    GeglBuffer* buffer() const { return m_pBuffer; }
    const float* color() const { return m_Color; }
    const GeglRectangle& extent() const { return m_Extent; }
    const OrvBlendParameters& parameters() const { return m_Parameters; }
    const Pointer& base() const { return m_pBase; }
    const Pointer& over() const { return m_pOver; }
    const Pointer& mask() const { return m_pMask; }
    const OrvLitPicture& litPicture() const { return *m_pLit; }

    /// Whoever reads the buffer by the engine's own means finds the right pixels at a mipmap level. Images do not
    /// have theirs there (see OrvBufferContent); an OrvPictureProgram finds them.
    bool isReadableAt(int Level) const;

    /// A buffer without pixels that carries the description from one operation to the next. The caller owns
    /// it.
    static GeglBuffer* carrier(const Pointer& pPicture);
    /// What an operation was given: the description that the object carries, or the pixels that it is.
    static Pointer of(GObject* pObject);

private:
    explicit OrvPicture(Kind WhichKind)
        : m_Kind(WhichKind)
    {
    }

    const Kind m_Kind;
    GeglBuffer* m_pBuffer = nullptr;
    float m_Color[4] = {};
    GeglRectangle m_Extent = {};
    OrvBlendParameters m_Parameters;
    Pointer m_pBase, m_pOver, m_pMask;
    std::shared_ptr<const OrvLitPicture> m_pLit;
};
