#include "OrvCoreModules/Graph/OrvNodeGraphShortcuts.h"

#include "OrvCoreModules/Menus/OrvShortcutManager.h"

#include <QtGui/QKeyEvent>
#include <QtWidgets/QShortcut>
#include <QtWidgets/QWidget>

OrvNodeGraphShortcuts::OrvNodeGraphShortcuts(QWidget* pCanvas)
    : QObject(pCanvas)
    , m_pCanvas(pCanvas)
{
    OrvShortcutManager::instance().addShortcutGroupMapping(
        QStringLiteral("Node Graph"), QLatin1String(pCanvas->metaObject()->className()));
    pCanvas->installEventFilter(this);
}

void OrvNodeGraphShortcuts::add(const QKeySequence& Keys, const char* pSlot, QObject* pReceiver)
{
    QShortcut* pShortcut = OrvShortcutManager::instance().createShortcut(m_pCanvas, Keys, pSlot, pReceiver);
    if (!pShortcut)
        return;
    pShortcut->setEnabled(false);
    m_Shortcuts.append(pShortcut);
}

QShortcut* OrvNodeGraphShortcuts::matching(const QKeyEvent* pEvent) const
{
    const int Modifiers = int(pEvent->modifiers() & ~Qt::KeypadModifier);
    const QKeySequence Pressed(Modifiers | pEvent->key());
    for (QShortcut* pShortcut : m_Shortcuts) {
        if (!pShortcut->key().isEmpty() && pShortcut->key() == Pressed)
            return pShortcut;
    }
    return nullptr;
}

bool OrvNodeGraphShortcuts::eventFilter(QObject* pWatched, QEvent* pEvent)
{
    const bool Override = pEvent->type() == QEvent::ShortcutOverride;
    // Keys that an editor on the canvas has left over pass through here too.
    if ((!Override && pEvent->type() != QEvent::KeyPress) || !m_pCanvas->hasFocus())
        return QObject::eventFilter(pWatched, pEvent);
    QShortcut* pShortcut = matching(static_cast<QKeyEvent*>(pEvent));
    if (!pShortcut)
        return QObject::eventFilter(pWatched, pEvent);
    pEvent->accept();
    if (!Override)
        Q_EMIT pShortcut->activated();
    return true;
}

#include "moc_OrvNodeGraphShortcuts.cpp"
