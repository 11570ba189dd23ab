#include "OrvDdi/Image/OrvResamplingTaps.h"

#include <algorithm>
#include <cmath>

std::vector<OrvResamplingTaps> OrvResamplingTaps::along(
    int First, int Count, double Ratio, int SourceFirst, int SourceSize)
{
    const double Reach = std::max(1.0, Ratio);
    const int SourceLast = SourceFirst + SourceSize - 1;
    std::vector<OrvResamplingTaps> All(static_cast<std::size_t>(Count));
    for (int Index = 0; Index < Count; ++Index) {
        const double Center = (First + Index + 0.5) * Ratio - 0.5;
        OrvResamplingTaps& One = All[std::size_t(Index)];
        One.First = std::clamp(int(std::ceil(Center - Reach)), SourceFirst, SourceLast);
        const int Last = std::clamp(int(std::floor(Center + Reach)), One.First, SourceLast);
        double Sum = 0.0;
        for (int Position = One.First; Position <= Last; ++Position) {
            const double Weight = std::max(0.0, 1.0 - std::abs(Position - Center) / Reach);
            One.Weights.push_back(float(Weight));
            Sum += Weight;
        }
        for (float& Weight : One.Weights)
            Weight = Sum > 0.0 ? float(Weight / Sum) : 1.0f / float(One.Weights.size());
    }
    return All;
}
