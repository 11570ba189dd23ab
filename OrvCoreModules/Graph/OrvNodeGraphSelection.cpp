#include "OrvCoreModules/Graph/OrvNodeGraphSelection.h"

#include "OrvCoreModules/Graph/OrvNodeGraphScene.h"

#include "OrvCore/Channels/OrvShaderInputManager.h"
#include "OrvCore/Channels/OrvShaderInputUtils.h"
#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Network/OrvSnBaseNode.h"

void OrvNodeGraphSelection::publish(const OrvNodeGraphScene& Scene)
{
    OrvShaderNetwork* pNetwork = Scene.network();
    if (!pNetwork)
        return;
    const QVector<OrvSnBaseNode*> Nodes = Scene.selectedNodes();
    pNetwork->selectNone(QSet<OrvSnBaseNode*>(Nodes.begin(), Nodes.end()));
    for (OrvSnBaseNode* pNode : Nodes) {
        pNetwork->setSelected(pNode, true);
        if (OrvLayer* pLayer = OrvLayerManager::instance().getLayer(pNode, true))
            pLayer->setSelected(true);
    }
    if (Nodes.size() == 1)
        makeCurrent(Nodes.first());
}

void OrvNodeGraphSelection::makeCurrent(OrvSnBaseNode* pNode)
{
    // The palettes show the current network only, and only layers that stand in a stack.
    if (pNode->network() != OrvShaderNetworkManager::instance().currentShaderNetwork())
        return;
    OrvLayer* pLayer = OrvLayerManager::instance().getLayer(pNode, true);
    if (pLayer && !pLayer->isCurrent() && !pLayer->stacks().isEmpty())
        pLayer->makeCurrent(false, true);
    else if (OrvShaderInput* pChannel = OrvShaderInputUtils::getShaderInput(pNode))
        OrvShaderInputManager::instance().makeShaderInputCurrent(pChannel, true);
}
