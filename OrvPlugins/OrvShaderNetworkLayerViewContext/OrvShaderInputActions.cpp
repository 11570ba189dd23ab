#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputActions.h"

#include "OrvCore/Channels/OrvChannelFlattening.h"
#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvShaderInputManager.h"
#include "OrvCore/Channels/OrvShaderInputUtils.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCore/Network/OrvSnNames.h"
#include "OrvCore/Object/OrvDebug.h"
#include "OrvCore/Project/OrvGeoEntity.h"
#include "OrvCore/Project/OrvProjectManager.h"
#include "OrvCore/Shaders/OrvLayerShader.h"
#include "OrvCore/Shaders/OrvLayerShaderManager.h"
#include "OrvCore/Undo/OrvUndoManager.h"
#include "OrvCoreModules/Menus/OrvAction.h"
#include "OrvCoreModules/Menus/OrvActionCreator.h"
#include "OrvCoreModules/Menus/OrvActionHelpers.h"
#include "OrvCoreModules/Menus/OrvActionTreeManager.h"
#include "OrvCoreModules/Menus/OrvMenuManager.h"
#include "OrvCoreModules/Window/OrvMainWindow.h"
#include "OrvDdi/Image/OrvChannel.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewContextConstants.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewUtils.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvMethodRelay.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputActionsConvertDialog.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputConversion.h"

#include <QtCore/QPointer>
#include <QtWidgets/QAction>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QPushButton>

#include <algorithm>
#include <optional>

using namespace OrvLayerViewContext;

namespace {

const char File[] = "OrvShaderInputActions";

void report(int Line, const QString& Message)
{
    OrvDebug(File, Line, Message, false, false);
}

/// Null is reported under the name, and told to the user.
OrvShaderInput* currentShaderInput(const char* pName, int Line)
{
    OrvShaderInput* pShaderInput = OrvShaderInputManager::instance().currentShaderInput();
    if (!pShaderInput) {
        report(Line, QStringLiteral("%1 is NULL").arg(QLatin1String(pName)));
        OrvLayerViewUtils::tell(
            OrvShaderInputActions::tr("There is no channel to work on: add or choose one first"));
    }
    return pShaderInput;
}

/// What becomes of the layers that share the channel; nothing when the user cancels.
std::optional<OrvShaderInputManager::DestroyStrategy> askDestroyStrategy()
{
    QMessageBox Box(&OrvMainWindow::instance());
    Box.setWindowTitle(OrvShaderInputActions::tr("Shared Channel"));
    Box.setText(OrvShaderInputActions::tr("The channel to remove is shared as a layer elsewhere."));
    Box.setInformativeText(OrvShaderInputActions::tr("What would you like to do?\n"
                                                     "  * Convert shared channel layers to Layer Groups\n"
                                                     "  * Delete all shared channel layers\n"
                                                     "  * Cancel"));
    const QPushButton* pCancel = Box.addButton(OrvShaderInputActions::tr("Cancel"), QMessageBox::RejectRole);
    const QPushButton* pDeleteAll
        = Box.addButton(OrvShaderInputActions::tr("Delete All"), QMessageBox::DestructiveRole);
    QPushButton* pLayerGroup
        = Box.addButton(OrvShaderInputActions::tr("Layer Group"), QMessageBox::AcceptRole);
    Box.setDefaultButton(pLayerGroup);
    // Whoever closes the box without an answer gets what loses nothing.
    Box.setEscapeButton(pLayerGroup);
    Box.exec();
    if (Box.clickedButton() == pCancel)
        return std::nullopt;
    return Box.clickedButton() == pDeleteAll ? OrvShaderInputManager::SharersAreDeleted
                                             : OrvShaderInputManager::SharersBecomeGroups;
}

bool askToFlatten(const QString& Title, const QString& Text)
{
    QMessageBox Box(QMessageBox::Question, Title, Text, QMessageBox::NoButton, &OrvMainWindow::instance());
    const QPushButton* pFlatten
        = Box.addButton(OrvShaderInputActions::tr("Flatten"), QMessageBox::AcceptRole);
    QPushButton* pCancel = Box.addButton(OrvShaderInputActions::tr("Cancel"), QMessageBox::RejectRole);
    Box.setDefaultButton(pCancel);
    Box.setEscapeButton(pCancel);
    Box.exec();
    return Box.clickedButton() == pFlatten;
}

/// Tells the user when it cannot.
bool canGoToClipboard(const OrvShaderInput* pShaderInput, const QString& FailureTitle)
{
    if (!pShaderInput->containsMultiChannelLayerOfShaderModel(nullptr))
        return true;
    OrvLayerViewUtils::warn(FailureTitle,
        OrvShaderInputActions::tr(
            "This Channel contains Multi-Channel Layers and cannot be cut, copied or pasted. "
            "Please convert all Multi-Channel Layers to standard Layers first."));
    return false;
}

} // namespace

