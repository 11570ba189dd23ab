#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerRowCost.h"

#include "OrvCore/Layers/OrvLayer.h"

#include <array>

namespace {

/// Red, green and blue up to 1.
std::array<double, 3> color(const OrvLayer* pLayer)
{
    if (pLayer->isDownstreamCached())
        return {0.25, 0.5, 1};
    if (pLayer->isCachedUpToHere() || pLayer->isLayerCached())
        return {0, 0, 1};
    const double Cost = qBound(0.0, pLayer->cost(), 1.0);
    const bool HasIdleCache = pLayer->hasCacheUpToHere() || pLayer->hasLayerCache();
    return {Cost, 1 - Cost, HasIdleCache ? 1.0 : 0.0};
}

} // namespace

QString OrvLayerRowCost::styleSheet(const OrvLayer* pLayer)
{
    const auto [Red, Green, Blue] = color(pLayer);
    return QStringLiteral("QLabel { background-color : rgb(%1,%2,%3); }")
        .arg(int(Red * 255))
        .arg(int(Green * 255))
        .arg(int(Blue * 255));
}
