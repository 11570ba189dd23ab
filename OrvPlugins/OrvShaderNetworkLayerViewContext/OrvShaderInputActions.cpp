#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputActions.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvShaderInputManager.h"
#include "OrvCore/Channels/OrvShaderInputUtils.h"
#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCore/Object/OrvDebug.h"
#include "OrvCore/Project/OrvProjectManager.h"
#include "OrvCore/Undo/OrvUndoManager.h"
#include "OrvCoreModules/Menus/OrvActionCreator.h"
#include "OrvCoreModules/Menus/OrvActionTreeManager.h"
#include "OrvCoreModules/Window/OrvMainWindow.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewContextConstants.h"

#include <QtCore/QPointer>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QPushButton>

#include <optional>

namespace {

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
    QPushButton* pLayerGroup = Box.addButton(OrvShaderInputActions::tr("Layer Group"), QMessageBox::AcceptRole);
    Box.setDefaultButton(pLayerGroup);
    Box.exec();
    if (Box.clickedButton() == pCancel)
        return std::nullopt;
    return Box.clickedButton() == pDeleteAll ? OrvShaderInputManager::SharersAreDeleted
                                             : OrvShaderInputManager::SharersBecomeGroups;
}

} // namespace

OrvShaderInputActions& OrvShaderInputActions::instance()
{
    static OrvShaderInputActions Instance;
    return Instance;
}

OrvShaderInputActions::OrvShaderInputActions()
{
    OrvActionCreator Creator(OrvLayerViewContext::ChannelsPath, this, OrvLayerViewContext::ChannelsMenu,
        OrvLayerViewContext::ShaderInputOnlySet);
    Creator.create(tr("Add Channel"), QStringLiteral("AddChannel.png"), SLOT(addShaderInput()), QVariant(), QString());
    Creator.create(
        tr("Remove Channel"), QStringLiteral("RemoveChannel.png"), SLOT(removeShaderInput()), QVariant(), QString());
    OrvProjectManager& ProjectManager = OrvProjectManager::instance();
    connect(
        &ProjectManager, SIGNAL(onMakeProjectCurrent(OrvProject*)), this, SLOT(switchActionsEnabled(OrvProject*)));
    switchActionsEnabled(ProjectManager.currentProject());
}

void OrvShaderInputActions::addShaderInput()
{
    OrvUndoManager::AutoMacro Macro(tr("Add Channel"));
    if (!OrvShaderInputUtils::createShaderInput(false))
        Macro.cancel();
}

void OrvShaderInputActions::removeShaderInput()
{
    OrvShaderInputManager& Channels = OrvShaderInputManager::instance();
    QPointer<OrvShaderInput> pCurrentShaderInput = Channels.currentShaderInput();
    if (!pCurrentShaderInput) {
        OrvDebug("OrvShaderInputActions", __LINE__, QStringLiteral("pCurrentShaderInput is NULL"), false, false);
        return;
    }
    auto Strategy = std::make_optional(OrvShaderInputManager::SharersBecomeGroups);
    if (pCurrentShaderInput->isSharedLayers())
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

void OrvShaderInputActions::switchActionsEnabled(OrvProject* Project)
{
    OrvActionTreeManager::instance().setActionSetEnabled(OrvLayerViewContext::ShaderInputOnlySet, Project != nullptr);
}

#include "moc_OrvShaderInputActions.cpp"
