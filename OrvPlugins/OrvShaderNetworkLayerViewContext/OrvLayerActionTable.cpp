#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerActionTable.h"

#include "OrvCore/Layers/OrvLayerUtils.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCoreModules/Menus/OrvAction.h"
#include "OrvCoreModules/Menus/OrvActionTreeManager.h"
#include "OrvCoreModules/Menus/OrvMenuManager.h"
#include "OrvCoreModules/Menus/OrvShortcutManager.h"
#include "OrvDdi/Image/OrvChannel.h"
#include "OrvDdi/Image/OrvImage.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerActions.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewContextConstants.h"

using namespace OrvLayerViewContext;

namespace {

const QLatin1Char Separator('/');
const QString ShortcutGroup = QStringLiteral("Layers");
const char NoIcon[] = "";
const char* const ViewRelay = SLOT(invokeLayerViewMethod(QAction*));
const char* const StackRelay = SLOT(invokeLayerStackMethod(QAction*));
const char* const LayerRelay = SLOT(invokeLayerMethod(QAction*));

QVariant withCreateFlags(const char* pMethod)
{
    return QVariantList{
        QString::fromLatin1(pMethod), QVariant::fromValue(OrvLayerCreateFlags(NewLayerFlags))};
}

} // namespace

/// The same layer types, offered for one use.
struct OrvLayerActionTable::LayerTypeFamily {
    QString ActionPath;
    QString SetName;
    QString MenuPath;
    QStringList Groups;
    QString Method;
    const char* pRelay;
    QString Icon;
};

OrvLayerActionTable::OrvLayerActionTable(QObject* pActions)
    : m_pActions(pActions)
    , m_Creator(LayersPath, pActions, LayersMenu, LayersOnlySet)
{
}

void OrvLayerActionTable::createActions()
{
    setDefaultShortcuts();
    createLayerActions();
    createMaskActions();
    createMaskImageActions();
    createAdjustmentActions();
    createContentActions();
    createCachingActions();
    placeHostMenus();
    createLayerTypeActions();
    createQuickFind();
}

void OrvLayerActionTable::setDefaultShortcuts()
{
    // Cut, copy, paste and removal have theirs in the layer tree alone, elsewhere the keys mean something
    // else; the menus show them all the same.
    OrvShortcutManager& Shortcuts = OrvShortcutManager::instance();
    const auto set = [&Shortcuts](const QString& Text, int Keys) {
        Shortcuts.setDefaultShortcut(LayersPath + Separator + Text, QKeySequence(Keys));
    };
    set(tr("Add New Layer"), Qt::CTRL + Qt::SHIFT + Qt::Key_N);
    set(tr("Merge Layers"), Qt::CTRL + Qt::Key_E);
    set(tr("Group Layers"), Qt::CTRL + Qt::Key_G);
    set(tr("Ungroup Layers"), Qt::CTRL + Qt::SHIFT + Qt::Key_G);
    set(tr("Flatten Layer Group"), Qt::CTRL + Qt::SHIFT + Qt::Key_E);
    const auto show = [&Shortcuts](const QString& Text, const char* pTreeSlot) {
        Shortcuts.showWidgetShortcut(LayersPath + Separator + Text, ShortcutGroup, pTreeSlot);
    };
    show(tr("Cut"), SLOT(cut()));
    show(tr("Copy"), SLOT(copy()));
    show(tr("Paste"), SLOT(paste()));
    show(tr("Remove Layers"), SLOT(removeLayers()));
}

void OrvLayerActionTable::beginMenu(const QString& MenuPath, const char* pIcon)
{
    OrvMenuManager::instance().placeMenu(MenuPath, QString::fromLatin1(pIcon));
    m_Creator.setMenuPath(MenuPath);
}

void OrvLayerActionTable::add(const QString& Text, const char* pIcon, const char* pSlot, const QVariant& Data)
{
    m_Creator.create(Text, QString::fromLatin1(pIcon), pSlot, Data, QString());
}

void OrvLayerActionTable::createLayerActions()
{
    add(tr("Add New Layer"), "AddPaintLayer.png", ViewRelay, "addNewLayer");
    beginMenu(AddAdjustmentLayerMenu, "AddAdjustmentLayer.png");
    beginMenu(AddProceduralLayerMenu, "AddProceduralLayer.png");
    m_Creator.setMenuPath(LayersMenu);
    m_Creator.addMenuSeparator();
    add(tr("Cut"), "Cut.png", StackRelay, "cutToClipboard");
    add(tr("Copy"), "Copy.png", StackRelay, "copyToClipboard");
    add(tr("Paste"), "Paste.png", ViewRelay, "paste");
    add(tr("Remove Layers"), "DeleteLayer.png", StackRelay, "deleteLayers");
    m_Creator.addMenuSeparator();
    add(tr("Merge Layers"), "AddPaintLayer.png", StackRelay, withCreateFlags("mergeLayers"));
    add(tr("Add Empty Layer Group"), "AddLayerGroup.png", StackRelay, withCreateFlags("createGroupLayer"));
    add(tr("Group Layers"), "AddLayerGroup.png", ViewRelay, withCreateFlags("groupLayers"));
    add(tr("Flatten Layer Group"), "AddPaintLayer.png", SLOT(flattenLayerGroup()));
    add(tr("Ungroup Layers"), "RemoveLayerGroup.png", StackRelay, "ungroupLayers");
    m_Creator.addMenuSeparator();
}

