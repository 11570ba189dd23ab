#include "OrvCore/Layers/OrvLayerRendering.h"

#include "OrvCore/Channels/OrvChannelSpace.h"
#include "OrvCore/Network/OrvNodeEvaluation.h"
#include "OrvCore/Network/OrvSnMergeNode.h"

#include "OrvDdi/Color/OrvColorManager.h"
#include "OrvDdi/Engine/OrvEngineNode.h"
#include "OrvDdi/Image/OrvUdimLayout.h"

#include <QtCore/QByteArray>
#include <QtCore/QElapsedTimer>

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

/// A piece begins with so many rows, and pieces grow while they stay quick: many rows of a blur take no
/// longer than a few.
constexpr int FirstRows = 256;
constexpr qint64 Quick = 600; // ms
constexpr int MostPixels = 8 * 1024 * 1024;
const OrvPixelFormat LinearColor{GL_FLOAT, OrvPixelFormat::Rgba, OrvPixelFormat::Linear};
const OrvPixelFormat LinearScalar{GL_FLOAT, OrvPixelFormat::Scalar, OrvPixelFormat::Linear};

OrvProgress& progress()
{
    static OrvProgress Installed;
    return Installed;
}

int pixelCount(const QRect& Band)
{
    return Band.width() * Band.height();
}

/// Makes the buffer band by band; null when that was cancelled.
template <class Step>
OrvImageBuffer madeInBands(const OrvUdimLayout& Layout, const OrvPixelFormat& Format, Step Do)
{
    const int Total = Layout.tiles().size() * Layout.tileSize().height();
    OrvImageBuffer Result(Layout.extent(), Format);
    QElapsedTimer Timer;
    int Rows = FirstRows, Done = 0;
    for (const int Tile : Layout.tiles()) {
        const QRect Whole = Layout.tileRect(Tile);
        for (int Top = Whole.top(); Top <= Whole.bottom();) {
            const QRect Band = Whole & QRect(Whole.left(), Top, Whole.width(), Rows);
            Timer.start();
            Do(Band, Result);
            if (Timer.elapsed() < Quick && Band.width() * Rows * 2 <= MostPixels)
                Rows *= 2;
            Top += Band.height();
            Done += Band.height();
            if (!OrvLayerRendering::step(Done, Total))
                return {};
        }
    }
    return Result;
}

OrvImageBuffer renderEngineNode(
    OrvEngineNode* pEngine, const OrvUdimLayout& Layout, const OrvPixelFormat& Format)
{
    if (!pEngine)
        return OrvImageBuffer(Layout.extent(), Format);
    QByteArray Pixels;
    return madeInBands(Layout, Format, [&](const QRect& Band, OrvImageBuffer& Result) {
        Pixels.resize(pixelCount(Band) * Format.bytesPerPixel());
        pEngine->render(Band, 1.0, Format, Pixels.data());
        Result.write(Band, Format, Pixels.constData());
    });
}

/// What the engine yields, in another colour space.
class Converted {
public:
    Converted(OrvEngineNode* pSource, const QString& From, const QString& To)
        : m_pNode(pSource)
    {
        if (!pSource || OrvColorManager::isIdentity(From, To))
            return;
        m_pConversion = OrvEngineNode::createColorConversion(From, To);
        m_pConversion->connectInput(OrvEngineNode::Base, pSource);
        m_pNode = m_pConversion.get();
    }
    OrvEngineNode* node() const { return m_pNode; }

private:
    std::unique_ptr<OrvEngineNode> m_pConversion;
    OrvEngineNode* m_pNode;
};

bool areSame(const float* pUpper, const float* pLower)
{
    constexpr float SameWithin = 1.0f / 4096.0f;
    return std::equal(pUpper, pUpper + 4, pLower,
        [](float Upper, float Lower) { return std::abs(Upper - Lower) <= SameWithin; });
}

/// Replaces the upper pixel by the one that has to lie over the lower pixel to look like it. All straight.
void takeAway(const float* pLower, bool AnyColor, float* pUpper)
{
    constexpr float Opaque = 1.0f - 1.0f / 1024.0f;
    constexpr float Least = 1.0f / 1024.0f;
    if (areSame(pUpper, pLower)) {
        std::fill_n(pUpper, 4, 0.0f);
        return;
    }
    if (pLower[3] >= Opaque)
        return;
    const float Alpha = (pUpper[3] - pLower[3]) / (1.0f - pLower[3]);
    if (Alpha < Least)
        return;
    float Over[3];
    for (int Component = 0; Component < 3; ++Component) {
        Over[Component]
            = (pUpper[Component] * pUpper[3] - (1.0f - Alpha) * pLower[Component] * pLower[3]) / Alpha;
        if (!AnyColor && (Over[Component] < -0.001f || Over[Component] > 1.001f))
            return;
    }
    std::copy_n(Over, 3, pUpper);
    pUpper[3] = Alpha;
}

} // namespace

