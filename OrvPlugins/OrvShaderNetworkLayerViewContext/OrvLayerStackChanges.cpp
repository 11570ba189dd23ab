#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerStackChanges.h"

#include "OrvCore/Layers/OrvLayerStack.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvShaderNetworkUtils.h"
#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCore/Network/OrvSnNames.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerView.h"

#include <QtCore/QSet>
#include <QtCore/QTimer>

namespace {

/// The node that stands for the given one in the network: itself, or the node whose nested networks hold it.
/// Null when it lies elsewhere.
OrvSnBaseNode* nodeInNetwork(OrvSnBaseNode* pNode, const OrvShaderNetwork* pNetwork)
{
    while (pNode && pNode->network() != pNetwork)
        pNode = pNode->network() ? pNode->network()->container() : nullptr;
    return pNode;
}

} // namespace

OrvLayerStackChanges::OrvLayerStackChanges(OrvLayerView* pLayerView)
    : QObject(pLayerView)
    , m_LayerView(pLayerView)
{
}

void OrvLayerStackChanges::noteReconnection(const QString& InputName, OrvSnBaseNode* pNode,
    OrvSnBaseNode* pNewInputNode, OrvSnBaseNode* pOldInputNode)
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
    for (OrvSnBaseNode* pChanged : {pNode, pNewInputNode, pOldInputNode}) {
        if (pChanged && pChanged != pStackNode)
            noteChange(pChanged);
    }
}

void OrvLayerStackChanges::noteChange(OrvSnBaseNode* pNode)
{
    const OrvLayerStack* pLayerStack = m_LayerView->layerStack();
    if (!pLayerStack || m_LayerView->isRefreshPending())
        return;
    OrvSnBaseNode* pInNetwork = nodeInNetwork(pNode, pLayerStack->network());
    if (!pInNetwork)
        return;
    if (m_ChangedNodes.isEmpty())
        QTimer::singleShot(0, this, SLOT(look()));
    m_ChangedNodes.insert(pInNetwork, pInNetwork);
}

void OrvLayerStackChanges::look()
{
    QSet<OrvSnBaseNode*> ChangedNodes;
    for (const QPointer<OrvSnBaseNode>& pNode : qAsConst(m_ChangedNodes)) {
        if (pNode)
            ChangedNodes.insert(pNode);
    }
    m_ChangedNodes.clear();
    const OrvLayerStack* pLayerStack = m_LayerView->layerStack();
    if (pLayerStack && !m_LayerView->isRefreshPending()
        && OrvShaderNetworkUtils::OrvNodeWalkerUpstream(ChangedNodes).walk(pLayerStack->node()))
        m_LayerView->requestRefresh();
}

#include "moc_OrvLayerStackChanges.cpp"
