#include "Orvi/OrvObjectCommands.h"

#include "Orvi/OrvDialogAction.h"
#include "Orvi/OrvObjectDialog.h"

#include "OrvCore/Channels/OrvShaderInputManager.h"
#include "OrvCore/Project/OrvGeoEntity.h"
#include "OrvCore/Project/OrvProject.h"
#include "OrvCore/Project/OrvProjectManager.h"
#include "OrvCore/Undo/OrvUndoManager.h"
#include "OrvCoreModules/Menus/OrvActionCreator.h"
#include "OrvCoreModules/Menus/OrvActionTreeManager.h"
#include "OrvCoreModules/Menus/OrvShortcutManager.h"
#include "OrvCoreModules/Window/OrvApplication.h"
#include "OrvCoreModules/Window/OrvMainWindow.h"
#include "OrvCoreModules/Window/OrvPalette.h"
#include "OrvCoreModules/Window/OrvPaletteManager.h"
#include "OrvCoreModules/Window/OrvStatusManager.h"

#include <QtWidgets/QMessageBox>

namespace {

const QString ActionPath = QStringLiteral("/Orvi/Objects");
const QString MenuPath = QStringLiteral("MainWindow/&Objects");
const QString ProjectOnlySet = QStringLiteral("ProjectOnly");
const QString SeveralObjectsSet = QStringLiteral("SeveralObjectsOnly");
const QString PatchOnlySet = QStringLiteral("PatchOnly"); ///< what makes sense for tiles alone
constexpr int MessageDuration = 5000; // ms

} // namespace

OrvObjectCommands::OrvObjectCommands(QObject* pParent)
    : QObject(pParent)
{
    createActions();
    const OrvProjectManager& Projects = OrvProjectManager::instance();
    connect(&Projects, &OrvProjectManager::onMakeProjectCurrent, this, &OrvObjectCommands::updateActionSets);
    connect(&Projects, &OrvProjectManager::objectMadeCurrent, this, &OrvObjectCommands::updateActionSets);
    connect(&Projects, &OrvProjectManager::geoEntityAdded, this, &OrvObjectCommands::updateActionSets);
    connect(&Projects, &OrvProjectManager::geoEntityRemoved, this, &OrvObjectCommands::updateActionSets);
    updateActionSets();
}

void OrvObjectCommands::createActions()
{
    OrvShortcutManager& Shortcuts = OrvShortcutManager::instance();
    OrvActionCreator Creator(ActionPath, this, MenuPath, ProjectOnlySet);
    const auto add
        = [&](const QString& Text, const QString& Icon, const char* pSlot, const QKeySequence& Keys) {
              if (!Keys.isEmpty())
                  Shortcuts.setDefaultShortcut(ActionPath + QLatin1Char('/') + Text, Keys);
              return Creator.createAndAddToMenu(Text, Icon, pSlot, QVariant(), QString());
          };
    OrvDialogAction::mark(
        add(tr("Add Object"), QStringLiteral("New.png"), SLOT(addObject()), QKeySequence()));
    add(tr("Rename Object"), QString(), SLOT(renameCurrent()), QKeySequence());
    Creator.setActionSetName(SeveralObjectsSet);
    OrvDialogAction::mark(
        add(tr("Remove Object"), QStringLiteral("Clear.png"), SLOT(removeCurrent()), QKeySequence()));
    Creator.addMenuSeparator();
    add(tr("Next Object"), QString(), SLOT(makeNextCurrent()), QKeySequence(Qt::CTRL + Qt::Key_PageDown));
    add(tr("Previous Object"), QString(), SLOT(makePreviousCurrent()),
        QKeySequence(Qt::CTRL + Qt::Key_PageUp));
    Creator.addMenuSeparator();
    Creator.setActionSetName(ProjectOnlySet);
    add(tr("Show Objects"), QStringLiteral("Object.png"), SLOT(showObjects()), QKeySequence());
}

void OrvObjectCommands::updateActionSets()
{
    OrvActionTreeManager& Actions = OrvActionTreeManager::instance();
    const OrvProject* pProject = project();
    const OrvGeoEntity* pCurrent = currentObject();
    Actions.setActionSetEnabled(SeveralObjectsSet, pProject && pProject->geoEntities().size() > 1);
    Actions.setActionSetEnabled(PatchOnlySet, pCurrent && !pCurrent->isPtex());
}

OrvProject* OrvObjectCommands::project()
{
    return OrvProjectManager::instance().currentProject();
}

