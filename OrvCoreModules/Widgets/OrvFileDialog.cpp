#include "OrvCoreModules/Widgets/OrvFileDialog.h"

#include <QtCore/QDateTime>
#include <QtCore/QLocale>
#include <QtGui/QMouseEvent>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QAbstractItemView>
#include <QtWidgets/QCompleter>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QTreeView>

namespace {

// Names that Qt's own dialog gives its parts; the desktop's dialog has none of them.
const QString NameEdit = QStringLiteral("fileNameEdit");
const QString DetailView = QStringLiteral("treeView");
constexpr int DateColumn = 3;
constexpr int ColumnMargin = 16;
const QSize RoomySize(760, 480);

} // namespace

OrvFileDialog::OrvFileDialog(
    QWidget* pParent, const QString& Title, const QString& Directory, const QString& Filter)
    : QFileDialog(pParent, Title, Directory, Filter)
{
}

QString OrvFileDialog::askForFolder(QWidget* pParent, const QString& Title, const QString& Directory)
{
    OrvFileDialog Dialog(pParent, Title, Directory);
    Dialog.setFileMode(QFileDialog::Directory);
    Dialog.setOption(ShowDirsOnly);
    return Dialog.run().value(0);
}

QString OrvFileDialog::askForFile(
    QWidget* pParent, const QString& Title, const QString& Place, const QString& Filter)
{
    const QFileInfo Former(Place);
    OrvFileDialog Dialog(pParent, Title, Former.isDir() ? Place : Former.path(), Filter);
    Dialog.setFileMode(ExistingFile);
    if (Former.isFile())
        Dialog.selectFile(Former.fileName());
    return Dialog.run().value(0);
}

QStringList OrvFileDialog::askForFiles(
    QWidget* pParent, const QString& Title, const QString& Directory, const QString& Filter)
{
    OrvFileDialog Dialog(pParent, Title, Directory, Filter);
    Dialog.setFileMode(ExistingFiles);
    return Dialog.run();
}

QStringList OrvFileDialog::run()
{
    return exec() == Accepted ? chosen() : QStringList();
}

QStringList OrvFileDialog::chosen() const
{
    return m_Typed.isEmpty() ? selectedFiles() : QStringList{m_Typed};
}

QString OrvFileDialog::typedPath() const
{
    const auto* pEdit = findChild<QLineEdit*>(NameEdit);
    if (!pEdit || pEdit->text().isEmpty() || acceptMode() != AcceptOpen)
        return QString();
    const QFileInfo File(QDir::cleanPath(directory().absoluteFilePath(pEdit->text())));
    return File.exists() && File.isDir() == (fileMode() == QFileDialog::Directory) ? File.filePath()
                                                                                   : QString();
}

void OrvFileDialog::accept()
{
    m_Typed = typedPath();
    if (m_Typed.isEmpty())
        QFileDialog::accept();
    else
        done(Accepted);
}

void OrvFileDialog::showEvent(QShowEvent* pEvent)
{
    if (const auto* pView = findChild<QTreeView*>(DetailView)) {
        const QString Date = QLocale().toString(QDateTime::currentDateTime(), QLocale::ShortFormat);
        pView->header()->resizeSection(
            DateColumn, pView->fontMetrics().horizontalAdvance(Date) + ColumnMargin);
        resize(size().expandedTo(RoomySize));
    }
    const auto* pEdit = findChild<QLineEdit*>(NameEdit);
    if (pEdit && pEdit->completer())
        pEdit->completer()->popup()->installEventFilter(this);
    QFileDialog::showEvent(pEvent);
}

bool OrvFileDialog::eventFilter(QObject* pWatched, QEvent* pEvent)
{
    auto* pPopup = qobject_cast<QAbstractItemView*>(pWatched);
    if (!pPopup || pEvent->type() != QEvent::MouseButtonPress)
        return QFileDialog::eventFilter(pWatched, pEvent);
    // The list of completions would take the press for itself and do no more than close.
    const QPoint Place = static_cast<QMouseEvent*>(pEvent)->globalPos();
    auto* pButton = qobject_cast<QAbstractButton*>(childAt(mapFromGlobal(Place)));
    if (pPopup->geometry().contains(Place) || !pButton)
        return QFileDialog::eventFilter(pWatched, pEvent);
    pPopup->hide();
    pButton->animateClick();
    return true;
}
