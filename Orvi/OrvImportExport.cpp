#include "Orvi/OrvImportExport.h"

#include "Orvi/OrvCommandLine.h"
#include "Orvi/OrvDialogAction.h"
#include "Orvi/OrvExportCommands.h"
#include "Orvi/OrvFailureMessage.h"
#include "Orvi/OrvImageFolder.h"
#include "Orvi/OrvProjectCommands.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvShaderInputManager.h"
#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Object/OrvSettings.h"
#include "OrvCore/Project/OrvGeoEntity.h"
#include "OrvCore/Project/OrvProject.h"
#include "OrvCore/Project/OrvProjectManager.h"
#include "OrvCore/Undo/OrvUndoManager.h"
#include "OrvCoreModules/DragAndDrop/OrvDragAndDropManager.h"
#include "OrvCoreModules/Menus/OrvActionCreator.h"
#include "OrvCoreModules/Widgets/OrvFileDialog.h"
#include "OrvCoreModules/Window/OrvMainWindow.h"
#include "OrvCoreModules/Window/OrvProgressDialog.h"

#include "OrvDdi/Files/OrvImageFiles.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QMimeData>
#include <QtCore/QTimer>
#include <QtCore/QUrl>
#include <QtGui/QDropEvent>

#include <algorithm>
#include <functional>

namespace {

const QString UriList = QStringLiteral("text/uri-list");
const QString ImportDirectoryKey = QStringLiteral("Images/ImportDirectory");

QStringList localPaths(const QMimeData& Data)
{
    QStringList Paths;
    for (const QUrl& Url : Data.urls()) {
        if (Url.isLocalFile())
            Paths.append(Url.toLocalFile());
    }
    return Paths;
}

/// By the names alone: it is asked at each move of the mouse.
bool isTaken(const QStringList& Paths)
{
    return std::any_of(Paths.begin(), Paths.end(), &OrvCommandLine::isProjectPath)
        || !OrvImageImport::imagePaths(Paths).isEmpty();
}

/// Content that was dropped onto a row goes above that row's layer.
OrvLayer* layerReading(const OrvSnBaseNode* pContent)
{
    for (const OrvSnBaseNode::Consumer& Reader : pContent->consumers()) {
        if (OrvLayer* pLayer = OrvLayerManager::instance().getLayer(Reader.pNode, true))
            return pLayer;
    }
    return nullptr;
}

/// Imports one image after the other, under one progress dialog and in one undo step. Returns what failed, to
/// be told once that is over.
QStringList importEach(const QString& Title, const QList<OrvUdimSet>& Sets,
    const std::function<bool(const OrvUdimSet&, const OrvProgress&, QString&)>& Import)
{
    const OrvUndoManager::AutoMacro Macro(Title);
    OrvProgressDialog Progress(Title, &OrvMainWindow::instance());
    QStringList Failures;
    for (int Index = 0; Index < Sets.size() && !Progress.isCancelled(); ++Index) {
        Progress.setText(OrvImportExport::tr("Reading %1").arg(QFileInfo(Sets[Index].Pattern).fileName()));
        QString Error;
        const auto step = [&](int Done, int Total) {
            const int Share = Total > 0 ? 100 * Done / Total : 0;
            return Progress.step(100 * Index + Share, 100 * Sets.size());
        };
        if (!Import(Sets[Index], step, Error) && !Progress.isCancelled())
            Failures.append(Error);
    }
    return Failures;
}

} // namespace

OrvImportExport::OrvImportExport(OrvProjectCommands* pProjects, QObject* pParent)
    : QObject(pParent)
    , m_pProjects(pProjects)
{
    createActions();
    new OrvExportCommands(this);
    registerDrops();
    OrvMainWindow::instance().setAcceptDrops(true);
    OrvMainWindow::instance().installEventFilter(this);
}

OrvImportExport::~OrvImportExport()
{
    for (const int Number : qAsConst(m_DropHandlers))
        OrvDragAndDropManager::instance().unregisterHandler(Number);
}

