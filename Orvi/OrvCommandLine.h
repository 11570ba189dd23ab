#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

/// What the user asked for on the command line. A value made by parse(); it checks the form of the arguments
/// and never looks at a file's contents, and running it is up to others.
class OrvCommandLine {
public:
    enum Mode {
        Interactive, ///< open the window, with what was named
        Export, ///< write a channel to image files, without a window
        Sample, ///< open the sample project, made first when it is missing
        Tour, ///< play the tour off screen and write its pictures
        Version,
        Help,
        Invalid ///< Error says why
    };

    /// Exit codes, so that scripts can tell a mistyped command from work that failed.
    enum ExitCode { Success = 0, Failure = 1, UsageError = 2 };

    /// Without the program's own name.
    static OrvCommandLine parse(const QStringList& Arguments);

    Mode RequestedMode = Interactive;
    QString Error;

    QString Project; ///< folder of the project to open or to export from; empty: none
    QStringList Images; ///< files that become the channels of a new project
    bool namesFiles() const { return !Project.isEmpty() || !Images.isEmpty(); }
    QString Channel, File; ///< Export: what is written, and where
    QString Directory; ///< Tour

    bool needsWindow() const
    {
        return RequestedMode == Interactive || RequestedMode == Sample || RequestedMode == Tour;
    }

    static QString helpText();
    static QString versionText();
    /// Whether a path names a project: a folder "Name.orvi", or the manifest in one.
    static bool isProjectPath(const QString& Path);

private:
    void takeFiles(const QStringList& Files);
    void fail(const QString& Message);
};