OrvShaderInputActions& OrvShaderInputActions::instance()
{
    static OrvShaderInputActions Instance;
    return Instance;
}

OrvShaderInputActions::OrvShaderInputActions()
{
    createActions();
    OrvChannelFlattening::setQuestion(askToFlatten);
    OrvProjectManager& ProjectManager = OrvProjectManager::instance();
    connect(&ProjectManager, SIGNAL(onMakeProjectCurrent(OrvProject*)), this,
        SLOT(switchActionsEnabled(OrvProject*)));
    connect(
        &ProjectManager, SIGNAL(objectMadeCurrent(OrvGeoEntity*)), this, SLOT(explainSizes(OrvGeoEntity*)));
    connect(&OrvShaderInputManager::instance(), SIGNAL(currentShaderInputChanged(OrvShaderInput*)), this,
        SLOT(markPresentSize()));
    connect(&OrvUndoManager::instance(), SIGNAL(editFinished()), this, SLOT(markPresentSize()));
    switchActionsEnabled(ProjectManager.currentProject());
}

OrvShaderInputActions::~OrvShaderInputActions()
{
    // The module may be unloaded before the document's library.
    OrvChannelFlattening::setQuestion({});
}

void OrvShaderInputActions::createActions()
{
    OrvActionCreator Creator(ChannelsPath, this, ChannelsMenu, ShaderInputOnlySet);
    const auto add
        = [&Creator](const QString& Text, const char* pIcon, const char* pSlot, const char* pData = nullptr) {
              Creator.create(Text, QString::fromLatin1(pIcon), pSlot,
                  pData ? QVariant(QString::fromLatin1(pData)) : QVariant(), QString());
          };
    add(tr("Add Channel"), "AddChannel.png", SLOT(addShaderInput()));
    add(tr("Add Material Channel"), "AddMaterials.png", SLOT(addMaterialShaderInput()));
    add(tr("Add Material Channel to Material Shader"), "AddMaterials.png",
        SLOT(addMaterialLayersToMaterialsShader()));
    Creator.addMenuSeparator();
    add(tr("Convert Channel"), "ConvertChannel.png", SLOT(convertShaderInput()));
    add(tr("Remove Channel"), "RemoveChannel.png", SLOT(removeShaderInput()));
    add(tr("Flatten"), "BakeShader.png", SLOT(invokeShaderInputMethod(QAction*)), "flattenUI");
    Creator.addMenuSeparator();
    add(tr("Cut"), "Cut.png", SLOT(cut()));
    add(tr("Copy"), "Copy.png", SLOT(copy()));
    add(tr("Paste"), "Paste.png", SLOT(paste()));
    Creator.addMenuSeparator();
    createResizeActions(Creator);
    Creator.setMenuPath(ChannelsMenu);
    Creator.addMenuSeparator();
    OrvMenuManager& Menus = OrvMenuManager::instance();
    Menus.placeMenu(ImportChannelMenu, QStringLiteral("Import.png"));
    Menus.placeMenu(ExportChannelMenu, QStringLiteral("Export.png"));
    Menus.placeMenu(ExportFlattenedChannelMenu, QStringLiteral("Export.png"));
}

