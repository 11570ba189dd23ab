#pragma once

#include <QtCore/QObject>

class QAction;

/// The Edit menu: undo and redo, named after what they take back or bring again, and the shortcut editor.
/// Owned by the program.
class OrvEditCommands : public QObject {
    Q_OBJECT

public:
    explicit OrvEditCommands(QObject* pParent = nullptr);

public Q_SLOTS:
    void undo();
    void redo();
    void editShortcuts();

private Q_SLOTS:
    void updateTexts();

private:
    QAction* m_pUndo = nullptr;
    QAction* m_pRedo = nullptr;
};
