#include "Orvi/OrvExportRun.h"

#include "Orvi/OrvFailureMessage.h"

#include "OrvCoreModules/Window/OrvApplication.h"
#include "OrvCoreModules/Window/OrvMainWindow.h"
#include "OrvCoreModules/Window/OrvProgressDialog.h"
#include "OrvCoreModules/Window/OrvStatusManager.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QPushButton>

#include <algorithm>

namespace {

constexpr int MessageDuration = 4000; // ms

/// One question for all files. Unattended runs replace what they are told to write.
bool mayReplace(const QStringList& Files)
{
    QStringList Existing;
    std::copy_if(Files.begin(), Files.end(), std::back_inserter(Existing),
        [](const QString& File) { return QFileInfo::exists(File); });
    if (Existing.isEmpty() || !OrvApplication::popupsAllowed())
        return true;
    QMessageBox Box(&OrvMainWindow::instance());
    Box.setIcon(QMessageBox::Question);
    Box.setWindowTitle(OrvExportRun::tr("Export"));
    Box.setTextFormat(Qt::PlainText);
    Box.setText(Existing.size() == 1
            ? OrvExportRun::tr("The file \"%1\" exists already.").arg(QFileInfo(Existing[0]).fileName())
            : OrvExportRun::tr("%1 of %2 files exist already.").arg(Existing.size()).arg(Files.size()));
    Box.setInformativeText(OrvExportRun::tr("Do you want to replace what is there?"));
    const QPushButton* pReplace = Box.addButton(OrvExportRun::tr("Replace"), QMessageBox::DestructiveRole);
    Box.setDefaultButton(Box.addButton(QMessageBox::Cancel));
    Box.exec();
    return Box.clickedButton() == pReplace;
}

void tellSuccess(const QStringList& Files)
{
    OrvStatusManager::instance().showMessage(Files.size() == 1
            ? OrvExportRun::tr("Exported %1").arg(QDir::toNativeSeparators(Files.first()))
            : OrvExportRun::tr("Exported %1 files to %2")
                  .arg(Files.size())
                  .arg(QDir::toNativeSeparators(QFileInfo(Files.first()).absolutePath())),
        MessageDuration);
}

} // namespace

bool OrvExportRun::run(const QString& Title, const QVector<OrvExportJob>& Jobs)
{
    QStringList Files, Failures;
    for (const OrvExportJob& Job : Jobs)
        Files += Job.Files;
    if (Files.isEmpty() || !mayReplace(Files))
        return false;
    bool Cancelled = false;
    {
        OrvProgressDialog Progress(tr("Exporting"), &OrvMainWindow::instance());
        for (int Index = 0; Index < Jobs.size() && !Progress.isCancelled(); ++Index) {
            Progress.setText(tr("Exporting %1").arg(Jobs[Index].Name));
            QString Error;
            const auto step = [&](int Done, int Total) {
                const int Share = Total > 0 ? 100 * Done / Total : 0;
                return Progress.step(100 * Index + Share, 100 * Jobs.size());
            };
            if (!Jobs[Index].Write(step, Error) && !Progress.isCancelled())
                Failures.append(Error);
        }
        Cancelled = Progress.isCancelled();
    }
    OrvFailureMessage::show(Title, Failures);
    if (!Cancelled && Failures.isEmpty())
        tellSuccess(Files);
    return !Cancelled && Failures.size() < Jobs.size();
}
