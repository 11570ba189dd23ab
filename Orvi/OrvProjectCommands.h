#pragma once

#include "Orvi/OrvRecentProjects.h"

#include <QtCore/QObject>

/// The File menu's commands on the project as a whole: new, open, save, close, with the question about
/// unsaved changes; it also keeps the window's title. Owned by the program.
class OrvProjectCommands : public QObject {
    Q_OBJECT

public:
    explicit OrvProjectCommands(QObject* pParent = nullptr);

    /// Asks about unsaved changes first and reports failures by message; false when the project is not open
    /// after it.
    bool open(const QString& Path);
    /// Asks about unsaved changes; false: the user wants to go on working.
    bool mayLeaveProject();
    /// An empty project of the user's liking.
    void makeNew(const QString& Name);

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
    bool saveTo(const QString& Path);
    static QString lastDirectory();
    static void rememberDirectory(const QString& ProjectPath);

    OrvRecentProjects m_Recent;
};
