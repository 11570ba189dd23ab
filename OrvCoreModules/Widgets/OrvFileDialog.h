#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

#include <QtWidgets/QFileDialog>

/// The dialogs that ask for files and folders. What the user has typed counts: left to itself, Qt's own dialog
/// may prefer what its list has selected on the way. Each call makes one dialog, the desktop's where it has
/// one; none remembers a place.
class ORVCOREMODULES_EXPORT OrvFileDialog : public QFileDialog {
public:
    /// Each returns nothing when the user has cancelled.
    static QString askForFolder(QWidget* pParent, const QString& Title, const QString& Directory);
    static QString askForFile(
        QWidget* pParent, const QString& Title, const QString& Place, const QString& Filter = QString());
    static QStringList askForFiles(
        QWidget* pParent, const QString& Title, const QString& Directory, const QString& Filter);

    OrvFileDialog(QWidget* pParent, const QString& Title, const QString& Directory,
        const QString& Filter = QString());

    /// In place of selectedFiles().
    QStringList chosen() const;

    void accept() override;
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

protected:
    void showEvent(QShowEvent* pEvent) override;

private:
    QString typedPath() const;
    QStringList run();

    QString m_Typed; ///< what was accepted, where it was typed
};
