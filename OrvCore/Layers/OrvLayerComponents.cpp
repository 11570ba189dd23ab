// Adjustments of a layer: its adjustment stack, the secondary adjustment of an adjustment layer.

#include "OrvCore/Layers/OrvLayer.h"

#include "OrvCore/Layers/OrvChainEditing.h"
#include "OrvCore/Layers/OrvLayerStack.h"
#include "OrvCore/Network/OrvNodeRegistry.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Network/OrvSnPassNode.h"
#include "OrvCore/Undo/OrvUndoManager.h"

bool OrvLayer::hasAdjustmentStack() const
{
    const OrvSnBaseNode* pOver = overNode();
    return pOver && pOver->hasTag(OrvSnNames::AdjustmentStackTopTag);
}

OrvLayerStack* OrvLayer::adjustmentStack() const
{
    return hasAdjustmentStack() ? OrvLayerStack::getLayerStack(m_pBlendNode, OrvSnNames::Over) : nullptr;
}

OrvSnBaseNode* OrvLayer::adjustmentStackBottomNode() const
{
    return hasAdjustmentStack() ? OrvChainEditing::chainEnd(overNode()) : nullptr;
}

bool OrvLayer::isAdjustmentStackEnabled() const
{
    return hasAdjustmentStack() && overNode()->enabledAsBool();
}

void OrvLayer::setAdjustmentStackEnabled(bool Enabled)
{
    if (hasAdjustmentStack() && checkModifiable())
        overNode()->setEnabledAsBool(Enabled);
}

OrvLayer* OrvLayer::addLayerAdjustmentLayerFromKey(const QString& Key, const QString& Name)
{
    if (!canHaveAdjustmentStack()) {
        refuse(tr("'%1' takes no adjustment stack").arg(name()));
        return nullptr;
    }
    if (!checkModifiable())
        return nullptr;
    OrvUndoManager::AutoMacro Macro(tr("Add Adjustment Stack : %1").arg(name()));
    if (!hasAdjustmentStack()) {
        OrvShaderNetwork* pNetwork = m_pBlendNode->network();
        OrvSnBaseNode* pContent = overNode();
        OrvSnPassNode* pBottom = OrvChainEditing::addNode(pNetwork,
            std::make_unique<OrvSnPassNode>(QStringList{OrvSnNames::AdjustmentStackBottomTag}), QString(),
            pContent, 1, 0);
        OrvSnPassNode* pTop = OrvChainEditing::addNode(pNetwork,
            std::make_unique<OrvSnPassNode>(QStringList{OrvSnNames::AdjustmentStackTopTag}), QString(),
            pContent, 3, 0);
        const bool Done = pBottom->connectInput(OrvSnNames::Input, pContent)
            && pTop->connectInput(OrvSnNames::Input, pBottom)
            && m_pBlendNode->connectInput(OrvSnNames::Over, pTop);
        if (!Done) {
            Macro.cancel();
            return nullptr;
        }
    }
    OrvLayer* pLayer = adjustmentStack()->createAdjustmentLayer(Key, OrvLayerUniqueName, nullptr, Name);
    if (!pLayer)
        Macro.cancel();
    return pLayer;
}

void OrvLayer::removeLayerAdjustment()
{
    if (!hasAdjustmentStack() || !checkModifiable())
        return;
    const OrvUndoManager::AutoMacro Macro(tr("Remove Adjustment Stack : %1").arg(name()));
    OrvSnBaseNode* pTop = overNode();
    m_pBlendNode->connectInput(OrvSnNames::Over, contentNode());
    OrvChainEditing::removeUnused(pTop);
}

void OrvLayer::addSecondaryAdjustmentLayerFromKey(const QString& Key)
{
    OrvSnBaseNode* pAdjustment = contentNode();
    if (!isAdjustmentLayer() || hasSecondaryAdjustment() || !checkModifiable())
        return;
    std::unique_ptr<OrvSnBaseNode> pOperation = OrvNodeRegistry::instance().createFromMenuPath(Key);
    if (!pOperation || pOperation->inputs().isEmpty())
        return;
    OrvUndoManager::AutoMacro Macro(tr("Add Secondary Adjustment : %1").arg(name()));
    const QString Name = pOperation->typeLabel();
    OrvSnBaseNode* pSecond
        = OrvChainEditing::addNode(m_pBlendNode->network(), std::move(pOperation), Name, pAdjustment, 0, 1);
    if (!pSecond->connectInput(pSecond->preferredInput(), pAdjustment)
        || !m_pBlendNode->connectInput(OrvSnNames::Over, pSecond))
        Macro.cancel();
}

void OrvLayer::removeSecondaryAdjustmentLayer()
{
    OrvSnBaseNode* pSecond = secondaryAdjustmentNode();
    if (!pSecond || !checkModifiable())
        return;
    const OrvUndoManager::AutoMacro Macro(tr("Remove Secondary Adjustment : %1").arg(name()));
    m_pBlendNode->connectInput(OrvSnNames::Over, pSecond->preferredInputNode());
    OrvChainEditing::removeUnused(pSecond);
}
