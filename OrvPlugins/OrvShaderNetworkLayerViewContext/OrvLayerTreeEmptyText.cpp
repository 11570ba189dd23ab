#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerTreeEmptyText.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvShaderInputManager.h"
#include "OrvCore/Layers/OrvLayerStack.h"
#include "OrvCore/Project/OrvProjectManager.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerTreeView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewFilterBar.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewModel.h"

OrvLayerTreeEmptyText::OrvLayerTreeEmptyText(
    OrvLayerView* pLayerView, const OrvLayerViewFilterBar* pFilterBar)
    : QObject(pLayerView)
    , m_LayerView(pLayerView)
    , m_FilterBar(pFilterBar)
{
    const OrvShaderInputManager* pChannels = &OrvShaderInputManager::instance();
    connect(pChannels, &OrvShaderInputManager::currentShaderInputChanged, this,
        &OrvLayerTreeEmptyText::onChannelChanged);
    connect(pChannels, &OrvShaderInputManager::shaderInputRenamed, this,
        &OrvLayerTreeEmptyText::onChannelChanged);
}

void OrvLayerTreeEmptyText::update()
{
    m_LayerView->treeView()->setEmptyText(text());
}

void OrvLayerTreeEmptyText::hide()
{
    m_LayerView->treeView()->setEmptyText(QString());
}

void OrvLayerTreeEmptyText::onChannelChanged()
{
    // Without a stack before and after, nothing else says that the palette is empty for another reason.
    if (!m_LayerView->layerStack())
        update();
}

QString OrvLayerTreeEmptyText::text() const
{
    if (!OrvProjectManager::instance().currentProject())
        return OrvLayerView::tr("Create or open a project to see its layers.");
    if (m_LayerView->model()->rowCount() > 0)
        return m_FilterBar->filterActive() ? OrvLayerView::tr("No layer passes the filter.") : QString();
    if (m_LayerView->layerStack() && m_LayerView->layerStack()->layerList().isEmpty())
        return OrvLayerView::tr("There are no layers yet.\nAdd one with the buttons below.");
    const OrvShaderInput* pCurrent = OrvShaderInputManager::instance().currentShaderInput();
    if (pCurrent && pCurrent->isMaterialStack())
        return OrvLayerView::tr("'%1' holds shader layers:\nthey are in the Shaders palette.")
            .arg(pCurrent->name());
    return OrvLayerView::tr("Choose a channel to see its layers.");
}

#include "moc_OrvLayerTreeEmptyText.cpp"
