#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

#include <QtCore/QString>
#include <QtCore/QVariant>

class OrvAction;
class QObject;

/// Makes the actions of one matter in a row: each belongs to the parent object, calls a slot of it, is
/// registered in the action tree and in a set, and appears in a menu. The creator is state for the next
/// action and nothing more.
class ORVCOREMODULES_EXPORT OrvActionCreator {
public:
    OrvActionCreator(
        const QString& ActionPath, QObject* pParent, const QString& MenuPath, const QString& ActionSetName);

    void setActionPath(const QString& ActionPath) { m_ActionPath = ActionPath; }
    void setMenuPath(const QString& MenuPath) { m_MenuPath = MenuPath; }
    void setActionSetName(const QString& SetName) { m_ActionSetName = SetName; }

    /// Registers the action and leaves an entry in the menu that stands for whatever action has its path. The
    /// slot is written with SLOT(); one that takes a QAction* is given the action. An empty menu path leaves
    /// no entry.
    OrvAction* create(const QString& Text, const QString& IconFile, const char* pSlot, const QVariant& Data,
        const QString& ToolTip);
    /// The same with the action itself in the menu.
    OrvAction* createAndAddToMenu(const QString& Text, const QString& IconFile, const char* pSlot,
        const QVariant& Data, const QString& ToolTip);
    /// The same for "A/B/Text": "A/B" becomes sub-menus below the menu path and a path below the action path.
    OrvAction* createAndAddToMenuWithHierarchy(const QString& NodePath, const QString& IconFile,
        const char* pSlot, const QVariant& Data, const QString& ToolTip);

    /// At the end of the menu.
    void addMenuSeparator();

private:
    OrvAction* createRegistered(const QString& ActionPath, const QString& Text, const QString& IconFile,
        const char* pSlot, const QVariant& Data, const QString& ToolTip) const;

    QString m_ActionPath;
    QObject* m_pParent;
    QString m_MenuPath;
    QString m_ActionSetName;
};
