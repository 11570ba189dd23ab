#include "Orvi/OrvExportDialog.h"

#include <QtCore/QFileInfo>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QFormLayout>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>

OrvExportDialog::OrvExportDialog(
    const QString& Title, const QString& Directory, const QString& Suffix, QWidget* pParent)
    : QDialog(pParent)
    , m_pDirectory(new QLineEdit(QDir::toNativeSeparators(Directory)))
    , m_pType(new QComboBox)
{
    setWindowTitle(Title);
    m_pDirectory->setMinimumWidth(320);
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
    QPushButton* pExport = pButtons->addButton(tr("Export"), QDialogButtonBox::AcceptRole);
    // While a folder is typed, the default button comes and goes: Enter must not press another one.
    pExport->setDefault(true);
    pBrowse->setAutoDefault(false);
    pButtons->button(QDialogButtonBox::Cancel)->setAutoDefault(false);
    auto* pForm = new QFormLayout(this);
    pForm->addRow(tr("Folder"), pPlace);
    pForm->addRow(tr("Type"), m_pType);
    pForm->addRow(pButtons);

    connect(pBrowse, &QPushButton::clicked, this, &OrvExportDialog::browse);
    connect(m_pDirectory, &QLineEdit::textChanged, pExport,
        [this, pExport] { pExport->setEnabled(QFileInfo(directory()).isDir()); });
    connect(pButtons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(pButtons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    pExport->setEnabled(QFileInfo(directory()).isDir());
}

QString OrvExportDialog::directory() const
{
    return QDir::fromNativeSeparators(m_pDirectory->text());
}

QString OrvExportDialog::suffix() const
{
    return m_pType->currentData().toString();
}

void OrvExportDialog::browse()
{
    const QString Chosen = QFileDialog::getExistingDirectory(this, windowTitle(), directory());
    if (!Chosen.isEmpty())
        m_pDirectory->setText(QDir::toNativeSeparators(Chosen));
}

#include "moc_OrvExportDialog.cpp"
