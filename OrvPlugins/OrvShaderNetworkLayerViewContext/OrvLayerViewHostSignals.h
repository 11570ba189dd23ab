#pragma once

class OrvLayerView;

/// What a Layers palette follows of the host: which signals of its managers reach which slots of the palette,
/// all in one place. The palette calls it once, when its parts are there; nothing is kept.
namespace OrvLayerViewHostSignals {

void connectTo(OrvLayerView* pLayerView);

} // namespace OrvLayerViewHostSignals