void OrvLayerActionTable::createMaskActions()
{
    m_Creator.setActionPath(MaskPath);
    beginMenu(LayerMaskMenu, "Mask.png");
    add(tr("Reveal All"), "ShowAll.png", LayerRelay, "addMaskImageSet");
    add(tr("Hide All"), "Hide.png", LayerRelay, "addMaskImageSetAndFillBlack");
    add(tr("From Alpha"), "AlphaToMask.png", LayerRelay, "addMaskImageSetFromAlpha");
    add(tr("From Selection"), "AlphaToMask.png", LayerRelay, "addMaskImageSetFromSelection");
    add(tr("From Selection Group"), "AlphaToMask.png", LayerRelay, "addMaskImageSetFromSelectionGroupViaGUI");
    m_Creator.addMenuSeparator();
    add(tr("Cut"), "Cut.png", LayerRelay, "cutMaskToClipboard");
    add(tr("Copy"), "Copy.png", LayerRelay, "copyMaskToClipboard");
    add(tr("Paste"), "Paste.png", LayerRelay, "pasteMaskFromClipboard");
    m_Creator.addMenuSeparator();

    m_Creator.setActionPath(LayersPath);
    add(tr("Make Mask Stack"), "Mask.png", LayerRelay, "convertMaskToMaskStack");
    add(tr("Convert To Paintable Mask"), "Mask.png", LayerRelay, "convertMaskToImageSet");
    add(tr("Bake Mask"), "MaskToAlpha.png", LayerRelay, "applyMask");
    add(tr("Remove Mask"), "Mask.png", LayerRelay, "deleteMask");
    add(tr("Enable Mask"), "Mask.png", LayerRelay, QVariantList{"setMaskEnabled", true});
    add(tr("Disable Mask"), "ToggleMaskPreview.png", LayerRelay, QVariantList{"setMaskEnabled", false});
    m_Creator.addMenuSeparator();
}

void OrvLayerActionTable::createMaskImageActions()
{
    m_Creator.setActionPath(ConvertMaskPath);
    beginMenu(ConvertMaskMenu, "ConvertChannel.png");
    m_Creator.setActionSetName(ConvertLayerMasksOnlySet);
    for (const auto& Depth : OrvImage::sortedSupportedDepths())
        m_Creator.createAndAddToMenu(Depth.first, QStringLiteral("ConvertChannel.png"),
            SLOT(maskConvertCurrent(QAction*)), uint(Depth.second), QString());

    m_Creator.setActionPath(ResizeMaskPath);
    beginMenu(ResizeMaskMenu, "scale.png");
    m_Creator.setActionSetName(ResizeLayerMasksOnlySet);
    const auto addSize = [this](const QString& Text, int Size) {
        m_Creator.createAndAddToMenu(
            Text, QStringLiteral("scale.png"), SLOT(maskResizeCurrent(QAction*)), Size, QString());
    };
    addSize(tr("Halve Size"), -1);
    addSize(tr("Double Size"), -2);
    m_Creator.addMenuSeparator();
    for (const QSize& Size : OrvChannel::supportedTextureSizes())
        addSize(tr("%1 x %2").arg(Size.width()).arg(Size.height()), Size.width());
}

void OrvLayerActionTable::createAdjustmentActions()
{
    m_Creator.setActionSetName(LayersOnlySet);
    m_Creator.setMenuPath(LayersMenu);
    m_Creator.addMenuSeparator();

    m_Creator.setActionPath(SecondaryAdjustmentPath);
    beginMenu(AddSecondaryAdjustmentMenu, "AddAdjustmentLayer.png");
    beginMenu(SecondaryAdjustmentMenu, "AddAdjustmentLayer.png");
    add(tr("Remove Secondary Adjustment"), "DeleteLayer.png", LayerRelay, "removeSecondaryAdjustmentLayer");

    m_Creator.setActionPath(AdjustmentStackPath);
    beginMenu(AddAdjustmentStackMenu, "AddAdjustmentLayer.png");
    beginMenu(AdjustmentStackMenu, "AddAdjustmentStack.png");
    add(tr("Bake Adjustment Stack"), NoIcon, LayerRelay, "convertAdjustmentStackToImageSet");
    add(tr("Remove Adjustment Stack"), NoIcon, LayerRelay, "removeLayerAdjustment");
    add(tr("Enable Adjustment Stack"), NoIcon, LayerRelay, "enableAdjustmentStack");
    add(tr("Disable Adjustment Stack"), NoIcon, LayerRelay, "disableAdjustmentStack");
}

