#pragma once

#include <QtWidgets/QDialog>

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

/// Asks where several images go and as what type of file. It makes the folder if it does not exist, and
/// writes nothing else.
class OrvExportDialog : public QDialog {
    Q_OBJECT

public:
    /// What tells which images it is about.
    OrvExportDialog(const QString& Title, const QString& What, const QString& Directory,
        const QString& Suffix, QWidget* pParent = nullptr);

    /// Absolute; empty when nothing is typed.
    QString directory() const;
    /// Empty: PNG for images of 8 bits, EXR for those that hold more.
    QString suffix() const;

public Q_SLOTS:
    /// Stays open when the folder cannot be made.
    void accept() override;

private:
    void browse();
    void followDirectory();

    QLineEdit* m_pDirectory;
    QLabel* m_pDirectoryNote;
    QPushButton* m_pExport;
    QComboBox* m_pType;
};
