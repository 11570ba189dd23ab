#include "OrvCoreModules/Menus/OrvActionCreator.h"

#include "OrvCore/Object/OrvDebug.h"
#include "OrvCoreModules/Menus/OrvAction.h"
#include "OrvCoreModules/Menus/OrvActionTreeManager.h"
#include "OrvCoreModules/Menus/OrvLateBindAction.h"
#include "OrvCoreModules/Menus/OrvMenuManager.h"
#include "OrvCoreModules/Window/OrvIcon.h"

#include <QtCore/QMetaMethod>

namespace {

const char File[] = "OrvActionCreator";
const QLatin1Char Separator('/');

/// The place of a menu as the menu manager takes it.
struct MenuPlace {
    explicit MenuPlace(const QString& MenuPath)
        : Window(MenuPath.section(Separator, 0, 0))
        , Menu(MenuPath.section(Separator, 1, 1))
        , SubMenu(MenuPath.section(Separator, 2))
    {
    }

    QString Window;
    QString Menu;
    QString SubMenu;
};

void addToMenu(const QString& MenuPath, QAction* pAction)
{
    if (MenuPath.isEmpty())
        return;
    const MenuPlace Place(MenuPath);
    OrvMenuManager::instance().registerAction(Place.Window, Place.Menu, Place.SubMenu, pAction);
}

/// A slot that takes the action gets OrvAction's own signal, any other one what it can take of QAction's.
const char* signalFor(const char* pSlot)
{
    const QByteArray Signature = QMetaObject::normalizedSignature(pSlot);
    if (Signature.endsWith("(QAction*)"))
        return SIGNAL(triggered(QAction*));
    return Signature.endsWith("(bool)") ? SIGNAL(triggered(bool)) : SIGNAL(triggered());
}

} // namespace

OrvActionCreator::OrvActionCreator(
    const QString& ActionPath, QObject* pParent, const QString& MenuPath, const QString& ActionSetName)
    : m_ActionPath(ActionPath)
    , m_pParent(pParent)
    , m_MenuPath(MenuPath)
    , m_ActionSetName(ActionSetName)
{
}

OrvAction* OrvActionCreator::create(const QString& Text, const QString& IconFile, const char* pSlot,
    const QVariant& Data, const QString& ToolTip)
{
    OrvAction* pAction = createRegistered(m_ActionPath, Text, IconFile, pSlot, Data, ToolTip);
    if (pAction)
        addToMenu(m_MenuPath, new OrvLateBindAction(m_ActionPath + Separator + Text, m_pParent));
    return pAction;
}

OrvAction* OrvActionCreator::createAndAddToMenu(const QString& Text, const QString& IconFile,
    const char* pSlot, const QVariant& Data, const QString& ToolTip)
{
    OrvAction* pAction = createRegistered(m_ActionPath, Text, IconFile, pSlot, Data, ToolTip);
    if (pAction)
        addToMenu(m_MenuPath, pAction);
    return pAction;
}

OrvAction* OrvActionCreator::createAndAddToMenuWithHierarchy(const QString& NodePath, const QString& IconFile,
    const char* pSlot, const QVariant& Data, const QString& ToolTip)
{
    const QString Text = NodePath.section(Separator, -1);
    const QString Place = NodePath.section(Separator, 0, -2);
    const QString SubPath = Place.isEmpty() ? QString() : Separator + Place;
    OrvAction* pAction = createRegistered(m_ActionPath + SubPath, Text, IconFile, pSlot, Data, ToolTip);
    if (pAction && !m_MenuPath.isEmpty())
        addToMenu(m_MenuPath + SubPath, pAction);
    return pAction;
}

void OrvActionCreator::addMenuSeparator()
{
    const MenuPlace Place(m_MenuPath);
    OrvMenuManager::instance().addSeparator(Place.Window, Place.Menu, Place.SubMenu);
}

OrvAction* OrvActionCreator::createRegistered(const QString& ActionPath, const QString& Text,
    const QString& IconFile, const char* pSlot, const QVariant& Data, const QString& ToolTip) const
{
    OrvActionTreeManager& ActionTree = OrvActionTreeManager::instance();
    if (!m_pParent) {
        OrvDebug(File, __LINE__, QStringLiteral("pParent is NULL"), false, false);
        return nullptr;
    }
    if (ActionTree.hasAction(ActionPath + Separator + Text)) {
        OrvDebug(File, __LINE__,
            QStringLiteral("[ !! ] Action '%1/%2' is registered already").arg(ActionPath, Text), false,
            false);
        return nullptr;
    }
    auto* pAction = new OrvAction(Text, m_pParent);
    if (!IconFile.isEmpty())
        pAction->setIcon(OrvIcon::createIconFromFilename(IconFile));
    if (!ToolTip.isEmpty())
        pAction->setToolTip(ToolTip);
    pAction->setData(Data);
    QObject::connect(pAction, signalFor(pSlot), m_pParent, pSlot);
    if (!m_ActionSetName.isEmpty())
        ActionTree.addToActionSet(m_ActionSetName, pAction);
    ActionTree.registerAction(ActionPath, pAction);
    return pAction;
}
