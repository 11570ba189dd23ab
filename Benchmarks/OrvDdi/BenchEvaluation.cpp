// How fast a stack of layers is computed, next to the least that the machine could need for it: a loop
// written by hand over the same pixels in plain memory, in the same run. Prints the times and, at the end,
// the ratios.

#include "Benchmarks/OrvDdi/EngineBenchmark.h"

#include "OrvDdi/Image/OrvColor.h"

#include <cmath>
#include <cstring>

#if defined(__x86_64__)
#include <immintrin.h>
#define ORV_FLOOR_TARGET __attribute__((target("avx2,fma,f16c")))
#else
#define ORV_FLOOR_TARGET
#endif

namespace {

using EngineBenchmark::FloatFormat;

constexpr int Edge = 4096;
constexpr int LayerCount = 20;
constexpr int TileEdge = 128;
constexpr int TilesAlong = Edge / TileEdge;
constexpr int TilePixels = TileEdge * TileEdge;
const QRect Canvas(0, 0, Edge, Edge);
const QRect Dab(1900, 1700, 256, 256);
const OrvBlendMode Modes[]
    = {OrvBlendMode::Normal, OrvBlendMode::Multiply, OrvBlendMode::Screen, OrvBlendMode::Overlay};

/// How the layers' pixels are stored.
enum Storage { Float, Half, Byte, SrgbByte };
const std::pair<Storage, const char*> Storages[]
    = {{Float, "float"}, {Half, "half"}, {Byte, "8-bit"}, {SrgbByte, "8-bit sRGB"}};

/// What a stack is made of.
struct Kind {
    Storage Stored = Float;
    int EmptyLayers = 0; ///< between the painted ones
    bool operator!=(const Kind& Other) const
    {
        return Stored != Other.Stored || EmptyLayers != Other.EmptyLayers;
    }
};

OrvPixelFormat formatOf(Storage Stored)
{
    const GLenum Depth = Stored == Float ? GL_FLOAT : Stored == Half ? GL_HALF_FLOAT : GL_UNSIGNED_BYTE;
    return {Depth, OrvPixelFormat::Rgba, Stored == SrgbByte ? OrvPixelFormat::Srgb : OrvPixelFormat::Linear};
}

const OrvPixelFormat MaskFormat{GL_UNSIGNED_BYTE, OrvPixelFormat::Scalar, OrvPixelFormat::Linear};

/// A stack in the engine, and the same pixels as contiguous tiles in memory.
class Stack {
public:
    explicit Stack(const Kind& Wanted);

    OrvEngineNode& node() { return *m_Blends.back(); }
    /// As after a dab of the brush on a layer in the middle.
    void touch(const QRect& Region) { m_Sources[LayerCount / 2]->pixelsWritten(Region); }
    void paint(const QRect& Region);
    void computeByHand(const QRect& Region, float* pResult) const;

private:
    struct Layer {
        OrvBlendMode Mode;
        float Amount;
        std::vector<char> Pixels;
        std::vector<unsigned char> Mask;
    };
    void addBlend(OrvEngineNode* pOver, OrvBlendMode Mode, float Amount);
    void tileByHand(int Tile, const QRect& Within, float* pSums) const;
    static void toTiles(const OrvImageBuffer& Buffer, char* pTiles);

