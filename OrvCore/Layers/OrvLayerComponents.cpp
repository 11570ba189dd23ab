// Masks and adjustment stacks of a layer.

#include "OrvCore/Layers/OrvLayer.h"

#include "OrvCore/Channels/OrvImageSettings.h"
#include "OrvCore/Layers/OrvChainEditing.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Network/OrvNodeRegistry.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvSnBottomTransparencyNode.h"
#include "OrvCore/Network/OrvSnChannelInputNode.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Network/OrvSnOperationNode.h"
#include "OrvCore/Network/OrvSnPassNode.h"
#include "OrvCore/Undo/OrvUndoManager.h"

#include "OrvDdi/Image/OrvColor.h"
#include "OrvDdi/Image/OrvImageSet.h"

bool OrvLayer::hasMask() const
{
    return maskNode() != nullptr;
}

bool OrvLayer::hasMaskImageSet() const
{
    return maskPaintNode() != nullptr;
}

bool OrvLayer::hasMaskStack() const
{
    return hasMask() && !hasMaskImageSet();
}

OrvLayerStack* OrvLayer::maskStack() const
{
    return hasMaskStack() ? OrvLayerStack::getLayerStack(m_pBlendNode, OrvSnNames::Mask) : nullptr;
}

bool OrvLayer::isMaskEnabled() const
{
    return m_pBlendNode->userAttribute(OrvMergeAttributes::MaskEnabled).value().toBool();
}

void OrvLayer::setMaskEnabled(bool Enabled)
{
    m_pBlendNode->setUserAttributeValue(OrvMergeAttributes::MaskEnabled, Enabled);
}

bool OrvLayer::addMaskImageSet(MaskType Type, const OrvColor& Fill)
{
    if (hasMask() || !isModifiable())
        return false;
    OrvUndoManager::AutoMacro Macro(tr("Add Mask : %1").arg(name()));
    const OrvImageSettings Settings = OrvImageSettings::ofLayer(m_pBlendNode);
    OrvSnChannelInputNode* pImages
        = OrvChainEditing::addImageNode(m_pBlendNode->network(), Settings.Layout, Settings.Mask,
            Type == FilledMask ? Fill : OrvColor::clear(), tr("%1 Mask").arg(name()), m_pBlendNode, -1, 2);
    if (!m_pBlendNode->connectInput(OrvSnNames::Mask, pImages)) {
        Macro.cancel();
        return false;
    }
    setMaskEnabled(true);
    // Who adds a mask paints on it next.
    if (isCurrent())
        OrvLayerManager::instance().setCurrentComponent(pImages);
    return true;
}

void OrvLayer::addMaskImageSet()
{
    addMaskImageSet(FilledMask, OrvColor::white());
}

void OrvLayer::addMaskImageSetAndFillBlack()
{
    addMaskImageSet(FilledMask, OrvColor::black());
}

OrvLayerStack* OrvLayer::convertMaskToMaskStack()
{
    if (hasMaskStack())
        return maskStack();
    OrvSnBaseNode* pImages = maskPaintNode();
    if (!pImages || !isModifiable())
        return nullptr;
    OrvUndoManager::AutoMacro Macro(tr("Make Mask Stack : %1").arg(name()));
    OrvShaderNetwork* pNetwork = m_pBlendNode->network();
    OrvSnBaseNode* pBottom = OrvChainEditing::addNode(
        pNetwork, std::make_unique<OrvSnBottomTransparencyNode>(), QString(), pImages, -1, 0);
    OrvSnMergeNode* pMerge = OrvChainEditing::addNode(pNetwork, std::make_unique<OrvSnMergeNode>(),
        OrvLayerManager::instance().uniqueLayerName(pNetwork, tr("Mask")), pImages, 1, 0);
    const bool Done = pMerge->connectInput(OrvSnNames::Base, pBottom)
        && pMerge->connectInput(OrvSnNames::Over, pImages)
        && m_pBlendNode->connectInput(OrvSnNames::Mask, pMerge);
    if (!Done) {
        Macro.cancel();
        return nullptr;
    }
    return maskStack();
}

void OrvLayer::deleteMask()
{
    OrvSnBaseNode* pMask = maskNode();
    if (!pMask || !isModifiable())
        return;
    const OrvUndoManager::AutoMacro Macro(tr("Remove Mask : %1").arg(name()));
    OrvLayerManager& Manager = OrvLayerManager::instance();
    const bool WasPainted = Manager.currentComponent() == pMask;
    m_pBlendNode->disconnectInput(OrvSnNames::Mask);
    OrvChainEditing::removeUnused(pMask);
    if (WasPainted)
        Manager.setCurrentComponent(paintNode());
}

void OrvLayer::makeMaskComponentCurrent()
{
    OrvSnBaseNode* pImages = maskPaintNode();
    if (const OrvLayerStack* pStack = maskStack()) {
        for (const OrvLayer* pLayer : pStack->layerList()) {
            pImages = pLayer->paintNode();
            if (pImages)
                break;
        }
    }
    OrvLayerManager& Manager = OrvLayerManager::instance();
    Manager.setCurrentLayer(m_pBlendNode->network(), this, OrvUndoManager::instance().isInMacro());
    if (pImages)
        Manager.setCurrentComponent(pImages);
}

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
    if (hasAdjustmentStack())
        overNode()->setEnabledAsBool(Enabled);
}

OrvLayer* OrvLayer::addLayerAdjustmentLayerFromKey(const QString& Key, const QString& Name)
{
    if (!canHaveAdjustmentStack() || !isModifiable())
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
    if (!hasAdjustmentStack() || !isModifiable())
        return;
    const OrvUndoManager::AutoMacro Macro(tr("Remove Adjustment Stack : %1").arg(name()));
    OrvSnBaseNode* pTop = overNode();
    m_pBlendNode->connectInput(OrvSnNames::Over, contentNode());
    OrvChainEditing::removeUnused(pTop);
}

void OrvLayer::addSecondaryAdjustmentLayerFromKey(const QString& Key)
{
    OrvSnBaseNode* pAdjustment = contentNode();
    if (!isAdjustmentLayer() || hasSecondaryAdjustment() || !isModifiable())
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
    if (!pSecond || !isModifiable())
        return;
    const OrvUndoManager::AutoMacro Macro(tr("Remove Secondary Adjustment : %1").arg(name()));
    m_pBlendNode->connectInput(OrvSnNames::Over, pSecond->preferredInputNode());
    OrvChainEditing::removeUnused(pSecond);
}