void OrvImportExport::createActions()
{
    OrvActionCreator Creator(
        QStringLiteral("/Orvi/File"), this, QStringLiteral("MainWindow/&File"), QString());
    const auto create = [&Creator](const QString& Text, const char* pSlot, const QString& Icon = QString()) {
        OrvDialogAction::mark(Creator.createAndAddToMenu(Text, Icon, pSlot, QVariant(), QString()));
    };
    create(tr("Import Images as Channels"), SLOT(importChannelsFromDialog()), QStringLiteral("Import.png"));

    Creator.setActionPath(QStringLiteral("/Orvi/Channels/Images"));
    Creator.setMenuPath(QStringLiteral("MainWindow/&Channels/&Import"));
    create(tr("Images as Channels"), SLOT(importChannelsFromDialog()));
    create(tr("Images into Current Channel"), SLOT(importIntoChannelFromDialog()));

    Creator.setActionPath(QStringLiteral("/Orvi/Layers/Images"));
    Creator.setMenuPath(QStringLiteral("MainWindow/&Layers/&Import"));
    create(tr("Images as Paint Layers"), SLOT(importLayersFromDialog()));
    create(tr("Image as Mask"), SLOT(importMaskFromDialog()));
}

void OrvImportExport::registerDrops()
{
    OrvDragAndDropManager::Handler Handler;
    Handler.MimeTypes = QStringList{UriList};
    Handler.Accepts = [](const QMimeData& Data) { return isTaken(localPaths(Data)); };
    Handler.Drop = [this](const QMimeData& Data, const QVariantMap& Place) {
        takeDrop(localPaths(Data), Place);
        return true;
    };
    for (const int Target : {OrvDragAndDropManager::CanvasTarget, OrvDragAndDropManager::LayerTreeTarget})
        m_DropHandlers.append(OrvDragAndDropManager::instance().registerHandler(Target, Handler));
}

void OrvImportExport::takeDrop(const QStringList& Paths, const QVariantMap& Place)
{
    const QPointer<OrvLayerStack> pStack(Place.value(QStringLiteral("LayerStack")).value<OrvLayerStack*>());
    auto* pTarget = Place.value(QStringLiteral("TargetNode")).value<OrvSnBaseNode*>();
    QPointer<OrvLayer> pBelow(Place.value(QStringLiteral("LayerBelow")).value<OrvLayer*>());
    const bool Bottom = pStack && pTarget && pTarget == pStack->bottomNode();
    if (!pBelow && pTarget && !Bottom)
        pBelow = layerReading(pTarget);
    // Reading takes time and may ask questions; the program that the files come from must not wait for that,
    // nor may the widget that they were dropped on lose its document meanwhile.
    QTimer::singleShot(0, this, [=] {
        const bool Project = std::any_of(Paths.begin(), Paths.end(), &OrvCommandLine::isProjectPath);
        if (Project || !pStack) {
            takeFiles(Paths);
            return;
        }
        importLayers(OrvImageImport::imagePaths(Paths), pStack, pBelow,
            Bottom ? OrvImageImport::AtBottom : OrvImageImport::AboveCurrent);
    });
}

bool OrvImportExport::takeFiles(const QStringList& Paths)
{
    for (const QString& Path : Paths) {
        if (OrvCommandLine::isProjectPath(Path)) {
            m_pProjects->open(Path);
            return true;
        }
    }
    const QStringList Images = OrvImageImport::imagePaths(Paths);
    if (Images.isEmpty())
        return false;
    if (OrvProjectManager::instance().currentProject())
        importChannels(Images);
    else
        openImagesAsProject(Images);
    return true;
}

bool OrvImportExport::eventFilter(QObject* pWatched, QEvent* pEvent)
{
    if (pEvent->type() == QEvent::DragEnter) {
        auto* pDrag = static_cast<QDragEnterEvent*>(pEvent);
        // Whoever is told of a move deletes what was dragged.
        pDrag->setDropAction(Qt::CopyAction);
        pDrag->setAccepted(isTaken(localPaths(*pDrag->mimeData())));
        return true;
    }
    if (pEvent->type() == QEvent::Drop) {
        auto* pDrop = static_cast<QDropEvent*>(pEvent);
        const QStringList Paths = localPaths(*pDrop->mimeData());
        pDrop->setDropAction(Qt::CopyAction);
        pDrop->setAccepted(isTaken(Paths));
        if (pDrop->isAccepted())
            takeDrop(Paths, QVariantMap());
        return true;
    }
    return QObject::eventFilter(pWatched, pEvent);
}

void OrvImportExport::openImagesAsProject(const QStringList& Paths)
{
    QStringList Files, Folders;
    for (const QString& Path : Paths) {
        if (QFileInfo(Path).isDir())
            Folders.append(tr("'%1' is a folder, but neither an image nor a project (a folder \"Name.orvi\")")
                               .arg(QDir::toNativeSeparators(Path)));
        else
            Files.append(Path);
    }
    OrvFailureMessage::show(tr("Open"), Folders);
    if (Files.isEmpty() || !m_pProjects->mayLeaveProject())
        return;
    m_pProjects->makeNew(OrvImageImport::imageSets(Files).first().BaseName);
    const QString FirstName = importChannels(Files);
    const OrvShaderNetwork* pNetwork = OrvShaderNetworkManager::instance().currentShaderNetwork();
    const QList<OrvShaderInput*> Channels
        = OrvShaderInputManager::instance().getShaderInputsFromNetwork(pNetwork);
    if (Channels.isEmpty())
        OrvProjectManager::instance().closeProject();
    else
        m_pProjects->rename(FirstName);
}

