#include "Orvi/OrvExportCommands.h"

#include "Orvi/OrvChannelExport.h"
#include "Orvi/OrvDialogAction.h"
#include "Orvi/OrvExportDialog.h"
#include "Orvi/OrvExportNames.h"
#include "Orvi/OrvFailureMessage.h"
#include "Orvi/OrvImageFolder.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvShaderInputManager.h"
#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Project/OrvGeoEntity.h"
#include "OrvCore/Project/OrvProject.h"
#include "OrvCore/Project/OrvProjectManager.h"
#include "OrvCoreModules/Menus/OrvActionCreator.h"
#include "OrvCoreModules/Window/OrvMainWindow.h"

#include "OrvDdi/Files/OrvImageFiles.h"

#include <QtCore/QPointer>
#include <QtWidgets/QFileDialog>

namespace {

const QString ExportDirectoryKey = QStringLiteral("Images/ExportDirectory");
const QString ExportSuffixKey = QStringLiteral("Images/ExportSuffix");
const QString ExportAllSuffixKey = QStringLiteral("Images/ExportAllSuffix");

/// The objects of the project, each with what the names of its files begin with: its own, among several.
QVector<QPair<const OrvGeoEntity*, QString>> objectsWithPrefix()
{
    QVector<QPair<const OrvGeoEntity*, QString>> Objects;
    const OrvProject* pProject = OrvProjectManager::instance().currentProject();
    const QList<OrvGeoEntity*> Entities = pProject ? pProject->geoEntities() : QList<OrvGeoEntity*>();
    for (const OrvGeoEntity* pEntity : Entities)
        Objects.append({pEntity, Entities.size() > 1 ? pEntity->name() + QLatin1Char('.') : QString()});
    return Objects;
}

void run(const QString& Title, const QVector<OrvExportJob>& Jobs, const QString& WhyNothing)
{
    if (Jobs.isEmpty())
        OrvFailureMessage::show(Title, WhyNothing);
    else
        OrvExportRun::run(Title, Jobs);
}

} // namespace

OrvExportCommands::OrvExportCommands(QObject* pParent)
    : QObject(pParent)
{
    createActions();
}

void OrvExportCommands::createActions()
{
    OrvActionCreator Creator(QStringLiteral("/Orvi/File"), this, QStringLiteral("MainWindow/&File"),
        QStringLiteral("ProjectOnly"));
    const auto create = [&Creator](const QString& Text, const char* pSlot, const QString& Icon = QString()) {
        OrvDialogAction::mark(Creator.createAndAddToMenu(Text, Icon, pSlot, QVariant(), QString()));
    };
    create(tr("Export Channel"), SLOT(exportChannel()), QStringLiteral("Export.png"));
    create(tr("Export All Channels"), SLOT(exportAllChannels()));
    Creator.addMenuSeparator();

    Creator.setActionSetName(QString());
    Creator.setActionPath(QStringLiteral("/Orvi/Channels/Images"));
    Creator.setMenuPath(QStringLiteral("MainWindow/&Channels/&Export"));
    create(tr("Layers of Current Channel"), SLOT(exportChannelLayers()));
    create(tr("Layers of All Channels"), SLOT(exportAllChannelLayers()));
    Creator.setMenuPath(QStringLiteral("MainWindow/&Channels/Export &Flattened"));
    create(tr("Current Channel"), SLOT(exportChannel()));
    create(tr("All Channels"), SLOT(exportAllChannels()));

    Creator.setActionPath(QStringLiteral("/Orvi/Layers/Images"));
    Creator.setMenuPath(QStringLiteral("MainWindow/&Layers/&Export"));
    create(tr("Current Layer"), SLOT(exportLayer()));
    create(tr("Selected Layers"), SLOT(exportSelectedLayers()));
    // Whoever switches export commands looks up under this path, by their texts, whether they write masks.
    Creator.setActionPath(QStringLiteral("/Orvi/Project/Project Explorer"));
    OrvAction* pMasks = Creator.createAndAddToMenu(
        tr("Selected Masks…"), QString(), SLOT(exportSelectedMasks()), QVariant(), QString());
    if (pMasks)
        pMasks->setProperty("OrvSaveSelectedMasksOnly", true);
    Creator.setActionPath(QStringLiteral("/Orvi/Layers/Images"));
    Creator.setMenuPath(QStringLiteral("MainWindow/&Layers/Export &Flattened"));
    create(tr("Current Layer and Below"), SLOT(exportUpToLayer()));
}

