#include "OrvCore/Layers/OrvLayerCurrentEdits.h"

#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvSnMergeNode.h"

#include <utility>

OrvCurrentComponentEdit::OrvCurrentComponentEdit(OrvSnBaseNode* pBefore, OrvSnBaseNode* pAfter)
    : QUndoCommand(OrvLayerManager::tr("Change Paint Target"))
    , m_pBefore(pBefore)
    , m_pAfter(pAfter)
{
}

void OrvCurrentComponentEdit::undo()
{
    OrvLayerManager::instance().applyCurrentComponent(m_pBefore);
}

void OrvCurrentComponentEdit::redo()
{
    OrvLayerManager::instance().applyCurrentComponent(m_pAfter);
}

OrvCurrentLayerEdit::OrvCurrentLayerEdit(OrvShaderNetwork* pNetwork, OrvLayer* pLayer)
    : QUndoCommand(OrvLayerManager::tr("Make Layer Current"))
    , m_pNetwork(pNetwork)
    , m_pBefore(OrvLayerManager::instance().currentLayer(pNetwork))
    , m_pAfter(pLayer)
{
    for (OrvSnBaseNode* pNode : pNetwork->selectedNodes())
        m_SelectedBefore.append(pNode);
}

void OrvCurrentLayerEdit::undo()
{
    OrvLayerManager::instance().setCurrentLayer(m_pNetwork, m_pBefore);
    select(m_pBefore, m_SelectedBefore);
}

void OrvCurrentLayerEdit::redo()
{
    OrvLayerManager::instance().setCurrentLayer(m_pNetwork, m_pAfter);
    // The first time, whoever makes the edit selects.
    if (std::exchange(m_Redone, true))
        select(m_pAfter, {});
}

void OrvCurrentLayerEdit::select(OrvLayer* pCurrent, const QVector<QPointer<OrvSnBaseNode>>& Nodes)
{
    if (!m_pNetwork || !pCurrent || pCurrent->blendNode()->network() != m_pNetwork)
        return;
    QSet<OrvSnBaseNode*> Selected{pCurrent->blendNode()};
    if (Nodes.contains(pCurrent->blendNode())) {
        for (const QPointer<OrvSnBaseNode>& pNode : Nodes) {
            if (pNode && pNode->network() == m_pNetwork)
                Selected.insert(pNode);
        }
    }
    m_pNetwork->selectNone(Selected);
    for (OrvSnBaseNode* pNode : qAsConst(Selected)) {
        if (OrvLayer* pLayer = OrvLayerManager::instance().getLayer(pNode, true))
            pLayer->setSelected(true);
    }
}
