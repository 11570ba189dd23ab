#pragma once

#include <QtCore/QList>
#include <QtCore/QObject>

class OrvCanvasTools;
class QAction;
class QString;

/// The Select menu: what is selected, the tools that select, and the selections kept with the object. Owned
/// by the program.
class OrvSelectionCommands : public QObject {
    Q_OBJECT

public:
    explicit OrvSelectionCommands(OrvCanvasTools* pTools, QObject* pParent = nullptr);
    ~OrvSelectionCommands() override;

    /// Takes a kept selection; the keys held at the moment combine it with what is selected.
    void load(const QString& GroupName);

public Q_SLOTS:
    /// Asks for a name, and again before another selection is replaced.
    void saveSelectionAs();
    void showGroups();

private:
    void createActions();
    void rebuildLoadMenu();
    void clearLoadMenu();

    OrvCanvasTools* m_pTools;
    QList<QAction*> m_LoadActions;
};
