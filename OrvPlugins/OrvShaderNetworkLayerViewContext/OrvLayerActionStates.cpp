#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerActionStates.h"

#include "OrvCore/Layers/OrvEditObstacle.h"
#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerClipboard.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Layers/OrvLayerStack.h"
#include "OrvCore/Layers/OrvLayerStreamUtils.h"
#include "OrvCore/Layers/OrvLayerUtils.h"
#include "OrvCore/Project/OrvProjectManager.h"
#include "OrvCoreModules/Menus/OrvActionHelpers.h"
#include "OrvCoreModules/Menus/OrvActionTreeManager.h"
#include "OrvCoreModules/Menus/OrvLateBindAction.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewContextConstants.h"

using namespace OrvLayerViewContext;

namespace {

const QLatin1Char Separator('/');

void setEnabled(
    const QString& Path, const QStringList& Texts, bool Enabled, const QString& Reason = QString())
{
    for (const QString& Text : Texts)
        OrvActionHelpers::setActionEnabled(Path + Separator + Text, Enabled, Reason);
}

void setSetEnabled(const QString& SetName, bool Enabled)
{
    OrvActionTreeManager::instance().setActionSetEnabled(SetName, Enabled);
}

/// The action that an entry of a menu stands for.
QAction* ownAction(QAction* pEntry)
{
    const auto* pLateBound = qobject_cast<OrvLateBindAction*>(pEntry);
    return pLateBound ? pLateBound->parentAction() : pEntry;
}

/// Whether the export command of that text, as the project explorer has it, writes masks and nothing else.
bool savesMasksOnly(const QAction* pAction)
{
    const QAction* pExplorerAction = OrvActionTreeManager::instance().findAction(
        QStringLiteral("Orvi/Project/Project Explorer/") + pAction->text());
    return pExplorerAction && pExplorerAction->property("OrvSaveSelectedMasksOnly").toBool();
}

} // namespace

OrvLayerActionStates::OrvLayerActionStates()
{
    if (!OrvProjectManager::instance().currentProject())
        return;
    m_LayerStack = OrvLayerManager::instance().currentLayerStack();
    m_Layer = OrvLayerManager::instance().currentLayer();
    if (!m_Layer)
        m_Obstacle = tr("Choose a layer first");
    else if (m_Layer->isBakePointLayer())
        m_Obstacle = tr("'%1' is a bake point").arg(m_Layer->name());
    else
        m_Obstacle = OrvEditObstacle::ofSharers(m_Layer);
    m_IsModifiable = m_Obstacle.isEmpty();
}

void OrvLayerActionStates::switchStackActions() const
{
    const bool HasStack = m_LayerStack != nullptr;
    const QString NoStack = tr("Choose a channel first");
    setEnabled(LayersPath,
        {tr("Add New Layer"), tr("Cut"), tr("Copy"), tr("Paste"), tr("Remove Layers"), tr("Merge Layers"),
            tr("Add Empty Layer Group"), tr("Group Layers"), tr("Share Layers As Channel"),
            tr("Cache Layers"), tr("Uncache Layers")},
        HasStack, NoStack);
    if (OrvLayerUtils::isBakePointLayerFeatureEnabled())
        setEnabled(LayersPath, {tr("Add Bake Point")}, HasStack, NoStack);
    setSetEnabled(LayersAdjustmentOnlySet, HasStack);
    setSetEnabled(LayersProceduralOnlySet, HasStack);
    OrvActionHelpers::setMenuEnabled(AddAdjustmentLayerMenu, HasStack, NoStack);
    OrvActionHelpers::setMenuEnabled(AddProceduralLayerMenu, HasStack, NoStack);
}

void OrvLayerActionStates::switchLayerActions() const
{
    const bool IsGroup
        = m_IsModifiable && m_LayerStack && OrvLayerStreamUtils::isLayerGroup(m_Layer, m_LayerStack);
    setEnabled(LayersPath, {tr("Flatten Layer Group"), tr("Ungroup Layers")}, IsGroup,
        whyNot(tr("Choose a group first")));
    switchMaskActions();
    switchAdjustmentActions();
    switchContentActions();
    switchExportActions();
}

