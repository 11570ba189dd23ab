#include "OrvCoreModules/Widgets/OrvNodeQuickFindDialog.h"

#include "OrvCoreModules/Widgets/OrvFilteredStringSelector.h"
#include "OrvCoreModules/Widgets/OrvMoveWidgetToCursor.h"

#include "OrvCore/Network/OrvShaderNetworkManager.h"

#include <QtWidgets/QLabel>
#include <QtWidgets/QVBoxLayout>

namespace {

QStringList pathsBelow(const QStringList& Groups)
{
    const OrvShaderNetworkManager& Manager = OrvShaderNetworkManager::instance();
    QStringList Paths;
    for (const QString& Key : Manager.layerPathKeys()) {
        const QString Path = Manager.nodeMenuPath(Key);
        const bool Below = std::any_of(
            Groups.begin(), Groups.end(), [&Path](const QString& Group) { return Path.startsWith(Group); });
        if (Below)
            Paths.append(Path);
    }
    return Paths;
}

} // namespace

OrvNodeQuickFindDialog::OrvNodeQuickFindDialog(const QPoint& Position, const QStringList& ProceduralGroups,
    const QStringList& AdjustmentGroups, const QStringList& LastUsed, const QStringList& Favourites,
    QWidget* pParent)
    : OrvDialog(pParent)
{
    setWindowTitle(tr("Quick Find"));
    m_pSelector = new OrvFilteredStringSelector(this);
    m_pSelector->setStarsShown(true);
    QLabel* pHint = new QLabel(tr("Return adds it, Ctrl+D marks a favourite"), this);
    pHint->setEnabled(false);
    QVBoxLayout* pLayout = new QVBoxLayout(this);
    pLayout->setContentsMargins(8, 8, 8, 6);
    pLayout->setSpacing(4);
    pLayout->addWidget(m_pSelector, 1);
    pLayout->addWidget(pHint);
    resize(400, 480);

    const QStringList Procedurals = pathsBelow(ProceduralGroups), Adjustments = pathsBelow(AdjustmentGroups);
    QStringList Known;
    for (const QString& Path : LastUsed) {
        if (Procedurals.contains(Path) || Adjustments.contains(Path))
            Known.append(Path);
    }
    const auto showSections = [=] {
        QStringList Starred;
        for (const QString& Path : m_pSelector->starred()) {
            if (Procedurals.contains(Path) || Adjustments.contains(Path))
                Starred.append(Path);
        }
        m_pSelector->setSections({{tr("Last Used"), Known}, {tr("Favourites"), Starred},
            {tr("Procedurals"), Procedurals}, {tr("Adjustments"), Adjustments}});
    };
    // Favourites of node types that are not there today are kept.
    m_pSelector->setStarred(Favourites);
    showSections();
    connect(m_pSelector, &OrvFilteredStringSelector::starToggled, this, showSections);
    connect(m_pSelector, &OrvFilteredStringSelector::chosen, this, &OrvNodeQuickFindDialog::choose);
    OrvMoveWidgetToPoint(this, pParent ? pParent->mapToGlobal(Position) : Position);
    m_pSelector->setFocus();
}

QStringList OrvNodeQuickFindDialog::favourites() const
{
    return m_pSelector->starred();
}

void OrvNodeQuickFindDialog::choose(const QString& Path)
{
    m_ChosenPath = Path;
    accept();
}

#include "moc_OrvNodeQuickFindDialog.cpp"
