#include "OrvCoreModules/Menus/OrvFocusShortcuts.h"

#include "OrvCoreModules/Menus/OrvShortcutManager.h"

#include <QtGui/QKeyEvent>
#include <QtWidgets/QShortcut>
#include <QtWidgets/QWidget>

OrvFocusShortcuts::OrvFocusShortcuts(QWidget* pWidget)
    : QObject(pWidget)
    , m_pWidget(pWidget)
{
    pWidget->installEventFilter(this);
}

void OrvFocusShortcuts::add(const QKeySequence& Keys, const char* pSlot, QObject* pReceiver)
{
    QShortcut* pShortcut = OrvShortcutManager::instance().createShortcut(m_pWidget, Keys, pSlot, pReceiver);
    if (!pShortcut)
        return;
    pShortcut->setEnabled(false);
    m_Shortcuts.append(pShortcut);
}

QShortcut* OrvFocusShortcuts::matching(const QKeyEvent* pEvent) const
{
    const int Modifiers = int(pEvent->modifiers() & ~Qt::KeypadModifier);
    const QKeySequence Pressed(Modifiers | pEvent->key());
    for (QShortcut* pShortcut : m_Shortcuts) {
        if (!pShortcut->key().isEmpty() && pShortcut->key() == Pressed)
            return pShortcut;
    }
    return nullptr;
}

bool OrvFocusShortcuts::eventFilter(QObject* pWatched, QEvent* pEvent)
{
    const bool Override = pEvent->type() == QEvent::ShortcutOverride;
    // Keys that an editor in the widget has left over pass through here too.
    if ((!Override && pEvent->type() != QEvent::KeyPress) || !m_pWidget->hasFocus())
        return QObject::eventFilter(pWatched, pEvent);
    QShortcut* pShortcut = matching(static_cast<QKeyEvent*>(pEvent));
    if (!pShortcut)
        return QObject::eventFilter(pWatched, pEvent);
    pEvent->accept();
    if (!Override)
        Q_EMIT pShortcut->activated();
    return true;
}

#include "moc_OrvFocusShortcuts.cpp"
