#include "OrvCoreModules/Menus/OrvMenuNode.h"

#include "OrvCoreModules/Menus/OrvLateBindAction.h"
#include "OrvCoreModules/Menus/OrvMenu.h"

#include <algorithm>

namespace {

/// Titles and texts compare without their mnemonic marks.
QString plain(QString Text)
{
    return Text.remove(QLatin1Char('&'));
}

/// An entry whose action has a menu becomes a sub-menu; a stand-in could only trigger it.
QAction* shown(QAction* pAction)
{
    const auto* pLateBound = qobject_cast<OrvLateBindAction*>(pAction);
    const bool StandsForMenu = pLateBound && pLateBound->parentAction() && pLateBound->parentAction()->menu();
    return StandsForMenu ? pLateBound->parentAction() : pAction;
}

} // namespace

OrvMenuNode::OrvMenuNode(const QString& Title)
    : m_Title(Title)
{
}

OrvMenuNode::~OrvMenuNode() = default;

OrvMenuNode* OrvMenuNode::subMenu(const QString& Title) const
{
    for (const Entry& Candidate : m_Entries) {
        if (Candidate.pSubMenu && plain(Candidate.pSubMenu->title()) == plain(Title))
            return Candidate.pSubMenu.get();
    }
    return nullptr;
}

OrvMenuNode* OrvMenuNode::createSubMenu(const QString& Title)
{
    if (OrvMenuNode* pExisting = subMenu(Title))
        return pExisting;
    Entry New;
    New.pSubMenu = std::make_unique<OrvMenuNode>(Title);
    m_Entries.push_back(std::move(New));
    return m_Entries.back().pSubMenu.get();
}

OrvMenuNode* OrvMenuNode::placeSubMenu(const QString& Title)
{
    OrvMenuNode* pSubMenu = createSubMenu(Title);
    const auto Found = std::find_if(m_Entries.begin(), m_Entries.end(),
        [pSubMenu](const Entry& Candidate) { return Candidate.pSubMenu.get() == pSubMenu; });
    std::rotate(Found, Found + 1, m_Entries.end());
    return pSubMenu;
}

OrvMenuNode* OrvMenuNode::shownLevel()
{
    dropDeadEntries();
    const bool LeadsOn = m_Entries.size() == 1 && m_Entries.front().pSubMenu;
    return LeadsOn ? m_Entries.front().pSubMenu->shownLevel() : this;
}

QStringList OrvMenuNode::subMenuTitles() const
{
    QStringList Titles;
    for (const Entry& Candidate : m_Entries) {
        if (Candidate.pSubMenu && !Candidate.pSubMenu->isEmpty())
            Titles.append(Candidate.pSubMenu->title());
    }
    return Titles;
}

void OrvMenuNode::addAction(QAction* pAction, const QString& Section, const QString& Before)
{
    Entry New;
    New.pAction = pAction;
    New.Section = Section;
    const auto Place = Before.isEmpty()
        ? m_Entries.end()
        : std::find_if(m_Entries.begin(), m_Entries.end(), [&Before](const Entry& Candidate) {
              if (Candidate.pSubMenu)
                  return plain(Candidate.pSubMenu->title()) == plain(Before);
              return Candidate.pAction && plain(Candidate.pAction->text()) == plain(Before);
          });
    m_Entries.insert(Place, std::move(New));
}

bool OrvMenuNode::removeAction(const QAction* pAction)
{
    const auto Found = std::find_if(m_Entries.begin(), m_Entries.end(),
        [pAction](const Entry& Candidate) { return Candidate.pAction == pAction; });
    if (!pAction || Found == m_Entries.end())
        return false;
    m_Entries.erase(Found);
    return true;
}

void OrvMenuNode::addSeparator(const QString& Section)
{
    Entry New;
    New.isSeparator = true;
    New.Section = Section;
    m_Entries.push_back(std::move(New));
}

QList<QAction*> OrvMenuNode::actions() const
{
    QList<QAction*> Actions;
    for (const Entry& Candidate : m_Entries) {
        if (Candidate.pAction)
            Actions.append(Candidate.pAction);
    }
    return Actions;
}

void OrvMenuNode::fill(QMenu* pMenu, const QString& Section)
{
    dropDeadEntries();
    for (const Entry& Next : m_Entries) {
        if (!Section.isEmpty() && Next.Section != Section)
            continue;
        if (Next.isSeparator) {
            pMenu->addSeparator();
        } else if (Next.pSubMenu) {
            if (Next.pSubMenu->isEmpty())
                continue;
            auto* pSubMenu = new OrvMenu(Next.pSubMenu->title(), pMenu);
            pSubMenu->setIcon(Next.pSubMenu->m_Icon);
            Next.pSubMenu->shownLevel()->fill(pSubMenu, QString());
            Next.pSubMenu->follow(pSubMenu);
            pMenu->addMenu(pSubMenu);
        } else {
            pMenu->addAction(shown(Next.pAction));
        }
    }
}

void OrvMenuNode::dropDeadEntries()
{
    const auto IsDead = [](const Entry& Candidate) {
        return !Candidate.pAction && !Candidate.pSubMenu && !Candidate.isSeparator;
    };
    m_Entries.erase(std::remove_if(m_Entries.begin(), m_Entries.end(), IsDead), m_Entries.end());
}

void OrvMenuNode::follow(OrvMenu* pMenu)
{
    m_Followers.erase(
        std::remove(m_Followers.begin(), m_Followers.end(), QPointer<OrvMenu>()), m_Followers.end());
    if (!m_Followers.contains(pMenu))
        m_Followers.append(pMenu);
    showState(pMenu);
}

void OrvMenuNode::setEnabled(bool Enabled, const QString& Reason)
{
    m_Enabled = Enabled;
    m_Reason = Enabled ? QString() : Reason;
    for (const QPointer<OrvMenu>& pMenu : qAsConst(m_Followers)) {
        if (pMenu)
            showState(pMenu);
    }
}

void OrvMenuNode::showState(const OrvMenu* pMenu) const
{
    // The entry only: a disabled menu widget would lose its scroll and focus handling.
    pMenu->menuAction()->setEnabled(m_Enabled);
    pMenu->menuAction()->setToolTip(m_Reason);
}
