#include "OrvDdi/Engine/OrvLitPicture.h"

#include "OrvDdi/Engine/OrvPictureProgram.h"
#include "OrvDdi/Engine/OrvPixelBabl.h"
#include "OrvDdi/Engine/OrvShadingKernels.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace {

using Parameters = OrvShadingParameters;

constexpr int ColumnsAtOnce = 128, RowsAtOnce = 32;
constexpr int Width = OrvShadingKernels::Width;

int roundedUp(int Count)
{
    return (Count + Width - 1) / Width * Width;
}

/// Memory that a thread works in: kept from picture to picture, since getting it takes longer than lighting a
/// dab.
struct Workspace {
    std::array<std::vector<float>, Parameters::SlotCount> Pixels;
    std::vector<float> HeightPixels, Heights, SlopesU, SlopesV, Row;

    static Workspace& ofThread()
    {
        thread_local Workspace Kept;
        return Kept;
    }
};

} // namespace

/// Where the first pixel of a block goes, in any layout.
struct OrvLitPicture::Output {
    char* pPixels;
    qsizetype Stride;
    OrvPixelLayout Layout;

    Output movedBy(int X, int Y) const
    {
        return {pPixels + Y * Stride + qsizetype(X) * orvBytesPerPixel(Layout), Stride, Layout};
    }
};

/// What one thread does of a picture at a mipmap level.
class OrvLitPicture::Share {
public:
    Share(const OrvLitPicture& Picture, int Level);

    /// Parts of the block may lie in different tiles.
    void light(const GeglRectangle& Block, const Output& Where);

private:
    void lightInTile(const GeglRectangle& Part, const GeglRectangle& Tile, const Output& Where);
    void read(int Slot, const GeglRectangle& Region, std::vector<float>& Pixels, int Stride) const;
    void addSlopes(int Slot, const GeglRectangle& Part, const GeglRectangle& Tile);
    /// Where the tile around a position begins and ends along an axis, in pixels of the level.
    void tileAround(int Position, int TileEdge, int& First, int& End) const;

    const Parameters& m_Given;
    const Pictures& m_Inputs;
    const int m_Level;
    const OrvShadingKernels& m_Kernels = OrvShadingKernels::best();
    Workspace& m_Work = Workspace::ofThread();
    bool m_HasSlopes = false;
};

OrvLitPicture::Share::Share(const OrvLitPicture& Picture, int Level)
    : m_Given(Picture.m_Given)
    , m_Inputs(Picture.m_Inputs)
    , m_Level(Level)
{
}

void OrvLitPicture::Share::tileAround(int Position, int TileEdge, int& First, int& End) const
{
    // Pixels of a level belong to the tile that their centre lies in.
    const int Half = (1 << m_Level) / 2;
    const int Tile = ((Position << m_Level) + Half) / TileEdge;
    const auto borderAt = [&](int Number) { return (Number * TileEdge + Half) >> m_Level; };
    First = std::min(Position, borderAt(Tile));
    End = std::max(Position + 1, borderAt(Tile + 1));
}

void OrvLitPicture::Share::light(const GeglRectangle& Block, const Output& Where)
{
    GeglRectangle Tile;
    for (int Y = 0, NextY = 0; Y < Block.height; Y = NextY) {
        int End = 0;
        tileAround(Block.y + Y, m_Given.TileSize.height(), Tile.y, End);
        Tile.height = End - Tile.y;
        NextY = std::min({Block.height, End - Block.y, Y + RowsAtOnce});
        for (int X = 0, NextX = 0; X < Block.width; X = NextX) {
            tileAround(Block.x + X, m_Given.TileSize.width(), Tile.x, End);
            Tile.width = End - Tile.x;
            NextX = std::min(Block.width, End - Block.x);
            lightInTile({Block.x + X, Block.y + Y, NextX - X, NextY - Y}, Tile, Where.movedBy(X, Y));
        }
    }
}

void OrvLitPicture::Share::read(
    int Slot, const GeglRectangle& Region, std::vector<float>& Pixels, int Stride) const
{
    const size_t Size = (size_t(Stride) * size_t(Region.height) + Width) * 4;
    if (Pixels.size() < Size)
        Pixels.resize(Size);
    OrvPictureProgram(m_Inputs[size_t(Slot)])
        .renderTo(Pixels.data(), Stride * 16, OrvPixelLayout::Premultiplied, Region, m_Level);
}

