#include "OrvCoreModules/Menus/OrvMenu.h"

OrvMenu::OrvMenu(QWidget* pParent)
    : OrvMenu(QString(), pParent)
{
}

OrvMenu::OrvMenu(const QString& Title, QWidget* pParent)
    : QMenu(Title, pParent)
{
    setToolTipsVisible(true);
    setSeparatorsCollapsible(true);
}

void OrvMenu::clearAll()
{
    // Actions of our own (separators, sub-menu entries) go with clear() or with their sub-menu.
    clear();
    const QList<QMenu*> SubMenus = findChildren<QMenu*>(QString(), Qt::FindDirectChildrenOnly);
    qDeleteAll(SubMenus);
}

#include "moc_OrvMenu.cpp"
