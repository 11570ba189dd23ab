#include "Orvi/OrvExportDialog.h"

#include "Orvi/OrvFailureMessage.h"

#include "OrvCoreModules/Widgets/OrvFileDialog.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QFormLayout>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>

OrvExportDialog::OrvExportDialog(const QString& Title, const QString& What, const QString& Directory,
    const QString& Suffix, QWidget* pParent)
    : QDialog(pParent)
    , m_pDirectory(new QLineEdit(QDir::toNativeSeparators(Directory)))
    , m_pDirectoryNote(new QLabel)
    , m_pType(new QComboBox)
{
    setWindowTitle(Title);
    auto* pWhat = new QLabel(What);
    pWhat->setTextFormat(Qt::PlainText);
    pWhat->setWordWrap(true);
    m_pDirectory->setMinimumWidth(320);
    m_pDirectoryNote->setEnabled(false);
    m_pType->addItem(tr("As deep as each image (PNG or EXR)"), QString());
    m_pType->addItem(tr("PNG"), QStringLiteral("png"));
    m_pType->addItem(tr("TIFF"), QStringLiteral("tif"));
    m_pType->addItem(tr("EXR"), QStringLiteral("exr"));
    m_pType->setCurrentIndex(qMax(0, m_pType->findData(Suffix)));

    auto* pBrowse = new QPushButton(tr("Browse…"));
    auto* pPlace = new QHBoxLayout;
    pPlace->addWidget(m_pDirectory);
    pPlace->addWidget(pBrowse);
    auto* pButtons = new QDialogButtonBox(QDialogButtonBox::Cancel);
    m_pExport = pButtons->addButton(tr("Export"), QDialogButtonBox::AcceptRole);
    // While a folder is typed, the default button comes and goes: Enter must not press another one.
    m_pExport->setDefault(true);
    pBrowse->setAutoDefault(false);
    pButtons->button(QDialogButtonBox::Cancel)->setAutoDefault(false);
    auto* pForm = new QFormLayout(this);
    pForm->addRow(pWhat);
    pForm->addRow(tr("Folder"), pPlace);
    pForm->addRow(QString(), m_pDirectoryNote);
    pForm->addRow(tr("Type"), m_pType);
    pForm->addRow(pButtons);

    connect(pBrowse, &QPushButton::clicked, this, &OrvExportDialog::browse);
    connect(m_pDirectory, &QLineEdit::textChanged, this, &OrvExportDialog::followDirectory);
    connect(pButtons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(pButtons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    followDirectory();
}

QString OrvExportDialog::directory() const
{
    QString Typed = QDir::fromNativeSeparators(m_pDirectory->text().trimmed());
    if (Typed.isEmpty())
        return Typed;
    if (Typed == QLatin1String("~") || Typed.startsWith(QLatin1String("~/")))
        Typed.replace(0, 1, QDir::homePath());
    return QDir::cleanPath(QDir::home().absoluteFilePath(Typed));
}

QString OrvExportDialog::suffix() const
{
    return m_pType->currentData().toString();
}

void OrvExportDialog::followDirectory()
{
    const QFileInfo Place(directory());
    m_pExport->setEnabled(!directory().isEmpty());
    // Never empty: the dialog keeps its height.
    m_pDirectoryNote->setText(directory().isEmpty() ? tr("Name a folder")
            : Place.isDir()                         ? tr("The folder exists")
            : Place.exists()                        ? tr("This is a file, not a folder")
                                                    : tr("The folder will be made"));
}

void OrvExportDialog::accept()
{
    if (!QDir().mkpath(directory()))
        return OrvFailureMessage::show(
            windowTitle(), tr("The folder \"%1\" cannot be made").arg(QDir::toNativeSeparators(directory())));
    QDialog::accept();
}

void OrvExportDialog::browse()
{
    const QString Chosen = OrvFileDialog::askForFolder(this, windowTitle(), directory());
    if (!Chosen.isEmpty())
        m_pDirectory->setText(QDir::toNativeSeparators(Chosen));
}

#include "moc_OrvExportDialog.cpp"