    const Storage m_Storage;
    const OrvPixelFormat m_Format;
    std::vector<Layer> m_Layers;
    std::vector<std::unique_ptr<OrvEngineNode>> m_Sources, m_Blends, m_Empty;
    OrvImageBuffer m_Painted; ///< of the layer in the middle
};

void Stack::addBlend(OrvEngineNode* pOver, OrvBlendMode Mode, float Amount)
{
    auto pBlend = OrvEngineNode::createBlend();
    pBlend->connectInput(OrvEngineNode::Base, m_Blends.empty() ? nullptr : m_Blends.back().get());
    pBlend->connectInput(OrvEngineNode::Over, pOver);
    OrvBlendParameters Parameters;
    Parameters.Mode = Mode;
    Parameters.Amount = Amount;
    pBlend->setBlend(Parameters);
    m_Blends.push_back(std::move(pBlend));
}

Stack::Stack(const Kind& Wanted)
    : m_Storage(Wanted.Stored)
    , m_Format(formatOf(Wanted.Stored))
{
    // Layers are of one colour until they are painted on, and keep their pixels when that is undone.
    m_Empty.push_back(OrvEngineNode::createUniform());
    m_Empty.back()->setUniform(OrvColor::clear(), Canvas);
    m_Empty.push_back(OrvEngineNode::createSource());
    m_Empty.back()->setBuffer(OrvImageBuffer(Canvas, m_Format));
    std::vector<OrvEngineNode*> Masked;
    std::vector<float> Row(Edge * 4 * 64);
    EngineBenchmark::Noise Noise;
    for (int Index = 0; Index < LayerCount; ++Index) {
        Layer One{Modes[Index % 4], 0.8f, {}, {}};
        OrvImageBuffer Pixels(Canvas, m_Format), Mask;
        for (int Y = 0; Y < Edge; Y += 64) {
            for (float& Value : Row)
                Value = Noise.value();
            Pixels.write(QRect(0, Y, Edge, 64), FloatFormat, Row.data());
        }
        One.Pixels.resize(size_t(Edge) * Edge * size_t(m_Format.bytesPerPixel()));
        toTiles(Pixels, One.Pixels.data());
        m_Sources.push_back(OrvEngineNode::createSource());
        m_Sources.back()->setBuffer(Pixels);
        if (Index == LayerCount / 2)
            m_Painted = Pixels;
        addBlend(m_Sources.back().get(), One.Mode, One.Amount);
        Masked.push_back(m_Blends.back().get());
        m_Layers.push_back(std::move(One));
        for (int Empty = 0; Empty < Wanted.EmptyLayers / LayerCount; ++Empty)
            addBlend(m_Empty[size_t(Empty) % 2].get(), Modes[Empty % 4], 1.0f);
    }
    for (int Index = 0; Index < LayerCount; Index += 4) {
        OrvImageBuffer Mask(Canvas, MaskFormat);
        std::vector<unsigned char> Bytes(Edge * 64);
        for (int Y = 0; Y < Edge; Y += 64) {
            for (unsigned char& Value : Bytes)
                Value = Noise.byte();
            Mask.write(QRect(0, Y, Edge, 64), MaskFormat, Bytes.data());
        }
        m_Layers[size_t(Index)].Mask.resize(size_t(Edge) * Edge);
        toTiles(Mask, reinterpret_cast<char*>(m_Layers[size_t(Index)].Mask.data()));
        m_Sources.push_back(OrvEngineNode::createSource());
        m_Sources.back()->setBuffer(Mask);
        Masked[size_t(Index)]->connectInput(OrvEngineNode::Mask, m_Sources.back().get());
    }
}

void Stack::paint(const QRect& Region)
{
    const std::vector<float> Pixels(size_t(Region.width()) * size_t(Region.height()) * 4, 0.75f);
    m_Painted.write(Region, FloatFormat, Pixels.data());
    touch(Region);
}

void Stack::toTiles(const OrvImageBuffer& Buffer, char* pTiles)
{
    const int TileBytes = TilePixels * Buffer.format().bytesPerPixel();
    for (int Tile = 0; Tile < TilesAlong * TilesAlong; ++Tile) {
        const QRect Rect(Tile % TilesAlong * TileEdge, Tile / TilesAlong * TileEdge, TileEdge, TileEdge);
        Buffer.read(Rect, Buffer.format(), pTiles + size_t(Tile) * size_t(TileBytes));
    }
}

// ---- the floor: pixels of four floats, one vector each

using Four = float __attribute__((vector_size(16)));

const std::vector<float> LinearOfByte = [] {
    std::vector<float> Table;
    for (int Byte = 0; Byte < 256; ++Byte) {
        const double Value = Byte / 255.0;
        Table.push_back(float(Value <= 0.04045 ? Value / 12.92 : std::pow((Value + 0.055) / 1.055, 2.4)));
    }
    return Table;
}();

template <Storage Stored>
ORV_FLOOR_TARGET inline Four load(const char* pPixels, int Index, const float* pLinear)
{
    if constexpr (Stored == Float) {
        Four Pixel;
        memcpy(&Pixel, pPixels + Index * 16, 16);
        return Pixel;
    } else if constexpr (Stored == Half) {
#if defined(__x86_64__)
        return (Four)_mm_cvtph_ps(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(pPixels + Index * 8)));
#else
        const auto* pHalves = reinterpret_cast<const _Float16*>(pPixels + Index * 8);
        return Four{float(pHalves[0]), float(pHalves[1]), float(pHalves[2]), float(pHalves[3])};
#endif
    } else if constexpr (Stored == Byte) {
#if defined(__x86_64__)
        int Pixel;
        memcpy(&Pixel, pPixels + Index * 4, 4);
        return (Four)_mm_cvtepi32_ps(_mm_cvtepu8_epi32(_mm_cvtsi32_si128(Pixel))) * (1.0f / 255);
#else
        const auto* p = reinterpret_cast<const unsigned char*>(pPixels) + Index * 4;
        return Four{float(p[0]), float(p[1]), float(p[2]), float(p[3])} * (1.0f / 255);
#endif
    } else {
        const auto* p = reinterpret_cast<const unsigned char*>(pPixels) + Index * 4;
        return Four{pLinear[p[0]], pLinear[p[1]], pLinear[p[2]], float(p[3]) * (1.0f / 255)};
    }
}

