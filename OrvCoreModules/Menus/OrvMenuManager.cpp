#include "OrvCoreModules/Menus/OrvMenuManager.h"

#include "OrvCore/Object/OrvDebug.h"
#include "OrvCoreModules/Menus/OrvActionTreeManager.h"
#include "OrvCoreModules/Menus/OrvLateBindAction.h"
#include "OrvCoreModules/Menus/OrvMenu.h"
#include "OrvCoreModules/Menus/OrvMenuNode.h"
#include "OrvCoreModules/Window/OrvIcon.h"

#include <QtGui/QCursor>
#include <QtWidgets/QAction>

namespace {

const char File[] = "OrvMenuManager";
const QLatin1Char Separator('/');

QStringList pathOf(const QString& Window, const QString& Menu, const QString& SubMenu = QString())
{
    return QStringList{Window, Menu} + SubMenu.split(Separator, Qt::SkipEmptyParts);
}

/// Keys of the actions that the menu and its sub-menus offer already.
void collectKeys(const QMenu* pMenu, QSet<QString>& Keys)
{
    for (const QAction* pAction : pMenu->actions()) {
        const auto* pLateBound = qobject_cast<const OrvLateBindAction*>(pAction);
        Keys.insert(
            pLateBound ? pLateBound->actionPath() : OrvActionTreeManager::instance().actionKey(pAction));
        if (pAction->menu())
            collectKeys(pAction->menu(), Keys);
    }
}

} // namespace

OrvMenuManager& OrvMenuManager::instance()
{
    // Never destroyed: plug-ins take their actions away when their library is unloaded.
    static auto* pInstance = new OrvMenuManager;
    return *pInstance;
}

OrvMenuManager::OrvMenuManager()
    : m_Root(std::make_unique<OrvMenuNode>(QString()))
{
    addMenuSet(QStringLiteral("Panel"));
    // The shader types have their own menu behind "Add New Shader Layer".
    mapActionTree(QStringLiteral("CollectionContext"), QStringLiteral("OrvLayer"),
        QStringLiteral("/Orvi/Layers"), {QStringLiteral("Shaders/AddShader")},
        QStringLiteral("MainWindow/&Layers"));
}

OrvMenuManager::~OrvMenuManager() = default;

void OrvMenuManager::addMenuSet(const QString& Name)
{
    if (!m_MenuSets.contains(Name))
        m_MenuSets.append(Name);
}

void OrvMenuManager::addRootMenu(const QString& Name, const QString& MenuSet)
{
    addMenuSet(MenuSet);
    QStringList& RootMenus = m_RootMenus[MenuSet];
    if (!RootMenus.contains(Name))
        RootMenus.append(Name);
}

OrvMenuNode* OrvMenuManager::node(const QStringList& Path) const
{
    OrvMenuNode* pNode = m_Root.get();
    for (const QString& Title : Path) {
        pNode = pNode->subMenu(Title);
        if (!pNode)
            return nullptr;
    }
    return pNode;
}

OrvMenuNode* OrvMenuManager::createNode(const QStringList& Path)
{
    OrvMenuNode* pNode = m_Root.get();
    for (const QString& Title : Path)
        pNode = pNode->createSubMenu(Title);
    return pNode;
}

OrvMenu* OrvMenuManager::makeMenu(const QString& Window, const QString& Menu, const QString& Section)
{
    auto* pMenu = new OrvMenu(Menu);
    fillMenu(pMenu, Window, Menu, Section);
    return pMenu;
}

void OrvMenuManager::fillMenu(
    QMenu* pMenu, const QString& Window, const QString& Menu, const QString& Section)
{
    if (!pMenu) {
        OrvDebug(File, __LINE__, QStringLiteral("pMenu is NULL"), false, false);
        return;
    }
    OrvMenuNode* pNode = createNode({Window, Menu});
    pNode->fill(pMenu, Section);
    if (auto* pFollower = qobject_cast<OrvMenu*>(pMenu))
        pNode->follow(pFollower);
    for (const ActionTreeMapping& Mapping : qAsConst(m_ActionTreeMappings)) {
        if (Mapping.Window == Window && Mapping.Menu == Menu)
            fillFromActionTree(pMenu, Mapping);
    }
}

void OrvMenuManager::mapActionTree(const QString& Window, const QString& Menu, const QString& ActionPath,
    const QStringList& ExcludedSubPaths, const QString& LeadingMenuPath)
{
    m_ActionTreeMappings.append(
        {Window, Menu, OrvActionTreeManager::cleanPath(ActionPath), ExcludedSubPaths, LeadingMenuPath});
}

void OrvMenuManager::placeMenu(const QString& MenuPath, const QString& IconFile)
{
    const QStringList Path = MenuPath.split(Separator, Qt::SkipEmptyParts);
    if (Path.isEmpty())
        return;
    OrvMenuNode* pPlaced = createNode(Path.mid(0, Path.size() - 1))->placeSubMenu(Path.last());
    if (!IconFile.isEmpty())
        pPlaced->setIcon(OrvIcon::createIconFromFilename(IconFile));
    Q_EMIT menuChanged(Path.first(), Path.value(1));
}

