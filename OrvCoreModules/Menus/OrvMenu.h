#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

#include <QtWidgets/QMenu>

/// A menu of the program: shows tool tips, draws no doubled separators. A letter that is no entry's mnemonic
/// goes to the next entry that begins with it, so that every entry is within reach of the keyboard. Belongs
/// to its parent or to the caller; it owns its sub-menus, never the actions of others.
class ORVCOREMODULES_EXPORT OrvMenu : public QMenu {
    Q_OBJECT

public:
    explicit OrvMenu(QWidget* pParent = nullptr);
    OrvMenu(const QString& Title, QWidget* pParent = nullptr);

    /// Takes all entries out and deletes the sub-menus, so that the menu can be filled again.
    void clearAll();

protected:
    void keyPressEvent(QKeyEvent* pEvent) override;

private:
    QAction* nextBeginningWith(QChar Letter) const;
};