void OrvLayerActionTable::createContentActions()
{
    m_Creator.setActionPath(LayersPath);
    m_Creator.setMenuPath(LayersMenu);
    m_Creator.addMenuSeparator();
    add(tr("Convert To Paintable"), "Painting.png", LayerRelay, "convertPayloadToImageSet");
    add(tr("Open Layer Contents in Node Graph"), NoIcon, SLOT(openLayerContentsInNodeGraph()));
    beginMenu(SharingMenu, "linked.16x16.png");
    add(tr("Share Layers As Channel"), NoIcon, SLOT(shareLayersAsChannel()));
    add(tr("Share Layer"), NoIcon, SLOT(shareCurrentLayer()));
    add(tr("Unshare Layer"), NoIcon, LayerRelay, "unshareLayer");
    m_Creator.addMenuSeparator();
    add(tr("Make Shared Channel Current"), NoIcon, SLOT(makeSharedShaderInputCurrent()));
}

void OrvLayerActionTable::createCachingActions()
{
    beginMenu(CachingMenu, "Bake.png");
    if (OrvAction* pAddBakePoint = m_Creator.create(tr("Add Bake Point"), QStringLiteral("Bake.png"),
            StackRelay, withCreateFlags("createBakePointLayer"), QString()))
        pAddBakePoint->setVisible(OrvLayerUtils::isBakePointLayerFeatureEnabled());
    m_Creator.addMenuSeparator();
    m_Creator.setActionSetName(CacheLayersOnlySet);
    add(tr("Cache Layers"), NoIcon, StackRelay, "cacheLayers");
    add(tr("Cache Up To Here"), NoIcon, LayerRelay, "cacheUpToHere");
    add(tr("Uncache Layers"), NoIcon, StackRelay, "uncacheLayers");
    add(tr("Uncache Up To Here"), NoIcon, LayerRelay, "uncacheUpToHere");
    m_Creator.setActionSetName(LayersOnlySet);
}

void OrvLayerActionTable::placeHostMenus()
{
    m_Creator.setMenuPath(LayersMenu);
    m_Creator.addMenuSeparator();
    beginMenu(ImportLayerMenu, "Import.png");
    beginMenu(ExportLayerMenu, "Export.png");
    beginMenu(ExportFlattenedLayerMenu, "Export.png");
}

void OrvLayerActionTable::createQuickFind()
{
    auto* pAction = new QAction(tr("Quick Find"), m_pActions);
    OrvActionTreeManager::instance().registerAction(LayersPath + Separator, pAction);
    QObject::connect(pAction, SIGNAL(triggered()), m_pActions, SLOT(quickFind()));
    OrvShortcutManager::instance().addShortcutGroupMapping(ShortcutGroup, QStringLiteral("OrvLayerView"));
}

void OrvLayerActionTable::createLayerTypeActions()
{
    const QStringList Adjustments{QStringLiteral("Filter")};
    const QString AdjustmentIcon = QStringLiteral("AddAdjustmentLayer.png");
    const LayerTypeFamily Families[] = {
        {AdjustmentPath, LayersAdjustmentOnlySet, AddAdjustmentLayerMenu, Adjustments,
            QStringLiteral("addAdjustmentLayerFromKey"), ViewRelay, AdjustmentIcon},
        {ProceduralPath, LayersProceduralOnlySet, AddProceduralLayerMenu,
            OrvLayerUtils::getProceduralLayerGroups(), QStringLiteral("addProceduralLayerFromKey"), ViewRelay,
            QStringLiteral("AddProceduralLayer.png")},
        {SecondaryAdjustmentPath, LayersSecondaryAdjustmentOnlySet, AddSecondaryAdjustmentMenu, Adjustments,
            QStringLiteral("addSecondaryAdjustmentLayerFromKey"), LayerRelay, AdjustmentIcon},
        {AdjustmentStackPath, LayersAdjustmentStackOnlySet, AddAdjustmentStackMenu, Adjustments,
            QStringLiteral("addLayerAdjustmentLayerFromKey"), LayerRelay, AdjustmentIcon},
    };
    for (const LayerTypeFamily& Family : Families)
        createLayerTypeActions(Family);
}

void OrvLayerActionTable::createLayerTypeActions(const LayerTypeFamily& Family)
{
    const OrvShaderNetworkManager& NetworkManager = OrvShaderNetworkManager::instance();
    const OrvActionTreeManager& ActionTree = OrvActionTreeManager::instance();
    OrvActionCreator Creator(Family.ActionPath, m_pActions, Family.MenuPath, Family.SetName);
    for (const QString& Key : NetworkManager.layerPathKeys()) {
        const QString NodePath = NetworkManager.nodeMenuPath(Key);
        if (!Family.Groups.contains(NodePath.section(Separator, 0, 0))
            || ActionTree.hasAction(Family.ActionPath + Separator + NodePath))
            continue;
        Creator.createAndAddToMenuWithHierarchy(
            NodePath, Family.Icon, Family.pRelay, QVariantList{Family.Method, Key}, QString());
    }
}
