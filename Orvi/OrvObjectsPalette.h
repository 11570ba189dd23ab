#pragma once

#include "Orvi/OrvListPalette.h"

class OrvGeoEntity;
class OrvObjectCommands;
class QListWidget;
class QListWidgetItem;
class QPoint;
class QToolButton;

/// The objects of the project, the current one marked: a double click or Enter makes one current, F2 renames
/// it, Delete and the buttons below remove and add. It shows what the project has and remembers nothing.
class OrvObjectsPalette : public OrvListPalette {
    Q_OBJECT

public:
    explicit OrvObjectsPalette(OrvObjectCommands* pCommands, QWidget* pParent = nullptr);

private Q_SLOTS:
    void refill();
    void followCurrent();
    void rename(QListWidgetItem* pItem);
    void makeChosenCurrent();
    void editName(OrvGeoEntity* pEntity);
    void editChosen();
    void removeChosen();
    void showMenu(const QPoint& Position);
    void updateButtons();

private:
    /// The object of a row; null when it has left the project.
    OrvGeoEntity* objectOf(const QListWidgetItem* pItem) const;
    OrvGeoEntity* chosen() const;

    OrvObjectCommands* m_pCommands;
    QListWidget* m_pList;
    QToolButton *m_pAdd, *m_pMakeCurrent, *m_pRemove;
};
