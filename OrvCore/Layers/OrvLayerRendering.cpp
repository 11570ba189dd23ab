#include "OrvCore/Layers/OrvLayerRendering.h"

#include "OrvCore/Network/OrvNodeEvaluation.h"

#include "OrvDdi/Engine/OrvEngineNode.h"
#include "OrvDdi/Image/OrvUdimLayout.h"

#include <QtCore/QByteArray>

#include <cmath>
#include <vector>

namespace {

constexpr int RowsAtOnce = 256;

template <class Step>
void forEachBand(const OrvUdimLayout& Layout, Step Do)
{
    for (const int Tile : Layout.tiles()) {
        const QRect Whole = Layout.tileRect(Tile);
        for (int Top = 0; Top < Whole.height(); Top += RowsAtOnce)
            Do(Whole & QRect(Whole.left(), Whole.top() + Top, Whole.width(), RowsAtOnce));
    }
}

} // namespace

namespace OrvLayerRendering {

OrvImageBuffer render(const OrvSnBaseNode* pNode, const OrvUdimLayout& Layout, const OrvPixelFormat& Format)
{
    OrvImageBuffer Result(Layout.extent(), Format);
    OrvEngineNode* pEngine = OrvNodeEvaluation::result(pNode);
    if (!pEngine)
        return Result;
    QByteArray Pixels;
    forEachBand(Layout, [&](const QRect& Band) {
        Pixels.resize(Band.width() * Band.height() * Format.bytesPerPixel());
        pEngine->render(Band, 1.0, Format, Pixels.data());
        Result.write(Band, Format, Pixels.constData());
    });
    return Result;
}

OrvImageBuffer renderDifference(const OrvSnBaseNode* pUpper, const OrvSnBaseNode* pLower,
    const OrvUdimLayout& Layout, const OrvPixelFormat& Format)
{
    constexpr float SameWithin = 1.0f / 4096.0f;
    const OrvPixelFormat Linear{GL_FLOAT, OrvPixelFormat::Rgba, OrvPixelFormat::Linear};
    OrvImageBuffer Result(Layout.extent(), Format);
    OrvEngineNode* pUpperEngine = OrvNodeEvaluation::result(pUpper);
    OrvEngineNode* pLowerEngine = OrvNodeEvaluation::result(pLower);
    if (!pUpperEngine)
        return Result;
    std::vector<float> Upper, Lower;
    forEachBand(Layout, [&](const QRect& Band) {
        const std::size_t Count = std::size_t(Band.width()) * Band.height() * 4;
        Upper.resize(Count);
        Lower.assign(Count, 0.0f);
        pUpperEngine->render(Band, 1.0, Linear, Upper.data());
        if (pLowerEngine)
            pLowerEngine->render(Band, 1.0, Linear, Lower.data());
        for (std::size_t Pixel = 0; Pixel < Count; Pixel += 4) {
            bool Same = true;
            for (std::size_t Component = Pixel; Component < Pixel + 4; ++Component)
                Same = Same && std::abs(Upper[Component] - Lower[Component]) <= SameWithin;
            if (Same)
                std::fill_n(Upper.begin() + std::ptrdiff_t(Pixel), 4, 0.0f);
        }
        Result.write(Band, Linear, Upper.data());
    });
    return Result;
}

} // namespace OrvLayerRendering