void OrvExportCommands::exportNode(const OrvSnBaseNode* pNode, const QString& Name)
{
    OrvShaderInput* pChannel = OrvShaderInputManager::instance().currentShaderInput();
    if (!pNode || !pChannel)
        return;
    const QString Suffix = OrvSettings().value(ExportSuffixKey, QStringLiteral("png")).toString();
    // The dialog's own question knows nothing of tiles.
    QString Filter;
    const QString Chosen = QFileDialog::getSaveFileName(&OrvMainWindow::instance(), tr("Export %1").arg(Name),
        OrvChannelExport::suggestedPath(pChannel, OrvImageFolder::lastUsed(ExportDirectoryKey), Name, Suffix),
        OrvImageFiles::writeFilter(), &Filter, QFileDialog::DontConfirmOverwrite);
    if (Chosen.isEmpty())
        return;
    const QString Path = OrvExportNames::typedPath(Chosen, Filter, Suffix);
    if (!OrvImageFiles::writableSuffixes().contains(QFileInfo(Path).suffix(), Qt::CaseInsensitive))
        return OrvFailureMessage::show(tr("Export"),
            tr("\"%1\" cannot be written: its type is none of %2. Choose another name or type.")
                .arg(
                    QFileInfo(Path).fileName(), OrvImageFiles::writableSuffixes().join(QLatin1String(", "))));
    const QPointer<const OrvSnBaseNode> pResult(pNode);
    const QPointer<OrvShaderInput> pSettings(pChannel);
    const auto write = [=](const OrvProgress& Progress, QString& Error) {
        return OrvChannelExport::writeNode(pResult, pSettings, Path, Progress, Error);
    };
    if (!OrvExportRun::run(tr("Export"), {{Name, OrvChannelExport::filesOf(pChannel, Path), write}}))
        return;
    OrvSettings().setValue(ExportDirectoryKey, QFileInfo(Path).absolutePath());
    OrvSettings().setValue(ExportSuffixKey, QFileInfo(Path).suffix().toLower());
}

void OrvExportCommands::exportChannel()
{
    if (const OrvShaderInput* pChannel = OrvShaderInputManager::instance().currentShaderInput())
        exportNode(pChannel->node(), pChannel->name());
}

void OrvExportCommands::exportLayer()
{
    if (const OrvLayer* pLayer = OrvLayerManager::instance().currentLayer())
        exportNode(pLayer->overNode(), pLayer->name());
}

void OrvExportCommands::exportUpToLayer()
{
    if (const OrvLayer* pLayer = OrvLayerManager::instance().currentLayer())
        exportNode(pLayer->blendNode(), pLayer->name());
}

bool OrvExportCommands::askForFolder(
    const QString& Title, const QString& What, QString& Directory, QString& Suffix)
{
    if (!OrvProjectManager::instance().currentProject())
        return false;
    OrvExportDialog Dialog(Title, What, OrvImageFolder::lastUsed(ExportDirectoryKey),
        OrvSettings().value(ExportAllSuffixKey).toString(), &OrvMainWindow::instance());
    if (Dialog.exec() != QDialog::Accepted)
        return false;
    Directory = Dialog.directory();
    Suffix = Dialog.suffix();
    OrvSettings().setValue(ExportDirectoryKey, Directory);
    OrvSettings().setValue(ExportAllSuffixKey, Suffix);
    return true;
}

void OrvExportCommands::exportAllChannels()
{
    QString Directory, Suffix;
    const QString Which = objectsWithPrefix().size() > 1
        ? tr("One image of each channel of all objects, named \"Object.Channel\".")
        : tr("One image of each channel, named after it.");
    const QString What
        = Which + QLatin1Char(' ') + tr("Material channels, which only shaders show, have none.");
    if (askForFolder(tr("Export All Channels"), What, Directory, Suffix))
        exportAllChannelsTo(Directory, Suffix);
}