template <Storage Stored, OrvBlendMode Mode>
ORV_FLOOR_TARGET void blendRow(
    const char* pPixels, const unsigned char* pMask, float Amount, int Count, float* pSums)
{
    const float* pLinear = LinearOfByte.data();
    for (int Index = 0; Index < Count; ++Index) {
        const Four Over = load<Stored>(pPixels, Index, pLinear);
        const float Alpha = Over[3] * (pMask ? Amount / 255 * pMask[Index] : Amount);
        const Four S = Four{Over[0], Over[1], Over[2], 1.0f} * Alpha;
        Four B;
        memcpy(&B, pSums + Index * 4, 16);
        const float BaseAlpha = B[3];
        Four Result;
        if constexpr (Mode == OrvBlendMode::Normal) {
            Result = S + B * (1 - Alpha);
        } else if constexpr (Mode == OrvBlendMode::Multiply) {
            Result = S * B + S * (1 - BaseAlpha) + B * (1 - Alpha);
        } else if constexpr (Mode == OrvBlendMode::Screen) {
            Result = S + B - S * B;
        } else {
            const Four Low = 2.0f * S * B, High = Alpha * BaseAlpha - 2.0f * (BaseAlpha - B) * (Alpha - S);
            Result = (2.0f * B <= BaseAlpha ? Low : High) + S * (1 - BaseAlpha) + B * (1 - Alpha);
        }
        memcpy(pSums + Index * 4, &Result, 16);
    }
}

template <Storage Stored>
void blendLayerRow(
    OrvBlendMode Mode, const char* pPixels, const unsigned char* pMask, float Amount, int Count, float* pSums)
{
    switch (Mode) {
    case OrvBlendMode::Multiply:
        return blendRow<Stored, OrvBlendMode::Multiply>(pPixels, pMask, Amount, Count, pSums);
    case OrvBlendMode::Screen:
        return blendRow<Stored, OrvBlendMode::Screen>(pPixels, pMask, Amount, Count, pSums);
    case OrvBlendMode::Overlay:
        return blendRow<Stored, OrvBlendMode::Overlay>(pPixels, pMask, Amount, Count, pSums);
    default:
        return blendRow<Stored, OrvBlendMode::Normal>(pPixels, pMask, Amount, Count, pSums);
    }
}

