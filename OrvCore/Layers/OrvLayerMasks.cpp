// Masks of a layer: painted ones, stacks, procedurals; where they come from and what becomes of them.

#include "OrvCore/Layers/OrvLayer.h"

#include "OrvCore/Channels/OrvChannelSpace.h"
#include "OrvCore/Channels/OrvImageSettings.h"
#include "OrvCore/Layers/OrvChainEditing.h"
#include "OrvCore/Layers/OrvLayerClipboard.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Layers/OrvLayerRendering.h"
#include "OrvCore/Layers/OrvSelectionProvider.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvSnBottomTransparencyNode.h"
#include "OrvCore/Network/OrvSnChannelInputNode.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Network/OrvSnOperationNode.h"
#include "OrvCore/Undo/OrvUndoManager.h"

#include "OrvDdi/Image/OrvColor.h"
#include "OrvDdi/Image/OrvImageSet.h"

namespace {

/// The same pixels as a mask of this layout is stored.
OrvImageBuffer asMask(const OrvImageBuffer& Pixels, const OrvImageSettings& Settings)
{
    const OrvImageBuffer Converted = Pixels.converted(Settings.Mask);
    if (Converted.extent() == Settings.Layout.extent())
        return Converted;
    OrvImageBuffer Mask(Settings.Layout.extent(), Settings.Mask);
    Mask.copyFrom(Converted, Settings.Layout.extent());
    return Mask;
}

} // namespace

bool OrvLayer::hasMask() const
{
    return maskNode() != nullptr;
}

bool OrvLayer::hasMaskImageSet() const
{
    return maskPaintNode() != nullptr;
}

bool OrvLayer::isMaskProcedural() const
{
    const auto* pOperation = qobject_cast<const OrvSnOperationNode*>(maskNode());
    return (pOperation && pOperation->isProcedural()) || hasMaskCustomProcedural();
}

bool OrvLayer::hasMaskStack() const
{
    return hasMask() && !hasMaskImageSet() && !isMaskProcedural();
}

OrvLayerStack* OrvLayer::maskStack() const
{
    return hasMaskStack() ? OrvLayerStack::getLayerStack(commonNode(), OrvSnNames::Mask) : nullptr;
}

bool OrvLayer::isMaskEnabled() const
{
    return commonNode()->userAttribute(OrvMergeAttributes::MaskEnabled).value().toBool();
}

void OrvLayer::setMaskEnabled(bool Enabled)
{
    if (!hasMask() || !checkModifiable())
        return;
    const OrvUndoManager::AutoMacro Macro(
        (Enabled ? tr("Enable Mask of '%1'") : tr("Disable Mask of '%1'")).arg(name()));
    commonNode()->setUserAttributeValue(OrvMergeAttributes::MaskEnabled, Enabled);
}

bool OrvLayer::checkTakesMask() const
{
    return checkModifiable() && (!hasMask() || refuse(tr("'%1' has a mask already").arg(name())));
}

bool OrvLayer::addMask(const QString& MacroText, const OrvColor& Fill, const OrvImageBuffer& Pixels)
{
    OrvUndoManager::AutoMacro Macro(MacroText.arg(name()));
    const OrvImageSettings Settings = OrvImageSettings::ofLayer(m_pBlendNode);
    OrvSnChannelInputNode* pImages = OrvChainEditing::addImageNode(m_pBlendNode->network(), Settings.Layout,
        Settings.Mask, Fill, tr("%1 Mask").arg(name()), m_pBlendNode, -1, 2, Pixels);
    if (!commonNode()->connectInput(OrvSnNames::Mask, pImages)) {
        Macro.cancel();
        return false;
    }
    setMaskEnabled(true);
    // Who adds a mask paints on it next.
    if (isCurrent())
        OrvLayerManager::instance().setCurrentComponent(pImages);
    return true;
}

bool OrvLayer::addMaskImageSet(MaskType Type, const OrvColor& Fill)
{
    return checkTakesMask()
        && addMask(tr("Add Mask : %1"), Type == FilledMask ? Fill : OrvColor::clear(), OrvImageBuffer());
}

void OrvLayer::addMaskImageSet()
{
    addMaskImageSet(FilledMask, OrvColor::white());
}

void OrvLayer::addMaskImageSetAndFillBlack()
{
    addMaskImageSet(FilledMask, OrvColor::black());
}

