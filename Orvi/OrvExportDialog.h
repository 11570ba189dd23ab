#pragma once

#include <QtWidgets/QDialog>

class QComboBox;
class QLineEdit;

/// Asks where several images go and as what type of file. It offers only folders that exist, and writes
/// nothing.
class OrvExportDialog : public QDialog {
    Q_OBJECT

public:
    OrvExportDialog(const QString& Title, const QString& Directory, const QString& Suffix,
        QWidget* pParent = nullptr);

    QString directory() const;
    /// Empty: PNG for images of 8 bits, EXR for those that hold more.
    QString suffix() const;

private:
    void browse();

    QLineEdit* m_pDirectory;
    QComboBox* m_pType;
};
