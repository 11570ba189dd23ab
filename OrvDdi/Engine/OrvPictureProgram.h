#pragma once

#include "OrvDdi/Engine/OrvPicture.h"
#include "OrvDdi/Engine/OrvPixelKernels.h"

#include <vector>

/// A picture turned into a list of steps over short runs of pixels: every source is read once, in its own
/// format, and nothing in between is written to memory. What has nothing to show in the region is no step.
/// Made for one evaluation of one region and run on all threads of the engine.
class OrvPictureProgram {
public:
    explicit OrvPictureProgram(const OrvPicture::Pointer& pPicture);

    /// The pixels of a mipmap level that a region of the whole picture touches.
    static GeglRectangle atLevel(const GeglRectangle& Region, int Level);

    /// What an operation writes its output to, premultiplied float: the region is in pixels of the whole
    /// picture.
    static GeglBuffer* target(GeglOperationContext* pContext, const GeglRectangle& Region, int Level);
    /// The output of an operation.
    void renderOutput(GeglOperationContext* pContext, const GeglRectangle& Region, int Level);
    /// The region is in pixels of the mipmap level.
    void renderTo(void* pPixels, int Stride, OrvPixelLayout Layout, const GeglRectangle& Region, int Level);
    /// Before parts of a region of a mipmap level are rendered on several threads: what they share.
    static void prepare(const OrvPicture::Pointer& pPicture, const GeglRectangle& Region, int Level);

private:
    /// What a step reads: a source's pixels, one colour, or a register that an earlier step left its result
    /// in.
    struct Operand {
        enum Kind { None, Source, Color, Register };
        Kind Which = None;
        int Index = 0;
    };
    struct Source {
        GeglBuffer* pBuffer;
        OrvPixelLayout Layout;
        bool IsAtLevel; ///< its pixels are those of the level already
    };
    struct ColorSource {
        float Color[4];
        GeglRectangle Extent;
    };
    struct Step {
        enum Kind { Load, Blend };
        Kind What;
        int Target; ///< register
        Operand From; ///< Load: what is loaded; Blend: the over image
        Operand Mask;
        const OrvBlendParameters* pParameters;
    };
    struct Output;
    class Run;

    void compile(const GeglRectangle& Region, int Level);
    void compile(const OrvPicture* pPicture, int Register);
    /// Nothing of it is seen within the region.
    bool isTransparent(const OrvPicture* pPicture) const;
    /// A mask that lets nothing through.
    bool isBlack(const OrvPicture* pMask) const;
    bool leavesBase(const OrvPicture* pBlend) const;
    bool holdsNothing(GeglBuffer* pBuffer) const;
    Operand operand(const OrvPicture* pPicture, int FreeRegister);
    int sourceIndex(GeglBuffer* pBuffer);
    /// A colour does not cover all of a region, or only a part of a reduced pixel.
    void cropColors(const GeglRectangle& Region, int Level);
    /// Images tell by themselves what they look like at a level.
    void reduceSources(const GeglRectangle& Region, int Level);
    /// Reading over the edge of a picture at a reduced level, the engine forgets the last pixels before the
    /// edge.
    void cropSources(const GeglRectangle& Region, int Level);
    void render(const Output& Where, const GeglRectangle& Region, int Level);

    OrvPicture::Pointer m_pPicture;
    GeglRectangle m_Region = {}; ///< in pixels of the whole picture
    std::vector<Step> m_Steps;
    std::vector<Source> m_Sources;
    std::vector<ColorSource> m_Colors;
    std::vector<OrvPicture::Pointer> m_Cropped; ///< keeps what was made for the region
    int m_RegisterCount = 1;
};