void OrvLayerActionStates::switchMaskActions() const
{
    const bool HasMask = m_IsModifiable && m_Layer->hasMask();
    OrvActionHelpers::setMenuEnabled(LayerMaskMenu, m_IsModifiable, m_Obstacle);
    setEnabled(MaskPath,
        {tr("Reveal All"), tr("Hide All"), tr("From Alpha"), tr("From Selection"),
            tr("From Selection Group")},
        m_IsModifiable && !HasMask, whyNot(tr("The layer has a mask already")));
    const QString NoMask = tr("The layer has no mask");
    const auto orNoMask = [&](const QString& Reason) { return whyNot(HasMask ? Reason : NoMask); };
    setEnabled(MaskPath, {tr("Cut")}, HasMask, whyNot(NoMask));
    setEnabled(MaskPath, {tr("Copy")}, m_Layer && m_Layer->hasMask(), m_Layer ? NoMask : m_Obstacle);
    setEnabled(MaskPath, {tr("Paste")}, m_IsModifiable && OrvLayerClipboard::holds(OrvLayerClipboard::Mask),
        whyNot(tr("The clipboard holds no mask")));

    setEnabled(LayersPath, {tr("Make Mask Stack")}, HasMask && !m_Layer->hasMaskStack(),
        orNoMask(tr("The mask is a stack already")));
    setEnabled(LayersPath, {tr("Convert To Paintable Mask")},
        HasMask && (m_Layer->hasMaskStack() || m_Layer->isMaskProcedural()),
        orNoMask(tr("The mask is paintable already")));
    setEnabled(LayersPath, {tr("Bake Mask")},
        HasMask && m_Layer->isPaintableLayer() && !m_Layer->isMultiChannelLayer(),
        orNoMask(tr("The layer is no paint into which the mask could go")));
    setEnabled(LayersPath, {tr("Remove Mask")}, HasMask, whyNot(NoMask));
    setEnabled(LayersPath, {tr("Enable Mask")}, HasMask && !m_Layer->isMaskEnabled(),
        orNoMask(tr("The mask is enabled")));
    setEnabled(LayersPath, {tr("Disable Mask")}, HasMask && m_Layer->isMaskEnabled(),
        orNoMask(tr("The mask is disabled")));

    const bool HasMaskImages = HasMask && m_Layer->hasMaskImageSet();
    for (const QString& Menu : {ConvertMaskMenu, ResizeMaskMenu})
        OrvActionHelpers::setMenuEnabled(Menu, HasMaskImages, orNoMask(tr("The mask is no image")));
    for (const QString& SetName : {ConvertLayerMasksOnlySet, ResizeLayerMasksOnlySet})
        setSetEnabled(SetName, HasMaskImages);
}

void OrvLayerActionStates::switchAdjustmentActions() const
{
    const bool IsAdjustment = m_IsModifiable && m_Layer->isAdjustmentLayer();
    const bool HasSecondary = IsAdjustment && m_Layer->hasSecondaryAdjustment();
    OrvActionHelpers::setMenuEnabled(
        SecondaryAdjustmentMenu, IsAdjustment, whyNot(tr("The layer is no adjustment")));
    setSetEnabled(LayersSecondaryAdjustmentOnlySet, IsAdjustment && !HasSecondary);
    setEnabled(SecondaryAdjustmentPath, {tr("Remove Secondary Adjustment")}, HasSecondary,
        whyNot(tr("The layer has no secondary adjustment")));

    const bool TakesStack = m_IsModifiable && !IsAdjustment && m_Layer->canHaveAdjustmentStack();
    const bool HasStack = TakesStack && m_Layer->hasAdjustmentStack();
    const bool IsEnabled = HasStack && m_Layer->isAdjustmentStackEnabled();
    OrvActionHelpers::setMenuEnabled(
        AdjustmentStackMenu, TakesStack, whyNot(tr("The layer takes no adjustment stack")));
    setSetEnabled(LayersAdjustmentStackOnlySet, TakesStack);
    const QString NoStack = tr("The layer has no adjustment stack");
    const auto orNoStack = [&](const QString& Reason) { return whyNot(HasStack ? Reason : NoStack); };
    setEnabled(AdjustmentStackPath, {tr("Bake Adjustment Stack")}, HasStack && m_Layer->isPaintableLayer(),
        orNoStack(tr("The layer is no paint into which the adjustments could go")));
    setEnabled(AdjustmentStackPath, {tr("Remove Adjustment Stack")}, HasStack, whyNot(NoStack));
    setEnabled(AdjustmentStackPath, {tr("Enable Adjustment Stack")}, HasStack && !IsEnabled,
        orNoStack(tr("The adjustment stack is enabled")));
    setEnabled(AdjustmentStackPath, {tr("Disable Adjustment Stack")}, IsEnabled,
        orNoStack(tr("The adjustment stack is disabled")));
}

