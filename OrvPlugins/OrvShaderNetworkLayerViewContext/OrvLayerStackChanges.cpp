#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerStackChanges.h"

#include "OrvCore/Layers/OrvLayerStack.h"
#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCore/Network/OrvSnNames.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewUtils.h"

#include <QtCore/QTimer>

OrvLayerStackChanges::OrvLayerStackChanges(OrvLayerView* pLayerView)
    : QObject(pLayerView)
    , m_LayerView(pLayerView)
{
}

void OrvLayerStackChanges::noteReconnection(const QString& InputName, const OrvSnBaseNode* pNode,
    const OrvSnBaseNode* pNewInputNode, const OrvSnBaseNode* pOldInputNode)
{
    const OrvLayerStack* pLayerStack = m_LayerView->layerStack();
    const OrvSnBaseNode* pStackNode = pLayerStack ? pLayerStack->node() : nullptr;
    if (!pStackNode)
        return;
    const bool FeedsStack = pNode == pStackNode && InputName == pLayerStack->targetInputName();
    const bool FeedsShader = pNode && pNode->hasTag(OrvSnNames::ShaderTag)
        && (pNewInputNode == pStackNode || pOldInputNode == pStackNode);
    if (FeedsStack || FeedsShader) {
        m_LayerView->requestRefresh();
        return;
    }
    for (const OrvSnBaseNode* pChanged : {pNode, pNewInputNode, pOldInputNode}) {
        if (pChanged && pChanged != pStackNode)
            noteChange(pChanged);
    }
}

void OrvLayerStackChanges::noteChange(const OrvSnBaseNode* pNode)
{
    const OrvLayerStack* pLayerStack = m_LayerView->layerStack();
    if (!pLayerStack || m_LayerView->isRefreshPending())
        return;
    const OrvSnBaseNode* pInNetwork = OrvLayerViewUtils::nodeInNetwork(pNode, pLayerStack->network());
    if (!pInNetwork)
        return;
    if (m_ChangedNodes.isEmpty())
        QTimer::singleShot(0, this, SLOT(look()));
    m_ChangedNodes.insert(pInNetwork);
}

void OrvLayerStackChanges::look()
{
    QSet<const OrvSnBaseNode*> ChangedNodes;
    ChangedNodes.swap(m_ChangedNodes);
    const OrvLayerStack* pLayerStack = m_LayerView->layerStack();
    if (pLayerStack && !ChangedNodes.isEmpty() && !m_LayerView->isRefreshPending()
        && OrvLayerViewUtils::isAnyUpstream(ChangedNodes, pLayerStack->node()))
        m_LayerView->requestRefresh();
}

#include "moc_OrvLayerStackChanges.cpp"
