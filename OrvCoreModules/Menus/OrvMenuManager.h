#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

#include <QtCore/QHash>
#include <QtCore/QObject>
#include <QtCore/QStringList>

#include <memory>

class OrvMenu;
class OrvMenuNode;
class QAction;
class QMenu;

/// What all menus hold, by window, menu and "/"-separated sub-menu: "MainWindow/&Layers/Layer Mask" is the
/// sub-menu "Layer Mask" of the menu "&Layers" of the window "MainWindow". Menus are made from it whenever
/// they are needed; it owns none of the actions. A tool bar that takes published actions is such a menu as
/// well: of the window "Layers" the menu "Panel". Mnemonic marks do not count in look-ups.
class ORVCOREMODULES_EXPORT OrvMenuManager : public QObject {
    Q_OBJECT

public:
    static OrvMenuManager& instance();

    void addMenuSet(const QString& Name);
    QStringList menuSets() const { return m_MenuSets; }
    void addRootMenu(const QString& Name, const QString& MenuSet);
    QStringList rootMenus(const QString& MenuSet) const { return m_RootMenus.value(MenuSet); }

    /// A new menu, owned by the caller; empty when nothing is registered. A section limits it to that
    /// section's entries.
    OrvMenu* makeMenu(const QString& Window, const QString& Menu, const QString& Section = QString());
    /// Fills a menu as makeMenu() would, after what it holds already.
    void fillMenu(
        QMenu* pMenu, const QString& Window, const QString& Menu, const QString& Section = QString());

    /// At the end of a menu.
    void addSeparator(const QString& Window, const QString& Menu, const QString& SubMenu,
        const QString& Section = QString());
    /// At the end of a menu, or before the entry of that text.
    void registerAction(const QString& Window, const QString& Menu, const QString& SubMenu, QAction* pAction,
        const QString& Section = QString(), const QString& Before = QString());
    void unregisterAction(
        const QString& Window, const QString& Menu, const QString& SubMenu, QAction* pAction);

    /// A menu that shows, after its own entries, those of a leading menu if there is one, and then what is
    /// not shown yet of the actions below a path of the action tree, grouped by sub-path.
    void mapActionTree(const QString& Window, const QString& Menu, const QString& ActionPath,
        const QStringList& ExcludedSubPaths = {}, const QString& LeadingMenuPath = QString());
    /// Moves a menu, made if there is none, to the end of the one that holds it: an order that does not
    /// depend on who fills it first. Empty menus are not shown.
    void placeMenu(const QString& MenuPath, const QString& IconFile = QString());

    /// Titles of a window's menus that hold anything, in the order of their registration.
    QStringList menus(const QString& Window) const;

    // By path; an unknown one is ignored. Why a menu is disabled is the tool tip of its entry.
    void setMenuEnabled(const QString& MenuPath, bool Enabled, const QString& Reason = QString());
    bool isMenuEnabled(const QString& MenuPath) const;
    QList<QAction*> menuActions(const QString& MenuPath) const;

public Q_SLOTS:
    /// Shows the menu of the sending action at the cursor and returns when it has closed.
    void popupSubMenu();

Q_SIGNALS:
    void actionAdded(QString RootMenu, QString SubMenu, QString DeeperSubMenu, QAction* pAction);
    /// The action is still alive.
    void actionRemoved(QString RootMenu, QString SubMenu, QString DeeperSubMenu, QAction* pAction);
    /// A window gained a menu, or a menu other entries.
    void menuChanged(QString Window, QString Menu);

private:
    struct ActionTreeMapping {
        QString Window;
        QString Menu;
        QString ActionPath;
        QStringList ExcludedSubPaths;
        QString LeadingMenuPath;
    };

    OrvMenuManager();
    ~OrvMenuManager() override;
    OrvMenuNode* node(const QStringList& Path) const;
    OrvMenuNode* createNode(const QStringList& Path);
    void fillFromActionTree(QMenu* pMenu, const ActionTreeMapping& Mapping) const;

    QStringList m_MenuSets;
    QHash<QString, QStringList> m_RootMenus;
    std::unique_ptr<OrvMenuNode> m_Root;
    QList<ActionTreeMapping> m_ActionTreeMappings;
};
