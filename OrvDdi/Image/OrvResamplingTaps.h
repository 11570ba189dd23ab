#pragma once

#include <vector>

/// Which source positions along one axis one target position takes, and how much of each; the weights sum up
/// to 1. A triangle as wide as a source pixel when growing, as a target pixel when shrinking.
struct OrvResamplingTaps {
    int First = 0;
    std::vector<float> Weights;

    /// For Count target positions from First on. The ratio is source pixels per target pixel; positions
    /// outside the source take its edge.
    static std::vector<OrvResamplingTaps> along(
        int First, int Count, double Ratio, int SourceFirst, int SourceSize);
};