QString OrvImportExport::importChannels(const QStringList& Paths)
{
    const OrvProject* pProject = OrvProjectManager::instance().currentProject();
    OrvGeoEntity* pEntity = pProject ? pProject->currentGeoEntity() : nullptr;
    if (Paths.isEmpty() || !pEntity)
        return QString();
    const QList<OrvUdimSet> Sets = OrvImageImport::imageSets(Paths);
    OrvImageImport::takeTiles(pEntity, Sets);
    QPointer<OrvShaderInput> pFirst;
    QString FirstName;
    const QStringList Failures = importEach(
        tr("Import Channels"), Sets, [&](const OrvUdimSet& Set, const OrvProgress& Progress, QString& Error) {
            OrvShaderInput* pChannel
                = OrvImageImport::importChannel(pEntity->shaderNetwork(), Set, Progress, Error);
            if (!pFirst && pChannel) {
                pFirst = pChannel;
                FirstName = Set.BaseName;
            }
            return pChannel != nullptr;
        });
    if (pFirst)
        OrvShaderInputManager::instance().makeShaderInputCurrent(pFirst, true);
    OrvFailureMessage::show(tr("Import Channels"), Failures);
    return FirstName;
}

void OrvImportExport::importLayers(
    const QStringList& Paths, OrvLayerStack* pStack, OrvLayer* pBelow, OrvImageImport::Place Where)
{
    if (!pStack || Paths.isEmpty())
        return;
    const QPointer<OrvLayerStack> pTarget(pStack);
    QPointer<OrvLayer> pLast(pBelow);
    const QStringList Failures = importEach(tr("Import Layers"), OrvImageImport::imageSets(Paths),
        [&](const OrvUdimSet& Set, const OrvProgress& Progress, QString& Error) {
            OrvLayer* pLayer = OrvImageImport::importPaintLayer(pTarget, pLast, Where, Set, Progress, Error);
            if (pLayer)
                pLast = pLayer;
            return pLayer != nullptr;
        });
    OrvFailureMessage::show(tr("Import Layers"), Failures);
}

QStringList OrvImportExport::askForImages(const QString& Title)
{
    const QStringList Paths = OrvFileDialog::askForFiles(&OrvMainWindow::instance(), Title,
        OrvImageFolder::lastUsed(ImportDirectoryKey), OrvImageFiles::readFilter());
    if (!Paths.isEmpty())
        OrvSettings().setValue(ImportDirectoryKey, QFileInfo(Paths.first()).absolutePath());
    return Paths;
}

void OrvImportExport::importChannelsFromDialog()
{
    const QStringList Paths = askForImages(tr("Import Images as Channels"));
    if (OrvProjectManager::instance().currentProject())
        importChannels(Paths);
    else
        openImagesAsProject(Paths);
}

void OrvImportExport::importLayersFromDialog()
{
    OrvLayerStack* pStack = OrvLayerManager::instance().currentLayerStack();
    if (pStack)
        importLayers(askForImages(tr("Import Images as Paint Layers")), pStack, nullptr);
}

void OrvImportExport::importIntoChannelFromDialog()
{
    if (OrvShaderInput* pChannel = OrvShaderInputManager::instance().currentShaderInput()) {
        importLayers(
            askForImages(tr("Import Images into \"%1\"").arg(pChannel->name())), pChannel, nullptr);
    }
}

void OrvImportExport::importMaskFromDialog()
{
    const QPointer<OrvLayer> pLayer(OrvLayerManager::instance().currentLayer());
    if (!pLayer)
        return;
    const QString Title = tr("Import Image as Mask of \"%1\"").arg(pLayer->name());
    const QList<OrvUdimSet> Sets = OrvImageImport::imageSets(askForImages(Title));
    if (Sets.isEmpty() || !pLayer)
        return;
    OrvFailureMessage::show(Title,
        importEach(tr("Import Mask"), {Sets.first()},
            [&](const OrvUdimSet& Set, const OrvProgress& Progress, QString& Error) {
                return OrvImageImport::importMask(pLayer, Set, Progress, Error);
            }));
}

#include "moc_OrvImportExport.cpp"
