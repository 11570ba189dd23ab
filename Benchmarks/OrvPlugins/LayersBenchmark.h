#pragma once

#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerView.h"

#include <memory>

class FloorTree;
class OrvShaderInput;

/// What the benchmarks of the Layers palette share: stacks of any size, a palette that shows one, and the
/// floor.
namespace LayersBenchmark {

/// Until nothing is left to be laid out or painted.
void settle();

enum class Shape {
    Grouped, ///< each tenth layer is a group that holds the nine before it
    Flat
};

/// A channel of that many layers; each name has its number.
OrvShaderInput* makeChannel(
    int LayerCount, const QString& LayerName = QStringLiteral("Layer %1"), Shape Shaped = Shape::Grouped);
/// The same one each time, made current.
OrvShaderInput* channelOf(int LayerCount);

class Palette {
public:
    explicit Palette(OrvShaderInput* pChannel);
    OrvLayerView& view() { return m_View; }
    void refresh();

private:
    OrvLayerView m_View;
};

/// Without rows, as large as a palette.
std::unique_ptr<FloorTree> makeFloor();

} // namespace LayersBenchmark
