#include "OrvCoreModules/Menus/OrvActionTreeManager.h"

#include "OrvCore/Object/OrvDebug.h"

#include <QtWidgets/QAction>

namespace {
const char File[] = "OrvActionTreeManager";
const QLatin1Char Separator('/');
} // namespace

OrvActionTreeManager& OrvActionTreeManager::instance()
{
    // Never destroyed: actions of plug-ins leave the tree when their library is unloaded.
    static auto* pInstance = new OrvActionTreeManager;
    return *pInstance;
}

QString OrvActionTreeManager::cleanPath(const QString& Path)
{
    QString Clean = Separator + Path;
    while (Clean.contains(QLatin1String("//")))
        Clean.replace(QLatin1String("//"), QLatin1String("/"));
    if (Clean.size() > 1 && Clean.endsWith(Separator))
        Clean.chop(1);
    return Clean;
}

void OrvActionTreeManager::registerAction(const QString& Path, QAction* pAction)
{
    if (!pAction) {
        OrvDebug(File, __LINE__, QStringLiteral("pAction is NULL"), false, false);
        return;
    }
    const QString Key = cleanPath(Path + Separator + pAction->text());
    if (m_Actions.contains(Key)) {
        OrvDebug(File, __LINE__, QStringLiteral("[ !! ] Action '%1' is registered already").arg(Key), false,
            false);
        return;
    }
    unregisterAction(pAction);
    m_Actions.insert(Key, pAction);
    m_Keys.insert(pAction, Key);
    m_Order.append(Key);
    watch(pAction);
    Q_EMIT actionRegistered(Key, pAction);
}

void OrvActionTreeManager::unregisterAction(QAction* pAction)
{
    forget(pAction);
}

void OrvActionTreeManager::watch(QAction* pAction)
{
    connect(
        pAction, &QObject::destroyed, this, &OrvActionTreeManager::onActionDestroyed, Qt::UniqueConnection);
}

void OrvActionTreeManager::forget(QObject* pAction)
{
    const QString Key = m_Keys.take(pAction);
    if (Key.isEmpty())
        return;
    m_Actions.remove(Key);
    m_Order.removeOne(Key);
    Q_EMIT actionUnregistered(Key);
}

void OrvActionTreeManager::onActionDestroyed(QObject* pAction)
{
    for (ActionSet& Set : m_ActionSets)
        Set.Actions.removeAll(static_cast<QAction*>(pAction));
    forget(pAction);
}

QAction* OrvActionTreeManager::findAction(const QString& Key) const
{
    // Keys are clean almost always; cleaning each would cost more than the look-up.
    if (QAction* pAction = m_Actions.value(Key))
        return pAction;
    return m_Actions.value(cleanPath(Key));
}

QString OrvActionTreeManager::actionKey(const QAction* pAction) const
{
    return m_Keys.value(pAction);
}

QStringList OrvActionTreeManager::actionKeys(const QString& Path) const
{
    const QString Clean = cleanPath(Path);
    if (Clean == Separator)
        return m_Order;
    const QString Prefix = Clean + Separator;
    QStringList Keys;
    for (const QString& Key : m_Order) {
        if (Key == Clean || Key.startsWith(Prefix))
            Keys.append(Key);
    }
    return Keys;
}

void OrvActionTreeManager::addToActionSet(const QString& SetName, QAction* pAction)
{
    if (!pAction) {
        OrvDebug(File, __LINE__, QStringLiteral("pAction is NULL"), false, false);
        return;
    }
    ActionSet& Set = m_ActionSets[SetName];
    if (Set.Actions.contains(pAction))
        return;
    Set.Actions.append(pAction);
    watch(pAction);
    if (!Set.Enabled)
        pAction->setEnabled(false);
}

void OrvActionTreeManager::setActionSetEnabled(const QString& SetName, bool Enabled)
{
    ActionSet& Set = m_ActionSets[SetName];
    Set.Enabled = Enabled;
    // Enabling an action reaches widgets, which may do anything to the set.
    const QList<QAction*> Actions = Set.Actions;
    for (QAction* pAction : Actions)
        pAction->setEnabled(Enabled);
}

QList<QAction*> OrvActionTreeManager::actionSet(const QString& SetName) const
{
    return m_ActionSets.value(SetName).Actions;
}

#include "moc_OrvActionTreeManager.cpp"
