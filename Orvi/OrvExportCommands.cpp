#include "Orvi/OrvExportCommands.h"

#include "Orvi/OrvChannelExport.h"
#include "Orvi/OrvDialogAction.h"
#include "Orvi/OrvExportDialog.h"
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
#include <QtCore/QRegularExpression>
#include <QtWidgets/QFileDialog>

namespace {

const QString ExportDirectoryKey = QStringLiteral("Images/ExportDirectory");
const QString ExportSuffixKey = QStringLiteral("Images/ExportSuffix");
const QString ExportAllSuffixKey = QStringLiteral("Images/ExportAllSuffix");

/// The type that was chosen in the dialog counts, and where that leaves it open, the name's own or the usual
/// one.
QString typedPath(const QString& Path, const QString& Filter, const QString& UsualSuffix)
{
    QStringList Chosen;
    static const QRegularExpression Pattern(QStringLiteral("\\*\\.(\\w+)"));
    for (auto Match = Pattern.globalMatch(Filter); Match.hasNext();)
        Chosen.append(Match.next().captured(1));
    const QStringList Writable = OrvImageFiles::writableSuffixes();
    const bool Open = Chosen.isEmpty() || Chosen.size() == Writable.size();
    const QString Suffix = QFileInfo(Path).suffix();
    const bool Named = Writable.contains(Suffix, Qt::CaseInsensitive);
    if (Named && (Open || Chosen.contains(Suffix, Qt::CaseInsensitive)))
        return Path;
    const QString Base = Named ? Path.chopped(Suffix.size() + 1) : Path;
    return Base + QLatin1Char('.') + (Open ? UsualSuffix : Chosen.first());
}

QList<OrvShaderInput*> channelsOfObject()
{
    const OrvProject* pProject = OrvProjectManager::instance().currentProject();
    const OrvGeoEntity* pEntity = pProject ? pProject->currentGeoEntity() : nullptr;
    return pEntity ? OrvShaderInputManager::instance().getShaderInputsFromNetwork(pEntity->shaderNetwork())
                   : QList<OrvShaderInput*>();
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
    const QString Path = typedPath(Chosen, Filter, Suffix);
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

bool OrvExportCommands::askForFolder(const QString& Title, QString& Directory, QString& Suffix)
{
    if (!OrvProjectManager::instance().currentProject())
        return false;
    OrvExportDialog Dialog(Title, OrvImageFolder::lastUsed(ExportDirectoryKey),
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
    if (askForFolder(tr("Export All Channels"), Directory, Suffix))
        exportAllChannelsTo(Directory, Suffix);
}

void OrvExportCommands::exportAllChannelsTo(const QString& Directory, const QString& Suffix)
{
    QVector<OrvExportJob> Jobs;
    for (OrvShaderInput* pChannel : channelsOfObject()) {
        const QString Deep
            = pChannel->imageSetDepth() == GL_UNSIGNED_BYTE ? QStringLiteral("png") : QStringLiteral("exr");
        const QString Path = OrvChannelExport::suggestedPath(
            pChannel, Directory, pChannel->name(), Suffix.isEmpty() ? Deep : Suffix);
        const QPointer<OrvShaderInput> pSource(pChannel);
        Jobs.append({pChannel->name(), OrvChannelExport::filesOf(pChannel, Path),
            [pSource, Path](const OrvProgress& Progress, QString& Error) {
                return OrvChannelExport::writeChannel(pSource, Path, Progress, Error);
            }});
    }
    OrvExportRun::run(tr("Export All Channels"), Jobs);
}

void OrvExportCommands::exportLayersOf(const QString& Title, const QList<OrvShaderInput*>& Channels)
{
    QString Directory, Suffix;
    if (Channels.isEmpty() || !askForFolder(Title, Directory, Suffix))
        return;
    QVector<OrvExportJob> Jobs;
    for (OrvShaderInput* pChannel : Channels)
        Jobs += OrvLayerImageExport::jobsOf(pChannel, Directory, Suffix);
    if (Jobs.isEmpty())
        OrvFailureMessage::show(Title, tr("None of the layers holds an image"));
    else
        OrvExportRun::run(Title, Jobs);
}

void OrvExportCommands::exportChannelLayers()
{
    if (OrvShaderInput* pChannel = OrvShaderInputManager::instance().currentShaderInput())
        exportLayersOf(tr("Export Layers of \"%1\"").arg(pChannel->name()), {pChannel});
}

void OrvExportCommands::exportAllChannelLayers()
{
    exportLayersOf(tr("Export Layers of All Channels"), channelsOfObject());
}

void OrvExportCommands::exportSelected(const QString& Title, OrvLayerImageExport::Part What)
{
    const OrvLayerStack* pStack = OrvLayerManager::instance().currentLayerStack();
    OrvShaderInput* pChannel = pStack ? pStack->ownerShaderInput() : nullptr;
    QList<OrvLayer*> Layers = pStack ? pStack->selectedLayers() : QList<OrvLayer*>();
    if (Layers.isEmpty() && OrvLayerManager::instance().currentLayer())
        Layers.append(OrvLayerManager::instance().currentLayer());
    QString Directory, Suffix;
    if (!pChannel || Layers.isEmpty() || !askForFolder(Title, Directory, Suffix))
        return;
    const QVector<OrvExportJob> Jobs
        = OrvLayerImageExport::jobsOf(Layers, pChannel, What, Directory, Suffix);
    if (Jobs.isEmpty())
        OrvFailureMessage::show(Title, tr("None of the layers has what is to be exported"));
    else
        OrvExportRun::run(Title, Jobs);
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
