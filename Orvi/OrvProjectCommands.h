#pragma once

#include "Orvi/OrvAutosave.h"
#include "Orvi/OrvCanvasRenderer.h"
#include "Orvi/OrvRecentProjects.h"

#include <QtCore/QObject>
#include <QtCore/QPointer>

/// The File menu's commands on the project as a whole: new, open, save, close, with the questions about
/// unsaved changes and about what a crash left behind; it also keeps the window's title. Owned by the
/// program.
class OrvProjectCommands : public QObject {
    Q_OBJECT

public:
    /// The renderer pauses while projects are saved.
    explicit OrvProjectCommands(OrvCanvasRenderer* pRenderer = nullptr, QObject* pParent = nullptr);

    /// Asks about unsaved changes first and reports failures by message; false when the project is not open
    /// after it.
    bool open(const QString& Path);
    /// Asks about unsaved changes; false: the user wants to go on working.
    bool mayLeaveProject();
    /// An empty project of the user's liking.
    void makeNew(const QString& Name);
    /// Of a project that was not saved yet.
    void rename(const QString& Name);

    /// Asks what is to become of copies that crashes left behind, but for that of one project; true when one
    /// was opened.
    bool offerRecovery(const QString& ExceptProject = QString());
    /// To be asked before a project opens: a copy that is younger is offered in its place. False: the project
    /// is not to be opened, because the copy was or because the user wants neither.
    bool mayOpenSaved(const QString& Path);
    /// Says where the recovered project lies.
    bool recover(const OrvAutosave::Copy& Left);

public Q_SLOTS:
    void newProject();
    void openProject();
    bool saveProject();
    bool saveProjectAs();
    void closeProject();
    void quit();

private Q_SLOTS:
    void updateTitle();

private:
    void createActions();
    void noteOpened();
    bool saveTo(const QString& Path);
    static QString lastDirectory();
    static void rememberDirectory(const QString& ProjectPath);

    QPointer<OrvCanvasRenderer> m_pRenderer;
    OrvRecentProjects m_Recent;
};
