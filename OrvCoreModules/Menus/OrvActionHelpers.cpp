#include "OrvCoreModules/Menus/OrvActionHelpers.h"

#include "OrvCoreModules/Menus/OrvActionTreeManager.h"
#include "OrvCoreModules/Menus/OrvMenuManager.h"
#include "OrvCoreModules/Menus/OrvShortcutManager.h"

#include <QtWidgets/QAction>

QShortcut* OrvActionHelpers::createAndRegisterShortcut(
    QWidget* pWidget, const QKeySequence& Sequence, const char* pSlot, QObject* pReceiver)
{
    return OrvShortcutManager::instance().createShortcut(pWidget, Sequence, pSlot, pReceiver);
}

void OrvActionHelpers::setActionEnabled(const QString& Key, bool Enabled, const QString& Reason)
{
    QAction* pAction = OrvActionTreeManager::instance().findAction(Key);
    if (!pAction)
        return;
    pAction->setEnabled(Enabled);
    if (!Reason.isEmpty())
        pAction->setToolTip(Enabled ? QString() : Reason);
}

void OrvActionHelpers::setMenuEnabled(const QString& MenuPath, bool Enabled, const QString& Reason)
{
    OrvMenuManager::instance().setMenuEnabled(MenuPath, Enabled, Reason);
}

QList<QAction*> OrvActionHelpers::getMenuActions(const QString& MenuPath)
{
    return OrvMenuManager::instance().menuActions(MenuPath);
}