void Stack::tileByHand(int Tile, const QRect& Within, float* pSums) const
{
    // Some rows at a time stay in the nearest cache through all layers.
    constexpr int RowsAtOnce = 4;
    const int BytesPerPixel = m_Format.bytesPerPixel();
    for (int Row = Within.top(); Row <= Within.bottom(); Row += RowsAtOnce) {
        const int End = std::min(Row + RowsAtOnce, Within.bottom() + 1);
        const int Full = Within.width() == TileEdge ? 1 : End - Row;
        const int Length = Full == 1 ? (End - Row) * TileEdge : Within.width();
        memset(pSums + (Row * TileEdge + Within.left()) * 4, 0,
            size_t((End - Row - 1) * TileEdge + Within.width()) * 16);
        for (const Layer& One : m_Layers) {
            for (int Part = 0; Part < Full; ++Part) {
                const int First = (Row + Part) * TileEdge + Within.left();
                const size_t Pixel = size_t(Tile) * TilePixels + size_t(First);
                const char* pPixels = One.Pixels.data() + Pixel * size_t(BytesPerPixel);
                const unsigned char* pMask = One.Mask.empty() ? nullptr : One.Mask.data() + Pixel;
                switch (m_Storage) {
                case Float:
                    blendLayerRow<Float>(One.Mode, pPixels, pMask, One.Amount, Length, pSums + First * 4);
                    break;
                case Half:
                    blendLayerRow<Half>(One.Mode, pPixels, pMask, One.Amount, Length, pSums + First * 4);
                    break;
                case Byte:
                    blendLayerRow<Byte>(One.Mode, pPixels, pMask, One.Amount, Length, pSums + First * 4);
                    break;
                case SrgbByte:
                    blendLayerRow<SrgbByte>(One.Mode, pPixels, pMask, One.Amount, Length, pSums + First * 4);
                    break;
                }
            }
        }
    }
}

/// The whole result as premultiplied tiles, a part nowhere: the floor is spared everything that comes after
/// blending.
void Stack::computeByHand(const QRect& Region, float* pResult) const
{
    EngineBenchmark::onAllCores([&](int Thread, int ThreadCount) {
        std::vector<float> Sums(TilePixels * 4);
        int Number = 0;
        for (int Row = Region.top() / TileEdge; Row <= Region.bottom() / TileEdge; ++Row) {
            for (int Column = Region.left() / TileEdge; Column <= Region.right() / TileEdge; ++Column) {
                if (Number++ % ThreadCount != Thread)
                    continue;
                const int Tile = Row * TilesAlong + Column;
                const QPoint Corner(Column * TileEdge, Row * TileEdge);
                const QRect Within = (QRect(Corner, QSize(TileEdge, TileEdge)) & Region).translated(-Corner);
                tileByHand(
                    Tile, Within, Region == Canvas ? pResult + size_t(Tile) * TilePixels * 4 : Sums.data());
            }
        }
    });
}

EngineBenchmark::Held<Stack, Kind> Stacks;

QRect atQuarter(const QRect& Region)
{
    return QRect(Region.topLeft() / 4, Region.size() / 4);
}

/// The whole picture again, or a part of it after a dab there.
void quarterScale(benchmark::State& State, const Kind& Wanted, const QRect& Painted)
{
    Stack& Layers = Stacks.of(Wanted);
    const QRect Region = atQuarter(Painted.isEmpty() ? Canvas : Painted);
    std::vector<float> Result(size_t(Region.width()) * size_t(Region.height()) * 4);
    for (auto _ : State) {
        if (!Painted.isEmpty())
            Layers.paint(Painted);
        Layers.node().render(Region, 0.25, FloatFormat, Result.data());
        benchmark::ClobberMemory();
    }
}

void measure(const Kind& Wanted, const std::string& Name)
{
    EngineBenchmark::measure(Stacks, Wanted, Canvas, "20 layers of 4096, " + Name, 0.3);
    EngineBenchmark::measure(Stacks, Wanted, Dab, "dab of 256, " + Name, 0.1);
    RatioReporter::measure(
        "quarter scale, " + Name, [Wanted](benchmark::State& State) { quarterScale(State, Wanted, QRect()); },
        0.1);
    RatioReporter::measure(
        "quarter scale, dab of 256, " + Name,
        [Wanted](benchmark::State& State) { quarterScale(State, Wanted, Dab); }, 0.1);
}

} // namespace

int main(int ArgumentCount, char** pArguments)
{
    benchmark::Initialize(&ArgumentCount, pArguments);
    for (const auto& Stored : Storages)
        measure({Stored.first, 0}, Stored.second);
    measure({Half, 200}, "half, among 200 empty");
    return EngineBenchmark::run(Stacks);
}
