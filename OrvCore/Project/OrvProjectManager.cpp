#include "OrvCore/Project/OrvProjectManager.h"

#include "OrvCore/Channels/OrvShaderInputManager.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Object/OrvDebug.h"
#include "OrvCore/Project/OrvGeoEntity.h"
#include "OrvCore/Project/OrvProject.h"
#include "OrvCore/Project/OrvProjectFile.h"
#include "OrvCore/Shaders/OrvLayerShaderManager.h"
#include "OrvCore/Undo/OrvUndoManager.h"

#include "OrvDdi/Files/OrvDataBlockManager.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtWidgets/QUndoStack>

OrvProjectManager& OrvProjectManager::instance()
{
    static OrvProjectManager Manager;
    return Manager;
}

OrvProjectManager::OrvProjectManager()
{
    // They outlive the project.
    OrvShaderNetworkManager::instance();
    OrvLayerManager::instance();
    OrvShaderInputManager::instance();
    OrvLayerShaderManager::instance();
    connect(OrvUndoManager::instance().stack(), &QUndoStack::cleanChanged, this,
        [this](bool Clean) { Q_EMIT modifiedChanged(!Clean); });
}

OrvProjectManager::~OrvProjectManager()
{
    OrvUndoManager::instance().clear();
}

bool OrvProjectManager::isModified() const
{
    return m_pProject && !OrvUndoManager::instance().stack()->isClean();
}

void OrvProjectManager::makeCurrent(std::unique_ptr<OrvProject> pProject, OrvGeoEntity* pCurrentEntity)
{
    m_pProject = std::move(pProject);
    OrvDataBlockManager::instance().setSubCache(m_pProject->cacheName());
    m_pProject->setCurrentGeoEntity(pCurrentEntity);
    OrvUndoManager::instance().clear();
    Q_EMIT onMakeProjectCurrent(m_pProject.get());

    // What was current when the project was stored becomes current again, with all that follows from it.
    OrvShaderInputManager& Channels = OrvShaderInputManager::instance();
    OrvShaderNetwork* pNetwork = pCurrentEntity ? pCurrentEntity->shaderNetwork() : nullptr;
    OrvShaderInput* pChannel = Channels.currentShaderInput(pNetwork);
    if (!pChannel) {
        const QList<OrvShaderInput*> All = Channels.getShaderInputsFromNetwork(pNetwork);
        pChannel = All.isEmpty() ? nullptr : All.first();
    }
    Channels.makeShaderInputCurrent(pNetwork, nullptr, false);
    if (pChannel)
        Channels.makeShaderInputCurrent(pChannel, true);
    Q_EMIT projectOpenAbsolutelyCompleted();
}

OrvProject* OrvProjectManager::newProject(const QString& Name, const QString& EntityName)
{
    closeProject();
    auto pProject = std::make_unique<OrvProject>(Name);
    OrvGeoEntity* pEntity = nullptr;
    {
        const OrvUndoManager::NoRecording NoRecording;
        pEntity = pProject->addGeoEntity(EntityName);
    }
    makeCurrent(std::move(pProject), pEntity);
    return m_pProject.get();
}

bool OrvProjectManager::openProject(const QString& Path, QString& Error, const Progress& Step)
{
    const QString Folder = QFileInfo(Path).isFile() ? QFileInfo(Path).absolutePath() : QDir(Path).absolutePath();
    OrvProjectFile File;
    if (!OrvProjectFile::read(Folder, OrvProjectFile::ManifestName, File, Error, Step))
        return false;
    closeProject();
    std::unique_ptr<OrvProject> pProject = File.build();
    pProject->setPath(Folder);
    OrvGeoEntity* pCurrent = pProject->geoEntities().first();
    for (OrvGeoEntity* pEntity : pProject->geoEntities()) {
        if (pEntity->uuidString() == File.currentEntity())
            pCurrent = pEntity;
    }
    makeCurrent(std::move(pProject), pCurrent);
    return true;
}

bool OrvProjectManager::saveProject(QString& Error, const Progress& Step)
{
    if (!m_pProject || m_pProject->path().isEmpty()) {
        Error = tr("There is no project to save");
        return false;
    }
    return saveProjectAs(m_pProject->path(), Error, Step);
}

bool OrvProjectManager::saveProjectAs(const QString& Path, QString& Error, const Progress& Step)
{
    if (!m_pProject) {
        Error = tr("There is no project to save");
        return false;
    }
    const QString Folder = QDir(Path).absolutePath();
    if (QFileInfo(Folder).isFile()) {
        Error = tr("'%1' is a file; a project is a folder").arg(Folder);
        return false;
    }
    const bool IsNew = !QFileInfo::exists(Folder);
    if (!OrvProjectFile::write(*m_pProject, Folder, OrvProjectFile::ManifestName, Error, Step)) {
        if (IsNew)
            QDir(Folder).removeRecursively();
        return false;
    }
    m_pProject->setPath(Folder);
    m_pProject->setName(QFileInfo(Folder).completeBaseName());
    OrvUndoManager::instance().stack()->setClean();
    const OrvDataBlockManager& Cache = OrvDataBlockManager::instance();
    if (!Cache.cacheRoots().isEmpty())
        QDir(Cache.cacheRoots().first()).mkpath(Cache.subCache());
    Q_EMIT onProjectSaved(m_pProject.get());
    return true;
}

void OrvProjectManager::closeProject()
{
    if (!m_pProject)
        return;
    const std::unique_ptr<OrvProject> pClosing = std::move(m_pProject);
    Q_EMIT projectClosed();
    OrvLayerManager& Layers = OrvLayerManager::instance();
    Layers.setCurrentComponent(nullptr);
    Layers.setCurrentLayerStack(nullptr);
    for (OrvGeoEntity* pEntity : pClosing->geoEntities()) {
        Layers.setCurrentLayer(pEntity->shaderNetwork(), nullptr);
        OrvShaderInputManager::instance().makeShaderInputCurrent(pEntity->shaderNetwork(), nullptr, true);
    }
    OrvLayerShaderManager::instance().setCurrentShader(nullptr);
    pClosing->setCurrentGeoEntity(nullptr);
    OrvUndoManager::instance().clear();
    {
        const OrvUndoManager::NoRecording NoRecording;
        for (OrvGeoEntity* pEntity : pClosing->geoEntities())
            pEntity->shaderNetwork()->clear();
    }
    Q_EMIT onMakeProjectCurrent(nullptr);
}

void OrvProjectManager::registerFileExcludedFromArchive(const QString& FileName)
{
    if (!m_FilesExcludedFromArchive.contains(FileName))
        m_FilesExcludedFromArchive.append(FileName);
}

void OrvProjectManager::triggerAutosave()
{
    Q_EMIT autosaveRequested();
}

#include "moc_OrvProjectManager.cpp"