void OrvLitPicture::Share::addSlopes(int Slot, const GeglRectangle& Part, const GeglRectangle& Tile)
{
    GeglRectangle Region{Part.x - 1, Part.y - 1, Part.width + 2, Part.height + 2};
    gegl_rectangle_intersect(&Region, &Region, &Tile);
    const int ReadStride = roundedUp(Region.width);
    read(Slot, Region, m_Work.HeightPixels, ReadStride);

    // One height around the part on all sides; beyond the tile's edge the surface goes on as it came.
    const int Stride = Part.width + 2 + Width;
    m_Work.Heights.resize(size_t(Stride) * size_t(Part.height + 2) + Width);
    const int Left = Region.x - Part.x + 1, Top = Region.y - Part.y + 1;
    const auto rowAt = [&](int Row) { return m_Work.Heights.data() + size_t(Row) * size_t(Stride); };
    for (int Row = 0; Row < Region.height; ++Row) {
        float* pRow = rowAt(Top + Row);
        m_Kernels.scalars(m_Given.Slots[Slot],
            m_Work.HeightPixels.data() + size_t(Row) * size_t(ReadStride) * 4, Region.width, pRow + Left);
        const int Last = Part.width, Inwards = Region.width > 1 ? 1 : 0;
        if (Left == 1)
            pRow[0] = 2.0f * pRow[1] - pRow[1 + Inwards];
        if (Left + Region.width == Last + 1)
            pRow[Last + 1] = 2.0f * pRow[Last] - pRow[Last - Inwards];
    }
    const auto continueRows = [&](int Beyond, int Edge, int Inside) {
        for (int X = 0; X < Part.width + 2; ++X)
            rowAt(Beyond)[X] = 2.0f * rowAt(Edge)[X] - rowAt(Inside)[X];
    };
    const int Last = Part.height, Inwards = Region.height > 1 ? 1 : 0;
    if (Top == 1)
        continueRows(0, 1, 1 + Inwards);
    if (Top + Region.height == Last + 1)
        continueRows(Last + 1, Last, Last - Inwards);

    const float Scale = Slot == Parameters::Height ? m_Given.HeightScale : m_Given.BumpScale;
    const float ScaleU = Scale * float(m_Given.TileSize.width()) / float(2 << m_Level);
    const float ScaleV = Scale * float(m_Given.TileSize.height()) / float(2 << m_Level);
    const int SlopeStride = roundedUp(Part.width);
    if (!m_HasSlopes) {
        m_Work.SlopesU.assign(size_t(SlopeStride) * size_t(Part.height), 0.0f);
        m_Work.SlopesV.assign(size_t(SlopeStride) * size_t(Part.height), 0.0f);
        m_HasSlopes = true;
    }
    for (int Row = 0; Row < Part.height; ++Row) {
        const float *pAbove = rowAt(Row), *pHere = rowAt(Row + 1), *pBelow = rowAt(Row + 2);
        float* pU = m_Work.SlopesU.data() + size_t(Row) * size_t(SlopeStride);
        float* pV = m_Work.SlopesV.data() + size_t(Row) * size_t(SlopeStride);
        for (int X = 0; X < Part.width; ++X) {
            pU[X] += (pHere[X + 2] - pHere[X]) * ScaleU;
            pV[X] += (pAbove[X + 1] - pBelow[X + 1]) * ScaleV;
        }
    }
}

void OrvLitPicture::Share::lightInTile(
    const GeglRectangle& Part, const GeglRectangle& Tile, const Output& Where)
{
    const int Stride = roundedUp(Part.width);
    const auto PixelSize = float(1 << m_Level);
    m_HasSlopes = false;
    OrvShadingRow Row = {};
    for (int Slot = 0; Slot < Parameters::SlotCount; ++Slot) {
        if (!m_Given.reads(Slot))
            continue;
        if (m_Given.holdsHeights(Slot)) {
            if (m_Given.WhichModel != Parameters::Unlit)
                addSlopes(Slot, Part, Tile);
            continue;
        }
        read(Slot, Part, m_Work.Pixels[size_t(Slot)], Stride);
        Row.pInputs[Slot] = m_Work.Pixels[size_t(Slot)].data();
    }
    Row.pParameters = &m_Given;
    if (m_HasSlopes) {
        Row.pSlopesU = m_Work.SlopesU.data();
        Row.pSlopesV = m_Work.SlopesV.data();
    }
    Row.StepU = PixelSize / float(m_Given.TileSize.width());
    Row.U = (float(Part.x) + 0.5f) * Row.StepU;
    Row.Count = Part.width;
    const bool WritesDirectly = Where.Layout == OrvPixelLayout::Premultiplied;
    if (m_Work.Row.size() < size_t(Stride) * 4)
        m_Work.Row.resize(size_t(Stride) * 4);
    for (int Y = 0; Y < Part.height; ++Y) {
        const float FromTop = (float(Part.y + Y) + 0.5f) * PixelSize;
        Row.V = (float(m_Given.PlaneSize.height()) - FromTop) / float(m_Given.TileSize.height());
        char* pTo = Where.pPixels + Y * Where.Stride;
        Row.pResult = WritesDirectly ? reinterpret_cast<float*>(pTo) : m_Work.Row.data();
        m_Kernels.light(Row);
        if (!WritesDirectly)
            OrvPixelKernels::best().narrowPremultiplied(Where.Layout, Row.pResult, Part.width, pTo);
        for (const float*& pInput : Row.pInputs) {
            if (pInput)
                pInput += Stride * 4;
        }
        if (m_HasSlopes) {
            Row.pSlopesU += Stride;
            Row.pSlopesV += Stride;
        }
    }
}