bool OrvLayer::addMaskImageSetFromAlpha()
{
    if (!checkTakesMask())
        return false;
    const OrvImageSettings Settings = OrvImageSettings::ofLayer(m_pBlendNode);
    const OrvImageBuffer Alpha = OrvLayerRendering::renderAlphaOfInput(
        m_pBlendNode, OrvSnNames::Over, Settings.Layout, Settings.Mask);
    return !Alpha.isNull() && addMask(tr("Add Mask From Alpha : %1"), OrvColor::clear(), Alpha);
}

bool OrvLayer::addMaskImageSetFromSelection()
{
    if (!checkTakesMask())
        return false;
    const OrvImageSettings Settings = OrvImageSettings::ofLayer(m_pBlendNode);
    const OrvSelectionProvider* pProvider = OrvSelectionProvider::instance();
    const OrvImageBuffer Selection = pProvider ? pProvider->selection(Settings.Layout) : OrvImageBuffer();
    if (Selection.isNull())
        return refuse(tr("Nothing is selected"));
    return addMask(tr("Add Mask From Selection : %1"), OrvColor::clear(), asMask(Selection, Settings));
}

bool OrvLayer::addMaskImageSetFromSelectionGroupViaGUI()
{
    if (!checkTakesMask())
        return false;
    OrvSelectionProvider* pProvider = OrvSelectionProvider::instance();
    if (!pProvider || pProvider->selectionGroups().isEmpty())
        return refuse(tr("There are no selection groups"));
    const QString Group = pProvider->askForSelectionGroup();
    if (Group.isEmpty())
        return false;
    const OrvImageSettings Settings = OrvImageSettings::ofLayer(m_pBlendNode);
    const OrvImageBuffer Selection = pProvider->selectionGroup(Group, Settings.Layout);
    if (Selection.isNull())
        return refuse(tr("There is no selection group '%1'").arg(Group));
    return addMask(tr("Add Mask From Selection Group : %1"), OrvColor::clear(), asMask(Selection, Settings));
}

bool OrvLayer::copyMaskToClipboard()
{
    if (!hasMask())
        return refuse(tr("'%1' has no mask").arg(name()));
    OrvLayerClipboard::put(OrvLayerClipboard::Mask, OrvLayerSnapshot::captureMask(m_pBlendNode));
    return true;
}

bool OrvLayer::cutMaskToClipboard()
{
    if (!checkModifiable() || !copyMaskToClipboard())
        return false;
    const OrvUndoManager::AutoMacro Macro(tr("Cut Mask : %1").arg(name()));
    replaceMask(nullptr);
    return true;
}

bool OrvLayer::pasteMaskFromClipboard()
{
    if (!checkModifiable())
        return false;
    QString Error;
    OrvLayerSnapshot Snapshot;
    if (!OrvLayerClipboard::get(OrvLayerClipboard::Mask, Snapshot, Error))
        return refuse(Error);
    OrvUndoManager::AutoMacro Macro(tr("Paste Mask : %1").arg(name()));
    // A layer that nothing else reads brings the mask.
    const QVector<OrvSnMergeNode*> Carriers
        = Snapshot.instantiate(m_pBlendNode->network(), OrvImageSettings::ofLayer(m_pBlendNode).Layout);
    OrvSnBaseNode* pMask = Carriers.isEmpty() ? nullptr : Carriers.first()->inputNode(OrvSnNames::Mask);
    if (!pMask || !replaceMask(pMask)) {
        Macro.cancel();
        return refuse(tr("The mask cannot be pasted on '%1': it shares a channel that would then show itself")
                          .arg(name()));
    }
    OrvChainEditing::removeUnused(Carriers.first());
    setMaskEnabled(true);
    return true;
}

