#include "Orvi/OrvObjectsPalette.h"

#include "Orvi/OrvObjectCommands.h"

#include "OrvCore/Project/OrvGeoEntity.h"
#include "OrvCore/Project/OrvProject.h"
#include "OrvCore/Project/OrvProjectManager.h"
#include "OrvCoreModules/Window/OrvIcon.h"

#include <QtCore/QSignalBlocker>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QMenu>
#include <QtWidgets/QToolButton>

namespace {

constexpr int IdentityRole = Qt::UserRole;
constexpr int IconEdge = 16;

} // namespace

OrvObjectsPalette::OrvObjectsPalette(OrvObjectCommands* pCommands, QWidget* pParent)
    : OrvListPalette(tr("Objects"), IconEdge, pParent)
    , m_pCommands(pCommands)
    , m_pList(list())
    , m_pAdd(addButton(QStringLiteral("New.png"), tr("Add an object")))
    , m_pMakeCurrent(addButton(QStringLiteral("Check.png"), tr("Work on this object")))
    , m_pRemove(addButton(QStringLiteral("Clear.png"), tr("Remove")))
{
    m_pList->setContextMenuPolicy(Qt::CustomContextMenu);
    addKey({QKeySequence::Delete}, [this] { removeChosen(); });
    addKey({Qt::Key_Return, Qt::Key_Enter}, [this] { makeChosenCurrent(); });

    const OrvProjectManager& Projects = OrvProjectManager::instance();
    connect(&Projects, &OrvProjectManager::onMakeProjectCurrent, this, &OrvObjectsPalette::refill);
    connect(&Projects, &OrvProjectManager::objectMadeCurrent, this, &OrvObjectsPalette::followCurrent);
    connect(&Projects, &OrvProjectManager::geoEntityAdded, this, &OrvObjectsPalette::refill);
    connect(&Projects, &OrvProjectManager::geoEntityRemoved, this, &OrvObjectsPalette::refill);
    connect(&Projects, &OrvProjectManager::geoEntityNameChanged, this, &OrvObjectsPalette::refill);
    connect(m_pCommands, &OrvObjectCommands::renameRequested, this, &OrvObjectsPalette::editName);
    connect(m_pList, &QListWidget::itemDoubleClicked, this, &OrvObjectsPalette::makeChosenCurrent);
    connect(m_pList, &QListWidget::itemChanged, this, &OrvObjectsPalette::rename);
    connect(m_pList, &QListWidget::itemSelectionChanged, this, &OrvObjectsPalette::updateButtons);
    connect(m_pList, &QListWidget::customContextMenuRequested, this, &OrvObjectsPalette::showMenu);
    connect(m_pAdd, &QToolButton::clicked, m_pCommands, &OrvObjectCommands::addObject);
    connect(m_pMakeCurrent, &QToolButton::clicked, this, &OrvObjectsPalette::makeChosenCurrent);
    connect(m_pRemove, &QToolButton::clicked, this, &OrvObjectsPalette::removeChosen);
    refill();
}

OrvGeoEntity* OrvObjectsPalette::objectOf(const QListWidgetItem* pItem) const
{
    const OrvProject* pProject = OrvObjectCommands::project();
    if (!pItem || !pProject)
        return nullptr;
    for (OrvGeoEntity* pEntity : pProject->geoEntities()) {
        if (pEntity->uuidString() == pItem->data(IdentityRole).toString())
            return pEntity;
    }
    return nullptr;
}

OrvGeoEntity* OrvObjectsPalette::chosen() const
{
    return objectOf(m_pList->currentItem());
}

void OrvObjectsPalette::refill()
{
    const QListWidgetItem* pBefore = m_pList->currentItem();
    const QString Chosen = pBefore ? pBefore->data(IdentityRole).toString() : QString();
    const QSignalBlocker Blocker(m_pList);
    m_pList->clear();
    if (const OrvProject* pProject = OrvObjectCommands::project()) {
        for (const OrvGeoEntity* pEntity : pProject->geoEntities()) {
            const bool IsCurrent = pEntity == pProject->currentGeoEntity();
            auto* pItem = new QListWidgetItem(
                OrvIcon::createIconFromFilename(
                    IsCurrent ? QStringLiteral("Check.png") : QStringLiteral("Object.png")),
                pEntity->name(), m_pList);
            pItem->setData(IdentityRole, pEntity->uuidString());
            pItem->setFlags(pItem->flags() | Qt::ItemIsEditable);
            QFont Font = pItem->font();
            Font.setBold(IsCurrent);
            pItem->setFont(Font);
            pItem->setToolTip(OrvObjectCommands::surfaceText(pEntity));
            if (pEntity->uuidString() == Chosen || (IsCurrent && !m_pList->currentItem()))
                m_pList->setCurrentItem(pItem);
        }
    }
    updateButtons();
}

void OrvObjectsPalette::followCurrent()
{
    // Whichever row was chosen: without one, that of the current object is.
    m_pList->setCurrentItem(nullptr);
    refill();
}

void OrvObjectsPalette::rename(QListWidgetItem* pItem)
{
    // The list is filled anew, be it with the old name; the editor that this comes from must have closed.
    const QPointer<OrvGeoEntity> pEntity(objectOf(pItem));
    const QString Name = pItem->text().trimmed();
    if (!pEntity || pItem->text() == pEntity->name())
        return;
    QMetaObject::invokeMethod(
        this,
        [this, pEntity, Name] {
            if (pEntity)
                OrvObjectCommands::rename(pEntity, Name);
            refill();
        },
        Qt::QueuedConnection);
}

void OrvObjectsPalette::makeChosenCurrent()
{
    OrvObjectCommands::makeCurrent(chosen());
}

void OrvObjectsPalette::editName(OrvGeoEntity* pEntity)
{
    for (int Row = 0; Row < m_pList->count(); ++Row) {
        QListWidgetItem* pItem = m_pList->item(Row);
        if (objectOf(pItem) == pEntity) {
            m_pList->setCurrentItem(pItem);
            m_pList->editItem(pItem);
        }
    }
}

void OrvObjectsPalette::editChosen()
{
    if (OrvGeoEntity* pEntity = chosen())
        editName(pEntity);
}

void OrvObjectsPalette::removeChosen()
{
    OrvObjectCommands::remove(chosen());
}

void OrvObjectsPalette::showMenu(const QPoint& Position)
{
    QMenu Menu(this);
    if (m_pList->itemAt(Position)) {
        Menu.addAction(tr("Make Current"), this, &OrvObjectsPalette::makeChosenCurrent)
            ->setEnabled(m_pMakeCurrent->isEnabled());
        Menu.addAction(tr("Rename"), this, &OrvObjectsPalette::editChosen);
        Menu.addAction(tr("Remove…"), this, &OrvObjectsPalette::removeChosen)
            ->setEnabled(m_pRemove->isEnabled());
        Menu.addSeparator();
    }
    Menu.addAction(tr("Add Object…"), m_pCommands, &OrvObjectCommands::addObject)
        ->setEnabled(m_pAdd->isEnabled());
    Menu.exec(m_pList->viewport()->mapToGlobal(Position));
}

void OrvObjectsPalette::updateButtons()
{
    const OrvGeoEntity* pChosen = chosen();
    m_pAdd->setEnabled(OrvObjectCommands::project() != nullptr);
    m_pMakeCurrent->setEnabled(pChosen && pChosen != OrvObjectCommands::currentObject());
    m_pRemove->setEnabled(pChosen && m_pList->count() > 1);
}

#include "moc_OrvObjectsPalette.cpp"
