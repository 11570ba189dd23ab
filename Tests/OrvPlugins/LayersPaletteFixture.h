#pragma once

#include "OrvCoreModules/Window/OrvApplication.h"
#include "OrvCoreModules/Window/OrvMainWindow.h"
#include "OrvCoreModules/Window/OrvPalette.h"
#include "OrvCoreModules/Window/OrvPaletteManager.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerActions.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewContextManager.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputActions.h"

#include <QtTest/QtTest>

namespace LayersFixture {

/// The main Layers palette in a shown window, as the program makes it; null when the window does not appear.
inline OrvLayerView* showLayersPalette(const QSize& WindowSize)
{
    OrvApplication::appInstance().setInitialized(true);
    OrvShaderInputActions::instance();
    OrvLayerActions::instance();
    OrvLayerView* pView = OrvLayerViewContextManager::instance().mainLayerView();
    OrvMainWindow::instance().resize(WindowSize);
    OrvMainWindow::instance().show();
    OrvPaletteManager::find(QStringLiteral("Layers"))->open();
    return QTest::qWaitForWindowExposed(pView->window()) ? pView : nullptr;
}

} // namespace LayersFixture