OrvLayerStack* OrvLayer::convertMaskToMaskStack()
{
    if (hasMaskStack())
        return maskStack();
    OrvSnBaseNode* pContent = maskNode();
    if (!pContent || !checkModifiable())
        return nullptr;
    OrvUndoManager::AutoMacro Macro(tr("Make Mask Stack : %1").arg(name()));
    OrvShaderNetwork* pNetwork = m_pBlendNode->network();
    OrvSnBaseNode* pBottom = OrvChainEditing::addNode(
        pNetwork, std::make_unique<OrvSnBottomTransparencyNode>(), QString(), pContent, -1, 0);
    OrvSnMergeNode* pMerge = OrvChainEditing::addNode(pNetwork, std::make_unique<OrvSnMergeNode>(),
        OrvLayerManager::instance().uniqueLayerName(pNetwork, tr("Mask")), pContent, 1, 0);
    const bool Done = pMerge->connectInput(OrvSnNames::Base, pBottom)
        && pMerge->connectInput(OrvSnNames::Over, pContent)
        && commonNode()->connectInput(OrvSnNames::Mask, pMerge);
    if (!Done) {
        Macro.cancel();
        return nullptr;
    }
    return maskStack();
}

bool OrvLayer::convertMaskToImageSet()
{
    if (!checkModifiable())
        return false;
    OrvSnBaseNode* pMask = maskNode();
    if (!pMask || hasMaskImageSet())
        return refuse(tr("'%1' has no mask stack and no procedural mask").arg(name()));
    const OrvImageSettings Settings = OrvImageSettings::ofLayer(m_pBlendNode);
    const OrvImageBuffer Pixels
        = OrvLayerRendering::renderMask(m_pBlendNode, Settings.Layout, Settings.Mask);
    if (Pixels.isNull())
        return false;
    OrvUndoManager::AutoMacro Macro(tr("Convert To Paintable Mask : %1").arg(name()));
    OrvSnBaseNode* pImages = OrvChainEditing::addImageNode(m_pBlendNode->network(), Settings.Layout,
        Settings.Mask, OrvColor::clear(), tr("%1 Mask").arg(name()), m_pBlendNode, -1, 2, Pixels);
    // Layers that share the mask share the image.
    const QVector<OrvSnBaseNode::Consumer> Readers = pMask->consumers();
    for (const OrvSnBaseNode::Consumer& Reader : Readers) {
        if (Reader.InputName == OrvSnNames::Mask && Reader.pNode != commonNode())
            Reader.pNode->connectInput(Reader.InputName, pImages);
    }
    if (!replaceMask(pImages)) {
        Macro.cancel();
        return false;
    }
    return true;
}

bool OrvLayer::applyMask()
{
    if (!checkModifiable())
        return false;
    if (!hasMask() || !isPaintableLayer())
        return refuse(tr("'%1' has no mask, or no paint to bake it into").arg(name()));
    if (isMultiChannelLayer())
        return refuse(tr("The mask of '%1' is seen in other channels too, which would lose it").arg(name()));
    const OrvImageBuffer Pixels
        = OrvLayerRendering::renderMasked(m_pBlendNode, OrvImageSettings::ofLayer(m_pBlendNode).Layout,
            paintImageSet()->format(), OrvChannelSpace::ofNode(paintNode()));
    if (Pixels.isNull())
        return false;
    const OrvUndoManager::AutoMacro Macro(tr("Bake Mask : %1").arg(name()));
    replacePaint(Pixels);
    replaceMask(nullptr);
    return true;
}

void OrvLayer::deleteMask()
{
    if (!hasMask() || !checkModifiable())
        return;
    const OrvUndoManager::AutoMacro Macro(tr("Remove Mask : %1").arg(name()));
    replaceMask(nullptr);
}

bool OrvLayer::replaceMask(OrvSnBaseNode* pMask)
{
    OrvLayerManager& Manager = OrvLayerManager::instance();
    OrvSnBaseNode* pFormer = maskNode();
    const OrvLayerStack* pStack = maskStack();
    const QList<OrvLayer*> Inside = pStack ? pStack->allLayers() : QList<OrvLayer*>();
    const QPointer<OrvSnBaseNode> pPainted = Manager.currentComponent();
    if (Inside.contains(Manager.currentLayer(m_pBlendNode->network())))
        Manager.setCurrentLayer(m_pBlendNode->network(), this, true);
    if (!commonNode()->connectInput(OrvSnNames::Mask, pMask))
        return false;
    OrvChainEditing::removeUnused(pFormer);
    OrvLayerStack::tellRemoved(Inside);
    // What was painted on is gone, or is no part of this layer any more.
    if (pPainted && (!pPainted->network() || pPainted == pFormer))
        Manager.setCurrentComponent(maskPaintNode() ? maskPaintNode() : paintNode());
    return true;
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