OrvGeoEntity* OrvObjectCommands::currentObject()
{
    const OrvProject* pProject = project();
    return pProject ? pProject->currentGeoEntity() : nullptr;
}

QString OrvObjectCommands::surfaceText(const OrvGeoEntity* pEntity)
{
    if (pEntity->isPtex()) {
        const QSize Faces = pEntity->faceResolution();
        return tr("Ptex, faces of %1 x %2").arg(Faces.width()).arg(Faces.height());
    }
    const QVector<int>& Tiles = pEntity->udimTiles();
    QStringList Ranges;
    for (int First = 0, Next = 0; First < Tiles.size(); First = Next) {
        for (Next = First + 1; Next < Tiles.size() && Tiles[Next] == Tiles[Next - 1] + 1;)
            ++Next;
        Ranges.append(Next == First + 1 ? QString::number(Tiles[First])
                                        : QStringLiteral("%1-%2").arg(Tiles[First]).arg(Tiles[Next - 1]));
    }
    return Tiles.size() == 1 ? tr("Tile %1").arg(Ranges.first())
                             : tr("Tiles %1").arg(Ranges.join(QLatin1String(", ")));
}

void OrvObjectCommands::makeCurrent(OrvGeoEntity* pEntity)
{
    OrvProject* pProject = project();
    if (pProject && pEntity && pProject->geoEntities().contains(pEntity))
        pProject->setCurrentGeoEntity(pEntity);
}

bool OrvObjectCommands::rename(OrvGeoEntity* pEntity, const QString& Name)
{
    const OrvProject* pProject = project();
    const OrvGeoEntity* pOther = pProject ? pProject->geoEntity(Name) : nullptr;
    if (Name.isEmpty() || (pOther && pOther != pEntity)) {
        OrvStatusManager::instance().showMessage(
            Name.isEmpty() ? tr("An object needs a name") : tr("There is an object \"%1\" already").arg(Name),
            MessageDuration);
        return false;
    }
    pEntity->setName(Name);
    return true;
}

void OrvObjectCommands::remove(OrvGeoEntity* pEntity)
{
    OrvProject* pProject = project();
    if (!pProject || !pEntity || pProject->geoEntities().size() < 2)
        return;
    const int Channels
        = OrvShaderInputManager::instance().getShaderInputsFromNetwork(pEntity->shaderNetwork()).size();
    const QString Question = Channels == 0 ? tr("Remove object \"%1\"?").arg(pEntity->name())
        : Channels == 1                    ? tr("Remove object \"%1\" with its channel?").arg(pEntity->name())
                        : tr("Remove object \"%1\" with its %2 channels?").arg(pEntity->name()).arg(Channels);
    if (OrvApplication::popupsAllowed()
        && QMessageBox::question(&OrvMainWindow::instance(), tr("Remove Object"), Question)
            != QMessageBox::Yes)
        return;
    pProject->removeGeoEntity(pEntity);
}

void OrvObjectCommands::addObject()
{
    OrvProject* pProject = project();
    if (!pProject || !OrvApplication::popupsAllowed())
        return;
    OrvObjectDialog Dialog(
        pProject->uniqueGeoEntityName(tr("Object")),
        [pProject](const QString& Name) { return pProject->geoEntity(Name) != nullptr; },
        &OrvMainWindow::instance());
    if (Dialog.exec() != QDialog::Accepted || project() != pProject)
        return;
    std::unique_ptr<OrvGeoEntity> pObject = Dialog.makeObject();
    const OrvUndoManager::AutoMacro Macro(tr("Add Object '%1'").arg(pObject->name()));
    pProject->setCurrentGeoEntity(pProject->addGeoEntity(std::move(pObject)), true);
}

void OrvObjectCommands::renameCurrent()
{
    if (OrvGeoEntity* pCurrent = currentObject()) {
        showObjects();
        Q_EMIT renameRequested(pCurrent);
    }
}

void OrvObjectCommands::removeCurrent()
{
    remove(currentObject());
}

void OrvObjectCommands::step(int Distance)
{
    if (const OrvProject* pProject = project()) {
        const QList<OrvGeoEntity*>& Objects = pProject->geoEntities();
        const int Index = Objects.indexOf(pProject->currentGeoEntity());
        makeCurrent(Objects.value((Index + Distance + Objects.size()) % Objects.size()));
    }
}

void OrvObjectCommands::showObjects()
{
    if (OrvPalette* pPalette = OrvPaletteManager::find(QStringLiteral("Objects")))
        pPalette->open();
}

#include "moc_OrvObjectCommands.cpp"
