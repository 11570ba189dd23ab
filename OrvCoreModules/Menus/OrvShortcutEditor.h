#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

#include <QtWidgets/QDialog>

class QKeySequenceEdit;
class QLabel;
class QLineEdit;
class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;

/// The dialog in which the user looks up and rebinds shortcuts. Edits the shortcut manager at once and keeps
/// no list of its own; keys in use are named and given over only when the user says so, a default that is to
/// come back included.
class ORVCOREMODULES_EXPORT OrvShortcutEditor : public QDialog {
    Q_OBJECT

public:
    explicit OrvShortcutEditor(QWidget* pParent = nullptr);

private Q_SLOTS:
    void filter(const QString& Text);
    void onCurrentItemChanged();
    void onSequenceEdited();
    void assign();
    void resetCurrent();
    /// Asks first.
    void resetAll();
    void refreshPath(const QString& Path);

private:
    void createRows();
    void refreshItem(QTreeWidgetItem* pItem);
    QString currentPath() const;
    void showConflicts();

    QLineEdit* m_Filter;
    QTreeWidget* m_Tree;
    QKeySequenceEdit* m_SequenceEdit;
    QPushButton* m_AssignButton;
    QPushButton* m_ClearButton;
    QPushButton* m_ResetButton;
    QLabel* m_Message;
};
