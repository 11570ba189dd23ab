#pragma once

#include "OrvCore/OrvCoreExport.h"

#include <QtCore/QObject>
#include <QtCore/QStringList>

#include <functional>
#include <memory>

class OrvGeoEntity;
class OrvProject;

/// Opens, saves and closes the one open project, and tells the world. It asks no questions: whoever commands it has
/// asked the user about unsaved changes before.
class ORVCORE_EXPORT OrvProjectManager : public QObject {
    Q_OBJECT

public:
    /// Called with done and total steps; false cancels.
    using Progress = std::function<bool(int Done, int Total)>;

    static OrvProjectManager& instance();

    OrvProject* currentProject() const { return m_pProject.get(); }
    /// The document differs from what was last saved or opened.
    bool isModified() const;

    /// Closes what is open and makes an empty project with one object current.
    OrvProject* newProject(const QString& Name, const QString& EntityName = QStringLiteral("Object"));
    /// On failure nothing changes, the project open before stays open, and the text names the trouble.
    bool openProject(const QString& Path, QString& Error, const Progress& Step = {});
    /// To its own path. The old project stays whole on disk when it fails.
    bool saveProject(QString& Error, const Progress& Step = {});
    bool saveProjectAs(const QString& Path, QString& Error, const Progress& Step = {});
    void closeProject();

    void registerFileExcludedFromArchive(const QString& FileName);
    QStringList filesExcludedFromArchive() const { return m_FilesExcludedFromArchive; }
    /// Asks for an autosave soon.
    void triggerAutosave();

Q_SIGNALS:
    void onProjectSaved(OrvProject* pProject);
    void onMakeProjectCurrent(OrvProject* pProject);
    void projectClosed();
    /// After the object entered the project, or left it; one that left lives on in the undo history.
    void geoEntityAdded(OrvGeoEntity* pEntity);
    void geoEntityRemoved(OrvGeoEntity* pEntity);
    void geoEntityNameChanged(OrvGeoEntity* pEntity, QString Name);
    void selectionGroupsChanged(OrvGeoEntity* pEntity);
    void objectMadeCurrent(OrvGeoEntity* pEntity);
    void projectOpenAbsolutelyCompleted();
    void modifiedChanged(bool Modified);
    void autosaveRequested();

private:
    friend class OrvGeoEntity;
    friend class OrvProject;
    OrvProjectManager();
    ~OrvProjectManager() override;
    void makeCurrent(std::unique_ptr<OrvProject> pProject, OrvGeoEntity* pCurrentEntity);

    std::unique_ptr<OrvProject> m_pProject;
    QStringList m_FilesExcludedFromArchive;
};
