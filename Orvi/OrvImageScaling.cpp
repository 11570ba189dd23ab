#include "Orvi/OrvImageScaling.h"

#include <algorithm>
#include <cmath>
#include <deque>
#include <vector>

namespace {

const OrvPixelFormat WorkFormat{GL_FLOAT, OrvPixelFormat::Rgba, OrvPixelFormat::Linear};
constexpr int Components = 4;
constexpr int ProgressRows = 64;

using Row = std::vector<float>;

/// What one pixel of the target takes from a run of source pixels: a triangle as wide as the pixel and its
/// neighbours.
struct Footprint {
    int First = 0;
    std::vector<float> Weights;
};

std::vector<Footprint> footprints(int SourceLength, int TargetLength)
{
    const double Scale = double(SourceLength) / TargetLength;
    const double Reach = std::max(1.0, Scale);
    std::vector<Footprint> Prints(std::size_t(std::max(0, TargetLength)));
    for (int Target = 0; Target < TargetLength; ++Target) {
        const double Centre = (Target + 0.5) * Scale - 0.5;
        const int First = std::max(0, int(std::ceil(Centre - Reach)));
        const int Last = std::min(SourceLength - 1, int(std::floor(Centre + Reach)));
        Footprint& Print = Prints[std::size_t(Target)];
        Print.First = std::min(First, Last);
        float Sum = 0.0f;
        for (int Source = Print.First; Source <= Last; ++Source) {
            const float Weight = std::max(1e-6f, float(1.0 - std::abs(Source - Centre) / Reach));
            Print.Weights.push_back(Weight);
            Sum += Weight;
        }
        for (float& Weight : Print.Weights)
            Weight /= Sum;
    }
    return Prints;
}

/// One source row, premultiplied and scaled across.
Row scaledRow(const OrvImageBuffer& Source, int Y, const std::vector<Footprint>& Columns)
{
    const QRect Extent = Source.extent();
    Row Pixels(std::size_t(Extent.width()) * Components);
    Source.read(QRect(Extent.left(), Extent.top() + Y, Extent.width(), 1), WorkFormat, Pixels.data());
    for (std::size_t Pixel = 0; Pixel < Pixels.size(); Pixel += Components) {
        for (int Component = 0; Component < 3; ++Component)
            Pixels[Pixel + std::size_t(Component)] *= Pixels[Pixel + 3];
    }
    Row Scaled(Columns.size() * Components, 0.0f);
    float* pOut = Scaled.data();
    for (const Footprint& Print : Columns) {
        const float* pIn = Pixels.data() + std::size_t(Print.First) * Components;
        for (const float Weight : Print.Weights) {
            for (int Component = 0; Component < Components; ++Component)
                pOut[Component] += Weight * pIn[Component];
            pIn += Components;
        }
        pOut += Components;
    }
    return Scaled;
}

} // namespace

bool OrvImageScaling::fill(
    OrvImageBuffer& Target, const QRect& Rect, const OrvImageBuffer& Source, const OrvProgress& Progress)
{
    const QSize SourceSize = Source.extent().size();
    const std::vector<Footprint> Columns = footprints(SourceSize.width(), Rect.width());
    const std::vector<Footprint> Rows = footprints(SourceSize.height(), Rect.height());
    std::deque<Row> Ready; // of the source, the first being number FirstReady
    int FirstReady = 0;
    Row Out(std::size_t(Rect.width()) * Components);
    for (int Y = 0; Y < Rect.height(); ++Y) {
        if (Progress && Y % ProgressRows == 0 && !Progress(Y, Rect.height()))
            return false;
        const Footprint& Print = Rows[std::size_t(Y)];
        for (; FirstReady < Print.First && !Ready.empty(); ++FirstReady)
            Ready.pop_front();
        FirstReady = std::max(FirstReady, Ready.empty() ? Print.First : FirstReady);
        while (FirstReady + int(Ready.size()) < Print.First + int(Print.Weights.size()))
            Ready.push_back(scaledRow(Source, FirstReady + int(Ready.size()), Columns));

        std::fill(Out.begin(), Out.end(), 0.0f);
        for (std::size_t Index = 0; Index < Print.Weights.size(); ++Index) {
            const Row& In = Ready[std::size_t(Print.First - FirstReady) + Index];
            for (std::size_t Number = 0; Number < Out.size(); ++Number)
                Out[Number] += Print.Weights[Index] * In[Number];
        }
        for (std::size_t Pixel = 0; Pixel < Out.size(); Pixel += Components) {
            const float Alpha = Out[Pixel + 3];
            for (int Component = 0; Component < 3; ++Component)
                Out[Pixel + std::size_t(Component)] *= Alpha > 0.0f ? 1.0f / Alpha : 0.0f;
        }
        Target.write(QRect(Rect.left(), Rect.top() + Y, Rect.width(), 1), WorkFormat, Out.data());
    }
    return true;
}