void OrvLayerActionStates::switchContentActions() const
{
    const bool IsMultiChannel = m_IsModifiable && OrvLayerStreamUtils::isMultiChannelMergeLayer(m_Layer);
    setEnabled(LayersPath, {tr("Convert To Paintable")},
        m_IsModifiable
            && (m_Layer->isProceduralLayer() || m_Layer->isGraphLayer() || m_Layer->isCustomProceduralLayer()
                || (IsMultiChannel && OrvLayerStreamUtils::isMaterialLayer(m_Layer))),
        whyNot(tr("The layer is no procedural, graph or material")));
    setEnabled(LayersPath, {tr("Open Layer Contents in Node Graph")}, m_Layer != nullptr,
        tr("Choose a layer first"));

    const bool IsShareable = m_IsModifiable && !IsMultiChannel;
    const QString InSeveral = tr("The layer is in several channels as it is");
    const auto orInSeveral
        = [&](const QString& Reason) { return whyNot(IsMultiChannel ? InSeveral : Reason); };
    OrvActionHelpers::setMenuEnabled(SharingMenu, IsShareable, whyNot(InSeveral));
    setEnabled(LayersPath, {tr("Share Layers As Channel")}, IsShareable && m_LayerStack,
        orInSeveral(tr("Choose a channel first")));
    setEnabled(LayersPath, {tr("Share Layer")}, IsShareable, orInSeveral(tr("Choose a layer first")));
    setEnabled(LayersPath, {tr("Unshare Layer")}, IsShareable && m_Layer->isShared(),
        orInSeveral(tr("The layer is not shared")));
    setEnabled(LayersPath, {tr("Make Shared Channel Current")}, IsShareable && m_Layer->isSharedShaderInput(),
        orInSeveral(tr("The layer shows no channel")));

    setEnabled(LayersPath, {tr("Cache Up To Here")}, m_Layer && m_Layer->canCacheUpToHere(),
        m_Layer ? tr("The layer is part of a cache already") : m_Obstacle);
    setEnabled(LayersPath, {tr("Uncache Up To Here")}, m_Layer && m_Layer->hasCacheUpToHere(),
        m_Layer ? tr("The layer is not cached up to here") : m_Obstacle);
    setEnabled(LayersPath, {tr("Quick Find")}, OrvProjectManager::instance().currentProject() != nullptr);
}

void OrvLayerActionStates::switchExportActions() const
{
    for (const QString& Menu : {CachingMenu, ExportLayerMenu, ExportFlattenedLayerMenu, ImportLayerMenu})
        OrvActionHelpers::setMenuEnabled(Menu, m_LayerStack != nullptr, tr("Choose a channel first"));
    for (const QString& Menu : {ExportLayerMenu, ExportFlattenedLayerMenu}) {
        for (QAction* pEntry : OrvActionHelpers::getMenuActions(Menu)) {
            if (QAction* pAction = ownAction(pEntry))
                pAction->setEnabled(canBeExported(pAction));
        }
    }
}

bool OrvLayerActionStates::canBeExported(const QAction* pAction) const
{
    if (!m_Layer)
        return false;
    // A shader has no image of its own to write; the mask of its layer has.
    return !m_Layer->isShaderLayer() || (m_Layer->hasMask() && savesMasksOnly(pAction));
}
