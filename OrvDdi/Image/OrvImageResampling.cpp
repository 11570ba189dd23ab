#include "OrvDdi/Image/OrvImageResampling.h"

#include "OrvDdi/Image/OrvResamplingTaps.h"
#include "OrvDdi/Image/OrvUdimLayout.h"

#include <vector>

namespace {

void premultiply(float* pPixels, int Count)
{
    for (float* pPixel = pPixels; pPixel < pPixels + 4 * Count; pPixel += 4) {
        for (int Component = 0; Component < 3; ++Component)
            pPixel[Component] *= pPixel[3];
    }
}

void unpremultiply(float* pPixels, int Count)
{
    for (float* pPixel = pPixels; pPixel < pPixels + 4 * Count; pPixel += 4) {
        for (int Component = 0; Component < 3; ++Component)
            pPixel[Component] = pPixel[3] > 0.0f ? pPixel[Component] / pPixel[3] : 0.0f;
    }
}

void resampleTile(const OrvImageBuffer& Source, const QRect& From, OrvImageBuffer& Target, const QRect& To)
{
    constexpr int RowsAtOnce = 64;
    OrvPixelFormat Linear = Source.format();
    Linear.Depth = GL_FLOAT;
    Linear.Curve = OrvPixelFormat::Linear;
    const int Components = Linear.componentCount();
    const std::vector<OrvResamplingTaps> Columns
        = OrvResamplingTaps::along(0, To.width(), double(From.width()) / To.width(), 0, From.width());
    const std::vector<OrvResamplingTaps> Rows
        = OrvResamplingTaps::along(0, To.height(), double(From.height()) / To.height(), 0, From.height());
    std::vector<float> Read, Narrow, Written;

    for (int Top = 0; Top < To.height(); Top += RowsAtOnce) {
        const int Count = qMin(RowsAtOnce, To.height() - Top);
        const OrvResamplingTaps& LastTaps = Rows[std::size_t(Top + Count - 1)];
        const int FirstRow = Rows[std::size_t(Top)].First;
        const int RowCount = LastTaps.First + int(LastTaps.Weights.size()) - FirstRow;

        Read.resize(std::size_t(RowCount) * From.width() * Components);
        Source.read(QRect(From.left(), From.top() + FirstRow, From.width(), RowCount), Linear, Read.data());
        if (Components == 4)
            premultiply(Read.data(), RowCount * From.width());

        Narrow.assign(std::size_t(RowCount) * To.width() * Components, 0.0f);
        for (int Row = 0; Row < RowCount; ++Row) {
            const float* pRow = Read.data() + std::size_t(Row) * From.width() * Components;
            float* pOut = Narrow.data() + std::size_t(Row) * To.width() * Components;
            for (const OrvResamplingTaps& Column : Columns) {
                const float* pIn = pRow + std::size_t(Column.First) * Components;
                for (const float Weight : Column.Weights) {
                    for (int Component = 0; Component < Components; ++Component)
                        pOut[Component] += Weight * *pIn++;
                }
                pOut += Components;
            }
        }

        const std::size_t Stride = std::size_t(To.width()) * Components;
        Written.assign(Stride * Count, 0.0f);
        for (int Row = 0; Row < Count; ++Row) {
            const OrvResamplingTaps& Taken = Rows[std::size_t(Top + Row)];
            float* pOut = Written.data() + Stride * Row;
            for (std::size_t Tap = 0; Tap < Taken.Weights.size(); ++Tap) {
                const float* pIn = Narrow.data() + Stride * (std::size_t(Taken.First - FirstRow) + Tap);
                for (std::size_t Index = 0; Index < Stride; ++Index)
                    pOut[Index] += Taken.Weights[Tap] * pIn[Index];
            }
        }
        if (Components == 4)
            unpremultiply(Written.data(), Count * To.width());
        Target.write(QRect(To.left(), To.top() + Top, To.width(), Count), Linear, Written.data());
    }
}

} // namespace

OrvImageBuffer OrvImageResampling::fitted(
    const OrvImageBuffer& Source, const OrvUdimLayout& From, const OrvUdimLayout& To)
{
    if (Source.isNull() || !To.isValid())
        return {};
    OrvImageBuffer Target(To.extent(), Source.format());
    for (const int Tile : To.tiles()) {
        const QRect FromRect = From.tileRect(Tile);
        if (FromRect.isEmpty())
            continue;
        if (From.tileSize() == To.tileSize() && FromRect == To.tileRect(Tile))
            Target.copyFrom(Source, FromRect);
        else
            resampleTile(Source, FromRect, Target, To.tileRect(Tile));
    }
    return Target;
}
