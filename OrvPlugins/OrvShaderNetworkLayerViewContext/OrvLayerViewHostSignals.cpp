#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewHostSignals.h"

#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Layers/OrvLayerStack.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Project/OrvProjectManager.h"
#include "OrvCore/Shaders/OrvLayerShaderManager.h"
#include "OrvCoreModules/Menus/OrvActionTreeManager.h"
#include "OrvCoreModules/Menus/OrvMenuManager.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewContextConstants.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewUtils.h"

#include <QtCore/QPointer>
#include <QtCore/QTimer>
#include <QtWidgets/QAction>
#include <QtWidgets/QMenu>

namespace {

void connectNetworks(OrvLayerView* pLayerView)
{
    OrvShaderNetworkManager* pNetworks = &OrvShaderNetworkManager::instance();
    QObject::connect(pNetworks,
        SIGNAL(nodeReconnected(OrvShaderNetwork*, QString, OrvSnBaseNode*, OrvSnBaseNode*, OrvSnBaseNode*)),
        pLayerView,
        SLOT(onNodeReconnected(OrvShaderNetwork*, QString, OrvSnBaseNode*, OrvSnBaseNode*, OrvSnBaseNode*)));
    for (const char* pSignal :
        {SIGNAL(nodeLockedChanged(OrvSnBaseNode*, bool)), SIGNAL(nodeBlockedChanged(OrvSnBaseNode*, bool)),
            SIGNAL(nodeCacheActiveChanged(OrvSnBaseNode*, OrvSnBaseNodeCacheActiveState)),
            SIGNAL(nodeUserAttributeRemoved(OrvSnBaseNode*, QString)),
            SIGNAL(nodeUserAttributeCreated(OrvSnBaseNode*, QString)), SIGNAL(nodeRefreshed(OrvSnBaseNode*))})
        QObject::connect(pNetworks, pSignal, pLayerView, SLOT(onNodeChanged(OrvSnBaseNode*)));
    // An upgrade takes the stack away. Noted before it does: one that is still there comes back.
    QObject::connect(pNetworks, &OrvShaderNetworkManager::upgradeCompleted, pLayerView, [pLayerView] {
        const QPointer<OrvLayerStack> pLayerStack = pLayerView->layerStack();
        QTimer::singleShot(0, pLayerView, [pLayerView, pLayerStack] {
            if (!pLayerView->layerStack() && pLayerStack)
                pLayerView->setLayerStack(pLayerStack);
        });
    });
    QObject::connect(pNetworks, SIGNAL(upgradeCompleted()), pLayerView, SLOT(onProjectClosing()));
    QObject::connect(pNetworks, SIGNAL(currentShaderNetworkChanged(OrvShaderNetwork*, OrvShaderNetwork*)),
        pLayerView, SLOT(layerShadersCountChanged()));
}

void connectLayers(OrvLayerView* pLayerView)
{
    OrvLayerManager* pLayers = &OrvLayerManager::instance();
    QObject::connect(
        pLayers, SIGNAL(currentLayerChanged(OrvLayer*)), pLayerView, SLOT(changeCurrentIndex(OrvLayer*)));
    QObject::connect(
        pLayers, SIGNAL(layerStateRefreshed(OrvLayer*)), pLayerView, SLOT(onLayerStateRefreshed()));
    QObject::connect(pLayers, SIGNAL(batchLayerStatesRefreshed()), pLayerView, SLOT(requestRefresh()));

    OrvLayerShaderManager* pShaders = &OrvLayerShaderManager::instance();
    QObject::connect(
        pShaders, SIGNAL(layerShaderCreated(OrvLayerShader*)), pLayerView, SLOT(layerShadersCountChanged()));
    QObject::connect(
        pShaders, SIGNAL(layerShaderRemoved(OrvLayerShader*)), pLayerView, SLOT(layerShadersCountChanged()));
}

void connectProjects(OrvLayerView* pLayerView)
{
    OrvProjectManager* pProjects = &OrvProjectManager::instance();
    QObject::connect(
        pProjects, SIGNAL(onMakeProjectCurrent(OrvProject*)), pLayerView, SLOT(redrawProperties()));
    QObject::connect(pProjects, SIGNAL(onMakeProjectCurrent(OrvProject*)), pLayerView,
        SLOT(switchActionsEnabled(OrvProject*)));
    QObject::connect(pProjects, SIGNAL(projectClosed()), pLayerView, SLOT(onProjectClosing()));
}

void connectMenus(OrvLayerView* pLayerView)
{
    OrvMenuManager* pMenus = &OrvMenuManager::instance();
    QObject::connect(pMenus, SIGNAL(actionAdded(QString, QString, QString, QAction*)), pLayerView,
        SLOT(onMenuManagerActionAdded(QString, QString, QString, QAction*)));
    QObject::connect(pMenus, SIGNAL(actionRemoved(QString, QString, QString, QAction*)), pLayerView,
        SLOT(onMenuManagerActionRemoved(QString, QString, QString, QAction*)));
}

/// Of the commands' menus the one of shader types alone tells the palette itself what was chosen.
void connectShaderTypes(OrvLayerView* pLayerView)
{
    const QAction* pAddShaderLayer
        = OrvActionTreeManager::instance().findAction(OrvLayerViewContext::AddShaderLayerAction);
    if (pAddShaderLayer && pAddShaderLayer->menu())
        QObject::connect(pAddShaderLayer->menu(), SIGNAL(triggered(QAction*)), pLayerView,
            SLOT(addShaderLayerFromAction()));
    else
        OrvLayerViewUtils::report(__LINE__,
            "[ !! ] Assertion 'NULL != m_AddShaderLayerMenuAction' failed: Action Menu not created");
}

} // namespace

void OrvLayerViewHostSignals::connectTo(OrvLayerView* pLayerView)
{
    connectShaderTypes(pLayerView);
    connectNetworks(pLayerView);
    connectLayers(pLayerView);
    connectProjects(pLayerView);
    connectMenus(pLayerView);
}
