#pragma once

#include <QtCore/QPointer>
#include <QtCore/QStringList>
#include <QtGui/QIcon>

#include <memory>
#include <vector>

class OrvMenu;
class QAction;
class QMenu;

/// One menu in the menu manager's tree: its entries in order, and whether it is enabled. Menus made from it
/// follow that state for as long as they live; their entries are those of the moment they were filled.
class OrvMenuNode {
public:
    struct Entry {
        QPointer<QAction> pAction;
        std::unique_ptr<OrvMenuNode> pSubMenu;
        QString Section;
        bool isSeparator = false;
    };

    explicit OrvMenuNode(const QString& Title);
    ~OrvMenuNode();

    const QString& title() const { return m_Title; }
    bool isEmpty() const { return m_Entries.empty(); }
    OrvMenuNode* subMenu(const QString& Title) const;
    OrvMenuNode* createSubMenu(const QString& Title);
    /// Puts the sub-menu, made if there is none, behind all entries.
    OrvMenuNode* placeSubMenu(const QString& Title);
    void setIcon(const QIcon& Icon) { m_Icon = Icon; }
    /// Of the sub-menus that hold anything.
    QStringList subMenuTitles() const;

    void addAction(QAction* pAction, const QString& Section, const QString& Before);
    bool removeAction(const QAction* pAction);
    void addSeparator(const QString& Section);
    QList<QAction*> actions() const;

    void fill(QMenu* pMenu, const QString& Section);
    /// The menu is enabled with this node from now on.
    void follow(OrvMenu* pMenu);
    /// The reason is the tool tip of the disabled menu.
    void setEnabled(bool Enabled, const QString& Reason);
    bool isEnabled() const { return m_Enabled; }

private:
    void dropDeadEntries();
    void showState(const OrvMenu* pMenu) const;
    /// Itself, or what a level with nothing but one sub-menu leads to.
    OrvMenuNode* shownLevel();

    QString m_Title;
    QIcon m_Icon;
    std::vector<Entry> m_Entries;
    QList<QPointer<OrvMenu>> m_Followers;
    bool m_Enabled = true;
    QString m_Reason; ///< why it is not
};
