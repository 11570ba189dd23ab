#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerEditScope.h"

#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerStack.h"

QList<OrvLayer*> OrvLayerEditScope::of(OrvLayer* pLayer, const OrvLayerStack* pLayerStack)
{
    if (pLayer && pLayer->isSelected() && pLayerStack) {
        const QList<OrvLayer*> Selected = pLayerStack->selectedLayers();
        if (Selected.contains(pLayer))
            return Selected;
    }
    return pLayer ? QList<OrvLayer*>{pLayer} : QList<OrvLayer*>();
}
