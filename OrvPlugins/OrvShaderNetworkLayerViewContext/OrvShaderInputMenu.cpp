#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputMenu.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Shaders/OrvLayerShader.h"
#include "OrvCore/Shaders/OrvShadingModel.h"
#include "OrvCore/Undo/OrvUndoManager.h"
#include "OrvCoreModules/Menus/OrvMenu.h"
#include "OrvCoreModules/Window/OrvIcon.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputConnection.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QPointer>

namespace {

QString tr(const char* pText)
{
    return QCoreApplication::translate("OrvShaderInputMenu", pText);
}

void addChannels(OrvMenu* pMenu, OrvLayerShader* pShader, const QString& InputName, const QIcon& Icon)
{
    const OrvShaderInput* pConnected = pShader->inputShaderInput(InputName);
    const QList<OrvShaderInput*> Channels = OrvShaderInputConnection::candidates(pShader, InputName);
    for (OrvShaderInput* pChannel : Channels) {
        // An ampersand in a name is no shortcut.
        QAction* pAction
            = pMenu->addAction(Icon, pChannel->name().replace(QLatin1Char('&'), QStringLiteral("&&")));
        pAction->setCheckable(true);
        pAction->setChecked(pChannel == pConnected);
        pAction->setIconVisibleInMenu(pChannel != pConnected); // it would stand where the check mark does
        QObject::connect(pAction, &QAction::triggered, pShader,
            [pShader, InputName, pGuarded = QPointer<OrvShaderInput>(pChannel)] {
                OrvShaderInputConnection::connectChannel(pShader, InputName, pGuarded);
            });
    }
    if (Channels.isEmpty()) {
        pMenu
            ->addAction(pShader->isInputForMaterialsStacks(InputName) ? tr("No Material Channels Yet")
                                                                      : tr("No Channels Yet"))
            ->setEnabled(false);
    }
}

void addReset(OrvMenu* pMenu, OrvLayerShader* pShader, const OrvShadingModel::Input& Input)
{
    QAction* pReset = pMenu->addAction(tr("Reset Value"));
    pReset->setEnabled(pShader->inputValue(Input.Name) != Input.Default);
    QObject::connect(
        pReset, &QAction::triggered, pShader, [pShader, Name = Input.Name, Default = Input.Default] {
            const OrvUndoManager::AutoMacro Macro(tr("Reset %1").arg(Name));
            pShader->setInputValue(Name, Default);
        });
}

} // namespace

OrvMenu* OrvShaderInputMenu::create(OrvLayerShader* pShader, const QString& InputName, QWidget* pParent)
{
    OrvMenu* pMenu = new OrvMenu(pParent);
    pMenu->setAttribute(Qt::WA_DeleteOnClose);
    const bool Material = pShader->isInputForMaterialsStacks(InputName);
    addChannels(pMenu, pShader, InputName,
        OrvIcon::createIconFromFilename(
            Material ? QStringLiteral("Material.16x16.png") : QStringLiteral("Channel.16x16.png")));
    pMenu->addSeparator();
    QAction* pCreate
        = pMenu->addAction(OrvIcon::createIconFromFilename(Material ? QStringLiteral("AddMaterials.png")
                                                                    : QStringLiteral("AddChannel.png")),
            Material ? tr("New Material Channel") : tr("New Channel"));
    QObject::connect(pCreate, &QAction::triggered, pShader,
        [pShader, InputName] { OrvShaderInputConnection::createChannel(pShader, InputName); });
    QAction* pDisconnect = pMenu->addAction(tr("Disconnect"));
    pDisconnect->setEnabled(pShader->inputShaderInput(InputName));
    QObject::connect(pDisconnect, &QAction::triggered, pShader,
        [pShader, InputName] { OrvShaderInputConnection::disconnectChannel(pShader, InputName); });

    const OrvShadingModel::Input* pInput
        = pShader->shaderModel() ? pShader->shaderModel()->input(InputName) : nullptr;
    if (pInput && pInput->hasValue()) {
        pMenu->addSeparator();
        addReset(pMenu, pShader, *pInput);
    }
    return pMenu;
}