void OrvShaderInputActions::createResizeActions(OrvActionCreator& Creator)
{
    OrvMenuManager::instance().placeMenu(ResizeChannelMenu, QStringLiteral("scale.png"));
    Creator.setActionPath(ResizeChannelPath);
    Creator.setMenuPath(ResizeChannelMenu);
    Creator.setActionSetName(PatchOnlySet);
    for (const QSize& Size : OrvChannel::supportedTextureSizes()) {
        OrvAction* pAction = Creator.createAndAddToMenu(tr("%1 x %2").arg(Size.width()).arg(Size.height()),
            QStringLiteral("scale.png"), SLOT(resizeShaderInput(QAction*)), Size.width(), QString());
        pAction->setCheckable(true);
        m_SizeActions.append(pAction);
    }
}

void OrvShaderInputActions::addShaderInput()
{
    OrvUndoManager::AutoMacro Macro(tr("Add Channel"));
    OrvShaderInput* pShaderInput = OrvShaderInputUtils::createShaderInput(false);
    if (!pShaderInput) {
        Macro.cancel();
        return;
    }
    // Layers that are added next are meant for it.
    OrvShaderInputManager::instance().makeShaderInputCurrent(pShaderInput, true);
}

void OrvShaderInputActions::addMaterialShaderInput()
{
    OrvUndoManager::AutoMacro Macro(tr("Add Material Channel"));
    const OrvShaderInput* pShaderInput = OrvShaderInputUtils::createShaderInput(true);
    if (!pShaderInput) {
        Macro.cancel();
        return;
    }
    pShaderInput->node()->addTag(OrvSnNames::MaterialShaderInputTag, true);
    // No list shows it before it feeds a shader.
    OrvLayerViewUtils::tell(tr("'%1' was added: choose it at an input for materials in the Shaders palette")
                                .arg(pShaderInput->name()));
}

void OrvShaderInputActions::addMaterialLayersToMaterialsShader()
{
    OrvLayerShader* pShader = OrvLayerShaderManager::instance().currentLayerShader();
    if (!pShader) {
        report(__LINE__, QStringLiteral("ShaderLayer is NULL"));
        return;
    }
    const QStringList Inputs = pShader->inputNames();
    const auto isMissing = [pShader](const QString& InputName) {
        return !pShader->inputShaderInput(InputName)
            && pShader->hasInputTag(InputName, OrvSnNames::MaterialShaderInputTag);
    };
    if (std::none_of(Inputs.begin(), Inputs.end(), isMissing)) {
        OrvLayerViewUtils::tell(
            tr("'%1' has no free input for a material: choose a layered shader that has one")
                .arg(pShader->name()));
        return;
    }
    const OrvUndoManager::AutoMacro Whole(tr("Add Material Channel"));
    for (const QString& InputName : Inputs) {
        if (!isMissing(InputName))
            continue;
        OrvUndoManager::AutoMacro Macro(tr("Add Material Channel"));
        OrvShaderInput* pShaderInput = OrvShaderInputUtils::createShaderInput(true);
        if (!pShaderInput || !pShader->setInputShaderInput(InputName, pShaderInput))
            Macro.cancel();
    }
}

void OrvShaderInputActions::convertShaderInput()
{
    const QPointer<OrvShaderInput> pShaderInput = currentShaderInput("pShaderInput", __LINE__);
    if (!pShaderInput)
        return;
    const auto Images = pShaderInput->allImageSetsByStatus();
    OrvShaderInputActionsConvertDialog Dialog(pShaderInput, &OrvMainWindow::instance(),
        !Images.value(OrvLayerStack::LockedImageSets).isEmpty(),
        !Images.value(OrvLayerStack::SharedImageSets).isEmpty());
    if (Dialog.exec() != QDialog::Accepted || !pShaderInput)
        return;
    OrvUndoManager::AutoMacro Macro(tr("Convert Channel : %1").arg(pShaderInput->path()));
    if (!OrvShaderInputConversion::convert(pShaderInput, Dialog))
        Macro.cancel();
}

