#pragma once

#include "OrvCoreModules/Window/OrvMainWindow.h"
#include "OrvCoreModules/Window/OrvPalette.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewContextManager.h"

/// The palettes of single layer stacks that are open beside the main one.
namespace StackPalettes {

inline OrvLayerView* layerViewOf(const OrvPalette* pPalette)
{
    return pPalette ? qobject_cast<OrvLayerView*>(pPalette->originalWidget()) : nullptr;
}

/// In the order of their creation.
inline QList<OrvPalette*> stackPalettes()
{
    QList<OrvPalette*> Palettes;
    for (OrvPalette* pPalette : OrvMainWindow::instance().findChildren<OrvPalette*>()) {
        const OrvLayerView* pView = layerViewOf(pPalette);
        if (pView && pView != OrvLayerViewContextManager::instance().mainLayerView())
            Palettes.append(pPalette);
    }
    return Palettes;
}

inline OrvPalette* paletteOf(const OrvLayerStack* pStack)
{
    for (OrvPalette* pPalette : stackPalettes()) {
        if (layerViewOf(pPalette)->layerStack() == pStack)
            return pPalette;
    }
    return nullptr;
}

} // namespace StackPalettes
