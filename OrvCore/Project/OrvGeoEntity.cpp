#include "OrvCore/Project/OrvGeoEntity.h"

#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Project/OrvProjectManager.h"
#include "OrvCore/Undo/OrvUndoManager.h"

#include <QtCore/QPointer>
#include <QtWidgets/QUndoCommand>

/// An object gets another name.
class OrvEntityNameEdit : public QUndoCommand {
public:
    OrvEntityNameEdit(OrvGeoEntity* pEntity, const QString& Name)
        : QUndoCommand(OrvGeoEntity::tr("Rename Object '%1' to '%2'").arg(pEntity->name(), Name))
        , m_pEntity(pEntity)
        , m_Before(pEntity->name())
        , m_After(Name)
    {
    }
    void undo() override { m_pEntity->applyName(m_Before); }
    void redo() override { m_pEntity->applyName(m_After); }

private:
    OrvGeoEntity* m_pEntity;
    QString m_Before, m_After;
};

/// Kept selections come, go and get other names.
class OrvSelectionGroupsEdit : public QUndoCommand {
public:
    OrvSelectionGroupsEdit(
        OrvGeoEntity* pEntity, const OrvGeoEntity::SelectionGroups& Groups, const QString& Text)
        : QUndoCommand(Text)
        , m_pEntity(pEntity)
        , m_Before(pEntity->selectionGroups())
        , m_After(Groups)
    {
    }
    void undo() override { m_pEntity->applySelectionGroups(m_Before); }
    void redo() override { m_pEntity->applySelectionGroups(m_After); }

private:
    OrvGeoEntity* m_pEntity;
    OrvGeoEntity::SelectionGroups m_Before, m_After;
};

OrvGeoEntity::OrvGeoEntity(const QString& Name, QObject* pParent)
    : OrvEntity(Name, pParent)
    , m_pNetwork(new OrvShaderNetwork(this, this))
{
}

OrvGeoEntity::~OrvGeoEntity()
{
    delete m_pNetwork;
}

void OrvGeoEntity::setName(const QString& Name)
{
    if (!Name.isEmpty() && Name != m_Name)
        OrvUndoManager::instance().perform(std::make_unique<OrvEntityNameEdit>(this, Name));
}

void OrvGeoEntity::applyName(const QString& Name)
{
    m_Name = Name;
    Q_EMIT OrvProjectManager::instance().geoEntityNameChanged(this, Name);
}

void OrvGeoEntity::setSelectionGroups(const SelectionGroups& Groups, const QString& UndoText)
{
    if (Groups != m_SelectionGroups) {
        OrvUndoManager::instance().perform(
            std::make_unique<OrvSelectionGroupsEdit>(this, Groups, UndoText));
    }
}

void OrvGeoEntity::applySelectionGroups(const SelectionGroups& Groups)
{
    m_SelectionGroups = Groups;
    Q_EMIT OrvProjectManager::instance().selectionGroupsChanged(this);
}

#include "moc_OrvGeoEntity.cpp"
