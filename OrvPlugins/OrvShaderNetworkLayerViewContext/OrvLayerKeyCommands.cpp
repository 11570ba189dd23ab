#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerKeyCommands.h"

#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCoreModules/Menus/OrvFocusShortcuts.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerEditScope.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerMove.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerRowLock.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerTreeView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewItemRowWidget.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewModel.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerVisibilityGesture.h"

#include <QtGui/QKeySequence>

OrvLayerKeyCommands::OrvLayerKeyCommands(OrvLayerView* pLayerView)
    : QObject(pLayerView)
    , m_LayerView(pLayerView)
{
    auto* pShortcuts = new OrvFocusShortcuts(pLayerView->treeView());
    pShortcuts->add(Qt::Key_F2, SLOT(renameLayer()), this);
    pShortcuts->add(Qt::Key_Space, SLOT(toggleVisibility()), this);
    pShortcuts->add(Qt::Key_L, SLOT(toggleLock()), this);
    // With Control, the arrows go through the rows without selecting them.
    pShortcuts->add(Qt::ALT + Qt::Key_Up, SLOT(moveLayersUp()), this);
    pShortcuts->add(Qt::ALT + Qt::Key_Down, SLOT(moveLayersDown()), this);
    pShortcuts->add(Qt::ALT + Qt::Key_Right, SLOT(moveLayersIntoGroup()), this);
    pShortcuts->add(Qt::ALT + Qt::Key_Left, SLOT(moveLayersOutOfGroup()), this);
}

OrvLayer* OrvLayerKeyCommands::currentLayer() const
{
    return m_LayerView->layerFromIndex(m_LayerView->treeView()->currentIndex());
}

void OrvLayerKeyCommands::renameLayer()
{
    m_LayerView->renameCurrentLayer();
}

void OrvLayerKeyCommands::toggleVisibility()
{
    if (OrvLayer* pLayer = currentLayer())
        m_LayerView->visibilityGesture()->toggle(pLayer);
}

void OrvLayerKeyCommands::toggleLock()
{
    if (OrvLayer* pLayer = currentLayer())
        OrvLayerRowLock::setLocked(OrvLayerEditScope::of(pLayer, m_LayerView->layerStack()),
            !OrvLayerRowLock::isShownLocked(pLayer));
}

void OrvLayerKeyCommands::moveLayersUp()
{
    OrvLayerMove(currentLayer(), m_LayerView->layerStack()).up();
}

void OrvLayerKeyCommands::moveLayersDown()
{
    OrvLayerMove(currentLayer(), m_LayerView->layerStack()).down();
}

void OrvLayerKeyCommands::moveLayersIntoGroup()
{
    const OrvLayer* pGroup = OrvLayerMove(currentLayer(), m_LayerView->layerStack()).intoGroup();
    // What was moved is not to vanish in a folded group.
    if (pGroup)
        m_LayerView->treeView()->expand(m_LayerView->model()->indexFromLayer(pGroup));
}

void OrvLayerKeyCommands::moveLayersOutOfGroup()
{
    OrvLayerMove(currentLayer(), m_LayerView->layerStack()).outOfGroup();
}

#include "moc_OrvLayerKeyCommands.cpp"
