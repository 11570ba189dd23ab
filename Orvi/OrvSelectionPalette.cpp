#include "Orvi/OrvSelectionPalette.h"

#include "Orvi/OrvSelectionCommands.h"
#include "Orvi/OrvSelectionGroups.h"

#include "OrvCore/Project/OrvProjectManager.h"

#include <QtCore/QSignalBlocker>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QToolButton>

namespace {

constexpr int NameRole = Qt::UserRole; ///< as the object knows it, while the text is being edited
constexpr int IconEdge = 24;

} // namespace

OrvSelectionPalette::OrvSelectionPalette(OrvSelectionCommands* pCommands, QWidget* pParent)
    : OrvListPalette(tr("Selections"), IconEdge, pParent)
    , m_pCommands(pCommands)
    , m_pList(list())
    , m_pSave(addButton(QStringLiteral("New.png"), tr("Save the selection under a name")))
    , m_pLoad(addButton(QStringLiteral("SelectionGroups.png"),
          tr("Select this (Shift adds, Alt subtracts, both intersect)")))
    , m_pRemove(addButton(QStringLiteral("Clear.png"), tr("Delete")))
{
    m_pList->setSelectionMode(QAbstractItemView::ExtendedSelection);
    addKey({QKeySequence::Delete}, [this] { removeSelected(); });

    const OrvProjectManager& Projects = OrvProjectManager::instance();
    connect(&Projects, &OrvProjectManager::objectMadeCurrent, this, &OrvSelectionPalette::refill);
    connect(&Projects, &OrvProjectManager::selectionGroupsChanged, this, &OrvSelectionPalette::refill);
    connect(m_pList, &QListWidget::itemDoubleClicked, this, &OrvSelectionPalette::loadCurrent);
    connect(m_pList, &QListWidget::itemChanged, this, &OrvSelectionPalette::rename);
    connect(m_pList, &QListWidget::itemSelectionChanged, this, &OrvSelectionPalette::updateButtons);
    connect(m_pSave, &QToolButton::clicked, m_pCommands, &OrvSelectionCommands::saveSelectionAs);
    connect(m_pLoad, &QToolButton::clicked, this, &OrvSelectionPalette::loadCurrent);
    connect(m_pRemove, &QToolButton::clicked, this, &OrvSelectionPalette::removeSelected);
    refill();
}

void OrvSelectionPalette::refill()
{
    const QListWidgetItem* pCurrent = m_pList->currentItem();
    const QString Current = pCurrent ? pCurrent->data(NameRole).toString() : QString();
    const QSignalBlocker Blocker(m_pList);
    m_pList->clear();
    for (const QString& Name : OrvSelectionGroups::names()) {
        auto* pItem = new QListWidgetItem(OrvSelectionGroups::icon(Name), Name, m_pList);
        pItem->setData(NameRole, Name);
        pItem->setFlags(pItem->flags() | Qt::ItemIsEditable);
        if (Name == Current)
            m_pList->setCurrentItem(pItem);
    }
    updateButtons();
}

void OrvSelectionPalette::rename(QListWidgetItem* pItem)
{
    const QString Name = pItem->data(NameRole).toString(), NewName = pItem->text().trimmed();
    if (Name == NewName && pItem->text() == NewName)
        return;
    // The list is filled anew, be it with the old name; the editor that this comes from must have closed.
    QMetaObject::invokeMethod(
        this,
        [this, Name, NewName] {
            if (!OrvSelectionGroups::rename(Name, NewName))
                refill();
        },
        Qt::QueuedConnection);
}

void OrvSelectionPalette::loadCurrent()
{
    if (const QListWidgetItem* pItem = m_pList->currentItem())
        m_pCommands->load(pItem->data(NameRole).toString());
}

void OrvSelectionPalette::removeSelected()
{
    QStringList Names;
    for (const QListWidgetItem* pItem : m_pList->selectedItems())
        Names.append(pItem->data(NameRole).toString());
    if (!Names.isEmpty())
        OrvSelectionGroups::remove(Names);
}

void OrvSelectionPalette::updateButtons()
{
    const bool Any = !m_pList->selectedItems().isEmpty();
    m_pLoad->setEnabled(Any);
    m_pRemove->setEnabled(Any);
}

#include "moc_OrvSelectionPalette.cpp"
