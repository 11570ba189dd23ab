#pragma once

#include "Orvi/OrvListPalette.h"

class OrvSelectionCommands;
class QListWidget;
class QListWidgetItem;
class QToolButton;

/// The selections kept with the current object: a double click loads one, F2 renames it, the buttons below
/// save, load and delete. It shows what the object has and remembers nothing.
class OrvSelectionPalette : public OrvListPalette {
    Q_OBJECT

public:
    explicit OrvSelectionPalette(OrvSelectionCommands* pCommands, QWidget* pParent = nullptr);

private Q_SLOTS:
    void refill();
    void rename(QListWidgetItem* pItem);
    void loadCurrent();
    void removeSelected();
    void updateButtons();

private:
    OrvSelectionCommands* m_pCommands;
    QListWidget* m_pList;
    QToolButton *m_pSave, *m_pLoad, *m_pRemove;
};