namespace OrvLayerRendering {

OrvImageBuffer render(const OrvSnBaseNode* pNode, const OrvUdimLayout& Layout, const OrvPixelFormat& Format,
    const QString& Space)
{
    return renderEngineNode(
        Converted(OrvNodeEvaluation::result(pNode), OrvChannelSpace::ofNode(pNode), Space).node(), Layout,
        Format);
}

OrvImageBuffer renderInput(const OrvSnBaseNode* pNode, const QString& InputName, const OrvUdimLayout& Layout,
    const OrvPixelFormat& Format, const QString& Space)
{
    const Converted Input(
        OrvNodeEvaluation::inputResult(pNode, InputName), OrvChannelSpace::ofInput(pNode, InputName), Space);
    return renderEngineNode(Input.node(), Layout, Format);
}

OrvImageBuffer renderMask(
    const OrvSnBaseNode* pNode, const OrvUdimLayout& Layout, const OrvPixelFormat& Format)
{
    return renderEngineNode(OrvNodeEvaluation::inputResult(pNode, OrvSnNames::Mask), Layout, Format);
}

OrvImageBuffer renderAlphaOfInput(const OrvSnBaseNode* pNode, const QString& InputName,
    const OrvUdimLayout& Layout, const OrvPixelFormat& Format)
{
    OrvEngineNode* pEngine = OrvNodeEvaluation::inputResult(pNode, InputName);
    if (!pEngine)
        return OrvImageBuffer(Layout.extent(), Format);
    std::vector<float> Pixels, Alpha;
    return madeInBands(Layout, Format, [&](const QRect& Band, OrvImageBuffer& Result) {
        Alpha.resize(std::size_t(pixelCount(Band)));
        Pixels.resize(Alpha.size() * 4);
        pEngine->render(Band, 1.0, LinearColor, Pixels.data());
        for (std::size_t Index = 0; Index < Alpha.size(); ++Index)
            Alpha[Index] = Pixels[Index * 4 + 3];
        Result.write(Band, LinearScalar, Alpha.data());
    });
}

OrvImageBuffer renderMasked(const OrvSnMergeNode* pMerge, const OrvUdimLayout& Layout,
    const OrvPixelFormat& Format, const QString& Space)
{
    const Converted Content(OrvNodeEvaluation::inputResult(pMerge, OrvSnNames::Over),
        OrvChannelSpace::ofInput(pMerge, OrvSnNames::Over), Space);
    OrvEngineNode* pContent = Content.node();
    OrvEngineNode* pMask = OrvNodeEvaluation::inputResult(pMerge, OrvSnNames::Mask);
    if (!pContent || !pMask)
        return renderEngineNode(pContent, Layout, Format);
    std::vector<float> Pixels, Factors;
    return madeInBands(Layout, Format, [&](const QRect& Band, OrvImageBuffer& Result) {
        Factors.resize(std::size_t(pixelCount(Band)));
        Pixels.resize(Factors.size() * 4);
        pContent->render(Band, 1.0, LinearColor, Pixels.data());
        pMask->render(Band, 1.0, LinearScalar, Factors.data());
        for (std::size_t Index = 0; Index < Factors.size(); ++Index)
            Pixels[Index * 4 + 3] *= Factors[Index];
        Result.write(Band, LinearColor, Pixels.data());
    });
}

OrvImageBuffer renderDifference(const OrvSnBaseNode* pUpper, const OrvSnBaseNode* pLower,
    const OrvUdimLayout& Layout, const OrvPixelFormat& Format, const QString& Space)
{
    OrvEngineNode* pUpperEngine = OrvNodeEvaluation::result(pUpper);
    const QString Blended = OrvChannelSpace::ofNode(pUpper);
    const Converted Below(OrvNodeEvaluation::result(pLower), OrvChannelSpace::ofNode(pLower), Blended);
    OrvEngineNode* pLowerEngine = Below.node();
    if (!pUpperEngine || !pLowerEngine)
        return render(pUpper, Layout, Format, Space);
    const bool AnyColor = Format.Depth != GL_UNSIGNED_BYTE;
    std::vector<float> Upper, Lower;
    return madeInBands(Layout, Format, [&](const QRect& Band, OrvImageBuffer& Result) {
        Upper.resize(std::size_t(pixelCount(Band)) * 4);
        Lower.resize(Upper.size());
        pUpperEngine->render(Band, 1.0, LinearColor, Upper.data());
        pLowerEngine->render(Band, 1.0, LinearColor, Lower.data());
        for (std::size_t Pixel = 0; Pixel < Upper.size(); Pixel += 4)
            takeAway(Lower.data() + Pixel, AnyColor, Upper.data() + Pixel);
        QString Error; // both are usable
        OrvColorManager::transformPixels(Upper.data(), Band.width(), Band.height(), 0, Blended, Space, Error);
        Result.write(Band, LinearColor, Upper.data());
    });
}

void setProgress(const OrvProgress& Progress)
{
    progress() = Progress;
}

bool step(int Done, int Total)
{
    return !progress() || progress()(Done, Total);
}

} // namespace OrvLayerRendering