void OrvExportCommands::exportAllChannelsTo(const QString& Directory, const QString& Suffix)
{
    QVector<OrvExportJob> Jobs;
    OrvExportNames Names(Directory);
    for (const auto& [pEntity, Prefix] : objectsWithPrefix()) {
        for (OrvShaderInput* pChannel : OrvChannelExport::channelsOf(pEntity)) {
            const QString Deep = pChannel->imageSetDepth() == GL_UNSIGNED_BYTE ? QStringLiteral("png")
                                                                               : QStringLiteral("exr");
            const QString Name = Prefix + pChannel->name();
            const QString Path = Names.take(pChannel, Name, Suffix.isEmpty() ? Deep : Suffix);
            const QPointer<OrvShaderInput> pSource(pChannel);
            Jobs.append({Name, OrvChannelExport::filesOf(pChannel, Path),
                [pSource, Path](const OrvProgress& Progress, QString& Error) {
                    return OrvChannelExport::writeChannel(pSource, Path, Progress, Error);
                }});
        }
    }
    run(tr("Export All Channels"), Jobs, tr("There is no channel to export"));
}

void OrvExportCommands::exportChannelLayers()
{
    OrvShaderInput* pChannel = OrvShaderInputManager::instance().currentShaderInput();
    if (!pChannel)
        return;
    const QString Title = tr("Export Layers of \"%1\"").arg(pChannel->name());
    QString Directory, Suffix;
    if (!askForFolder(Title, tr("The images and masks that the layers hold, named \"Channel.Layer\"."),
            Directory, Suffix))
        return;
    OrvExportNames Names(Directory);
    run(Title, OrvLayerImageExport::jobsOf(pChannel, QString(), Suffix, Names),
        tr("None of the layers holds an image"));
}

void OrvExportCommands::exportAllChannelLayers()
{
    const QString Title = tr("Export Layers of All Channels");
    const auto Objects = objectsWithPrefix();
    const QString What = Objects.size() > 1
        ? tr("The images and masks that the layers of all objects hold, named \"Object.Channel.Layer\".")
        : tr("The images and masks that the layers hold, named \"Channel.Layer\".");
    QString Directory, Suffix;
    if (!askForFolder(Title, What, Directory, Suffix))
        return;
    QVector<OrvExportJob> Jobs;
    OrvExportNames Names(Directory);
    for (const auto& [pEntity, Prefix] : Objects) {
        // Of the shader layers in material channels there are the masks.
        for (OrvShaderInput* pChannel :
            OrvShaderInputManager::instance().getShaderInputsFromNetwork(pEntity->shaderNetwork()))
            Jobs += OrvLayerImageExport::jobsOf(pChannel, Prefix, Suffix, Names);
    }
    run(Title, Jobs, tr("None of the layers holds an image"));
}

void OrvExportCommands::exportSelected(const QString& Title, OrvLayerImageExport::Part What)
{
    const OrvLayerStack* pStack = OrvLayerManager::instance().currentLayerStack();
    OrvShaderInput* pChannel = pStack ? pStack->ownerShaderInput() : nullptr;
    QList<OrvLayer*> Layers = pStack ? pStack->selectedLayers() : QList<OrvLayer*>();
    if (Layers.isEmpty() && OrvLayerManager::instance().currentLayer())
        Layers.append(OrvLayerManager::instance().currentLayer());
    const QString Told = What == OrvLayerImageExport::Masks
        ? tr("The masks of the selected layers, named \"Channel.Layer.Mask\".")
        : tr("The images of the selected layers, named \"Channel.Layer\".");
    QString Directory, Suffix;
    if (!pChannel || Layers.isEmpty() || !askForFolder(Title, Told, Directory, Suffix))
        return;
    OrvExportNames Names(Directory);
    run(Title, OrvLayerImageExport::jobsOf(Layers, pChannel, What, Suffix, Names),
        tr("None of the layers has what is to be exported"));
}

void OrvExportCommands::exportSelectedLayers()
{
    exportSelected(tr("Export Selected Layers"), OrvLayerImageExport::Paint);
}

void OrvExportCommands::exportSelectedMasks()
{
    exportSelected(tr("Export Selected Masks"), OrvLayerImageExport::Masks);
}

#include "moc_OrvExportCommands.cpp"
