#pragma once

#include <QtCore/QList>

class OrvLayer;
class OrvLayerStack;

/// Which layers a click on one of them changes.
namespace OrvLayerEditScope {

/// The selected layers of the stack, in its order, when the layer is one of them; else the layer alone.
QList<OrvLayer*> of(OrvLayer* pLayer, const OrvLayerStack* pLayerStack);

} // namespace OrvLayerEditScope