void OrvShaderInputActions::removeShaderInput()
{
    OrvShaderInputManager& Channels = OrvShaderInputManager::instance();
    const QPointer<OrvShaderInput> pCurrentShaderInput = currentShaderInput("pCurrentShaderInput", __LINE__);
    if (!pCurrentShaderInput)
        return;
    auto Strategy = std::make_optional(OrvShaderInputManager::SharersBecomeGroups);
    // A channel that cannot be removed is not asked about; the host says why it stays.
    if (pCurrentShaderInput->isModifiable() && pCurrentShaderInput->isSharedLayers())
        Strategy = askDestroyStrategy();
    if (!Strategy || !pCurrentShaderInput)
        return;

    OrvUndoManager::AutoMacro Macro(tr("Remove Channel"));
    Channels.selectNextShaderInput();
    if (!Channels.destroy(pCurrentShaderInput, *Strategy)) {
        Macro.cancel();
        Channels.makeShaderInputCurrent(pCurrentShaderInput, true);
    }
}

void OrvShaderInputActions::cut()
{
    OrvShaderInput* pShaderInput = OrvShaderInputManager::instance().currentShaderInput();
    if (pShaderInput && canGoToClipboard(pShaderInput, tr("Cut Operation Failed")))
        OrvShaderInputUtils::cutToClipboard(pShaderInput, OrvShaderInputManager::SharersBecomeGroups);
}

void OrvShaderInputActions::copy()
{
    OrvShaderInput* pShaderInput = OrvShaderInputManager::instance().currentShaderInput();
    if (pShaderInput && canGoToClipboard(pShaderInput, tr("Copy Operation Failed")))
        OrvShaderInputUtils::copyToClipboard(pShaderInput);
}

void OrvShaderInputActions::paste()
{
    OrvShaderNetwork* pNetwork = OrvShaderNetworkManager::instance().currentShaderNetwork();
    QString Error;
    if (pNetwork && !OrvShaderInputUtils::pasteFromClipboard(Error, pNetwork))
        OrvLayerViewUtils::warn(tr("Layer Operation Failed"), Error);
}

void OrvShaderInputActions::resizeShaderInput(QAction* Action)
{
    if (!Action) {
        report(__LINE__, QStringLiteral("pAction is NULL"));
        return;
    }
    const QVariant Width = Action->data();
    if (Width.userType() != QMetaType::Int) {
        report(__LINE__,
            QString::asprintf("Action '%s' contains invalid data type of '%s'",
                qUtf8Printable(Action->text()), qUtf8Printable(QString::fromLatin1(Width.typeName()))));
        return;
    }
    if (OrvShaderInput* pShaderInput = OrvShaderInputManager::instance().currentShaderInput())
        pShaderInput->resizeLayers(Width.toInt(), nullptr, true, true);
    markPresentSize(); // the click has checked what it may not have become
}

void OrvShaderInputActions::markPresentSize()
{
    const OrvShaderInput* pShaderInput = OrvShaderInputManager::instance().currentShaderInput();
    const QSize Present = pShaderInput ? pShaderInput->imageSetSize() : QSize();
    for (OrvAction* pAction : qAsConst(m_SizeActions)) {
        const int Edge = pAction->data().toInt();
        pAction->setChecked(QSize(Edge, Edge) == Present);
    }
}

void OrvShaderInputActions::explainSizes(OrvGeoEntity* Entity)
{
    const QString Reason = Entity && Entity->isPtex()
        ? tr("The channels of '%1' are as large as its faces").arg(Entity->name())
        : QString();
    for (OrvAction* pAction : qAsConst(m_SizeActions)) {
        pAction->setToolTip(Reason);
        pAction->setStatusTip(Reason);
    }
}

void OrvShaderInputActions::invokeShaderInputMethod(QAction* Action)
{
    OrvMethodRelay::invoke(
        OrvShaderInputManager::instance().currentShaderInput(), "pCurrentShaderInput", Action, File);
}

void OrvShaderInputActions::switchActionsEnabled(OrvProject* Project)
{
    const bool Enabled = Project != nullptr;
    OrvActionTreeManager::instance().setActionSetEnabled(ShaderInputOnlySet, Enabled);
    for (const QString& Menu :
        {ImportChannelMenu, ExportChannelMenu, ExportFlattenedChannelMenu, ResizeChannelMenu})
        OrvActionHelpers::setMenuEnabled(Menu, Enabled, tr("Open a project first"));
}

#include "moc_OrvShaderInputActions.cpp"
