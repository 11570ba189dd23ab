#include "OrvCoreModules/Menus/OrvMenu.h"

#include <QtGui/QKeyEvent>

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

void OrvMenu::keyPressEvent(QKeyEvent* pEvent)
{
    const bool IsPlain = !(pEvent->modifiers() & ~Qt::ShiftModifier);
    const QString Typed = pEvent->text();
    QAction* pNext
        = IsPlain && Typed.size() == 1 && Typed[0].isLetterOrNumber() ? nextBeginningWith(Typed[0]) : nullptr;
    if (!pNext) {
        QMenu::keyPressEvent(pEvent);
        return;
    }
    setActiveAction(pNext);
    // Qt opens a sub-menu at once, which would take the next letter.
    if (pNext->menu())
        pNext->menu()->hide();
}

QAction* OrvMenu::nextBeginningWith(QChar Letter) const
{
    const QList<QAction*> Entries = actions();
    const QKeySequence Mnemonic(Qt::ALT + int(Letter.toUpper().unicode()));
    const int Count = Entries.size();
    const int Active = Entries.indexOf(activeAction());
    QAction* pNext = nullptr;
    for (int Step = 1; Step <= Count; ++Step) {
        QAction* pEntry = Entries[(Active + Step + Count) % Count];
        if (QKeySequence::mnemonic(pEntry->text()) == Mnemonic)
            return nullptr;
        const bool Begins = pEntry->text().startsWith(Letter, Qt::CaseInsensitive);
        if (!pNext && Begins && pEntry->isVisible() && pEntry->isEnabled() && !pEntry->isSeparator())
            pNext = pEntry;
    }
    return pNext;
}

#include "moc_OrvMenu.cpp"
