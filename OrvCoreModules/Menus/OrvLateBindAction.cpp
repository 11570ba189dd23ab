#include "OrvCoreModules/Menus/OrvLateBindAction.h"

#include "OrvCoreModules/Menus/OrvActionTreeManager.h"
#include "OrvCoreModules/Menus/OrvShortcutManager.h"

#include <QtCore/QCoreApplication>

OrvLateBindAction::OrvLateBindAction(const QString& ActionPath, QObject* pParent)
    : OrvAction(pParent)
    , m_ActionPath(OrvActionTreeManager::cleanPath(ActionPath))
{
    // The entry shows the shortcut but must not answer to it: the action that it stands for does.
    setShortcutContext(Qt::WidgetShortcut);
    OrvActionTreeManager& ActionTree = OrvActionTreeManager::instance();
    connect(
        &ActionTree, &OrvActionTreeManager::actionRegistered, this, &OrvLateBindAction::onActionRegistered);
    connect(&ActionTree, &OrvActionTreeManager::actionUnregistered, this,
        &OrvLateBindAction::onActionUnregistered);
    connect(&OrvShortcutManager::instance(), &OrvShortcutManager::shownShortcutChanged, this,
        &OrvLateBindAction::onShownShortcutChanged);
    connect(this, &QAction::triggered, this, &OrvLateBindAction::onTriggered);
    bind(ActionTree.findAction(m_ActionPath));
}

void OrvLateBindAction::onActionRegistered(const QString& Path, QAction* pAction)
{
    if (Path == m_ActionPath)
        bind(pAction);
}

void OrvLateBindAction::onActionUnregistered(const QString& Path)
{
    // Actions of static objects die after the application: nobody looks at entries any more.
    if (Path == m_ActionPath && QCoreApplication::instance())
        bind(nullptr);
}

void OrvLateBindAction::onShownShortcutChanged(const QString& Path)
{
    if (Path == m_ActionPath)
        resemble();
}

void OrvLateBindAction::bind(QAction* pAction)
{
    if (m_ParentAction)
        disconnect(m_ParentAction, nullptr, this, nullptr);
    m_ParentAction = pAction;
    if (pAction)
        connect(pAction, &QAction::changed, this, &OrvLateBindAction::resemble);
    resemble();
}

void OrvLateBindAction::resemble()
{
    if (!m_ParentAction) {
        setText(m_ActionPath.section(QLatin1Char('/'), -1));
        setEnabled(false);
        setVisible(false);
        return;
    }
    setText(m_ParentAction->text());
    setIcon(m_ParentAction->icon());
    // Without a tip of its own an action tells its text, which the menu shows already.
    const QString ToolTip = m_ParentAction->toolTip();
    setToolTip(ToolTip == QAction(m_ParentAction->text()).toolTip() ? QString() : ToolTip);
    setStatusTip(m_ParentAction->statusTip());
    setFont(m_ParentAction->font());
    setCheckable(m_ParentAction->isCheckable());
    setChecked(m_ParentAction->isChecked());
    const QKeySequence Own = m_ParentAction->shortcut();
    setShortcut(Own.isEmpty() ? OrvShortcutManager::instance().shownShortcut(m_ActionPath) : Own);
    setEnabled(m_ParentAction->isEnabled());
    setVisible(m_ParentAction->isVisible());
}

void OrvLateBindAction::onTriggered()
{
    if (!m_ParentAction)
        return;
    const QPointer<OrvLateBindAction> pSelf = this;
    m_ParentAction->trigger();
    // A checkable entry has toggled itself; what counts is what became of the action.
    if (pSelf)
        resemble();
}

#include "moc_OrvLateBindAction.cpp"