void OrvMenuManager::fillFromActionTree(QMenu* pMenu, const ActionTreeMapping& Mapping) const
{
    // The entries of the menu itself come first, whatever order the actions were registered in.
    OrvMenuNode Grouped{QString()};
    QHash<QString, OrvMenuNode*> Groups;
    const int PrefixSize = Mapping.ActionPath.size() + 1;
    pMenu->addSeparator();
    if (OrvMenuNode* pLeading = node(Mapping.LeadingMenuPath.split(Separator, Qt::SkipEmptyParts));
        pLeading && !Mapping.LeadingMenuPath.isEmpty())
        pLeading->fill(pMenu, QString());
    pMenu->addSeparator();
    QSet<QString> ShownKeys;
    collectKeys(pMenu, ShownKeys);
    for (const QString& Key : OrvActionTreeManager::instance().actionKeys(Mapping.ActionPath)) {
        if (ShownKeys.contains(Key))
            continue;
        const QString SubPath = Key.mid(PrefixSize).section(Separator, 0, -2);
        const bool Excluded = std::any_of(Mapping.ExcludedSubPaths.begin(), Mapping.ExcludedSubPaths.end(),
            [&SubPath](
                const QString& Path) { return SubPath == Path || SubPath.startsWith(Path + Separator); });
        if (Excluded)
            continue;
        auto* pEntry = new OrvLateBindAction(Key, pMenu);
        if (SubPath.isEmpty()) {
            QAction* pParent = pEntry->parentAction();
            pMenu->addAction(pParent && pParent->menu() ? pParent : pEntry);
            continue;
        }
        OrvMenuNode*& pGroup = Groups[SubPath];
        if (!pGroup) {
            pGroup = &Grouped;
            for (const QString& Title : SubPath.split(Separator))
                pGroup = pGroup->createSubMenu(Title);
        }
        pGroup->addAction(pEntry, QString(), QString());
    }
    pMenu->addSeparator();
    Grouped.fill(pMenu, QString());
}

void OrvMenuManager::addSeparator(
    const QString& Window, const QString& Menu, const QString& SubMenu, const QString& Section)
{
    createNode(pathOf(Window, Menu, SubMenu))->addSeparator(Section);
    Q_EMIT menuChanged(Window, Menu);
}

void OrvMenuManager::registerAction(const QString& Window, const QString& Menu, const QString& SubMenu,
    QAction* pAction, const QString& Section, const QString& Before)
{
    if (!pAction) {
        OrvDebug(File, __LINE__, QStringLiteral("pAction is NULL"), false, false);
        return;
    }
    createNode(pathOf(Window, Menu, SubMenu))->addAction(pAction, Section, Before);
    Q_EMIT actionAdded(Window, Menu, SubMenu, pAction);
    Q_EMIT menuChanged(Window, Menu);
}

void OrvMenuManager::unregisterAction(
    const QString& Window, const QString& Menu, const QString& SubMenu, QAction* pAction)
{
    OrvMenuNode* pNode = node(pathOf(Window, Menu, SubMenu));
    if (!pNode || !pNode->removeAction(pAction))
        return;
    Q_EMIT actionRemoved(Window, Menu, SubMenu, pAction);
    Q_EMIT menuChanged(Window, Menu);
}

QStringList OrvMenuManager::menus(const QString& Window) const
{
    const OrvMenuNode* pNode = node({Window});
    return pNode ? pNode->subMenuTitles() : QStringList();
}

void OrvMenuManager::setMenuEnabled(const QString& MenuPath, bool Enabled, const QString& Reason)
{
    if (OrvMenuNode* pNode = node(MenuPath.split(Separator, Qt::SkipEmptyParts)))
        pNode->setEnabled(Enabled, Reason);
}

bool OrvMenuManager::isMenuEnabled(const QString& MenuPath) const
{
    const OrvMenuNode* pNode = node(MenuPath.split(Separator, Qt::SkipEmptyParts));
    return pNode && pNode->isEnabled();
}

QList<QAction*> OrvMenuManager::menuActions(const QString& MenuPath) const
{
    const OrvMenuNode* pNode = node(MenuPath.split(Separator, Qt::SkipEmptyParts));
    return pNode ? pNode->actions() : QList<QAction*>();
}

void OrvMenuManager::popupSubMenu()
{
    const auto* pAction = qobject_cast<QAction*>(sender());
    if (!pAction) {
        OrvDebug(File, __LINE__, QStringLiteral("pAction is NULL"), false, false);
        return;
    }
    if (QMenu* pMenu = pAction->menu())
        pMenu->exec(QCursor::pos());
}

#include "moc_OrvMenuManager.cpp"