OrvLitPicture::OrvLitPicture(const OrvShadingParameters& Given, Pictures Inputs)
    : m_Given(Given)
    , m_Inputs(std::move(Inputs))
{
}

double OrvLitPicture::pixelsPerThread() const
{
    return 8000.0
        / double(1 + std::count_if(m_Inputs.begin(), m_Inputs.end(), [](const auto& p) { return p; }));
}

void OrvLitPicture::prepareInputs(const GeglRectangle& Region, int Level) const
{
    for (const OrvPicture::Pointer& pInput : m_Inputs) {
        if (pInput && Level > 0)
            OrvPictureProgram::prepare(pInput, Region, Level);
    }
}

void OrvLitPicture::renderOutput(GeglOperationContext* pContext, const GeglRectangle& Region, int Level) const
{
    GeglBuffer* pTarget = OrvPictureProgram::target(pContext, Region, Level);
    const GeglRectangle AtLevel = OrvPictureProgram::atLevel(Region, Level);
    if (gegl_rectangle_is_empty(&AtLevel))
        return;
    prepareInputs(AtLevel, Level);
    gegl_parallel_distribute_area(&AtLevel, pixelsPerThread(), [&](const GeglRectangle* pArea) {
        Share Work(*this, Level);
        GeglBufferIterator* pIterator = gegl_buffer_iterator_new(pTarget, pArea, Level,
            OrvPixelBabl::format(OrvPixelLayout::Premultiplied), GEGL_ACCESS_WRITE, GEGL_ABYSS_NONE, 1);
        while (gegl_buffer_iterator_next(pIterator)) {
            const GeglRectangle& Block = pIterator->items[0].roi;
            Work.light(Block,
                {static_cast<char*>(pIterator->items[0].data), qsizetype(Block.width) * 16,
                    OrvPixelLayout::Premultiplied});
        }
    });
}

void OrvLitPicture::renderTo(
    void* pPixels, int Stride, OrvPixelLayout Layout, const GeglRectangle& Region, int Level) const
{
    const Output Whole{static_cast<char*>(pPixels), Stride, Layout};
    const auto levelEdge = [Level](int Edge) { return (Edge + (1 << Level) - 1) >> Level; };
    const GeglRectangle Plane{
        0, 0, levelEdge(m_Given.PlaneSize.width()), levelEdge(m_Given.PlaneSize.height())};
    if (!gegl_rectangle_contains(&Plane, &Region)) {
        for (int Row = 0; Row < Region.height; ++Row)
            std::memset(Whole.movedBy(0, Row).pPixels, 0, size_t(Region.width) * orvBytesPerPixel(Layout));
    }
    GeglRectangle Inside;
    if (!gegl_rectangle_intersect(&Inside, &Region, &Plane))
        return;
    prepareInputs(Inside, Level);
    gegl_parallel_distribute_area(&Inside, pixelsPerThread(), [&](const GeglRectangle* pArea) {
        Share Work(*this, Level);
        // Blocks within columns of the engine's tiles, in which inputs are stored.
        const int Right = pArea->x + pArea->width, Bottom = pArea->y + pArea->height;
        for (int Y = pArea->y; Y < Bottom; Y += RowsAtOnce) {
            for (int X = pArea->x, NextX = X; X < Right; X = NextX) {
                NextX = std::min(Right, (X / ColumnsAtOnce + 1) * ColumnsAtOnce);
                Work.light({X, Y, NextX - X, std::min(RowsAtOnce, Bottom - Y)},
                    Whole.movedBy(X - Region.x, Y - Region.y));
            }
        }
    });
}
