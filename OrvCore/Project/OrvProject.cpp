#include "OrvCore/Project/OrvProject.h"

#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Network/OrvShaderNetworkUtils.h"
#include "OrvCore/Object/OrvSerializableObject.h"
#include "OrvCore/Project/OrvCurrentState.h"
#include "OrvCore/Project/OrvGeoEntity.h"
#include "OrvCore/Project/OrvProjectManager.h"
#include "OrvCore/Undo/OrvUndoManager.h"

#include <QtWidgets/QUndoCommand>

/// An object comes or goes; while it is out, the command owns it.
class OrvEntityPopulationEdit : public QUndoCommand {
public:
    OrvEntityPopulationEdit(OrvProject* pProject, std::unique_ptr<OrvGeoEntity> pEntity)
        : QUndoCommand(OrvProject::tr("Add Object '%1'").arg(pEntity->name()))
        , m_pProject(pProject)
        , m_pEntity(pEntity.get())
        , m_pParked(std::move(pEntity))
        , m_Index(pProject->geoEntities().size())
        , m_Adds(true)
    {
    }
    OrvEntityPopulationEdit(OrvProject* pProject, OrvGeoEntity* pEntity)
        : m_pProject(pProject)
        , m_pEntity(pEntity)
        , m_Index(pProject->geoEntities().indexOf(pEntity))
        , m_Adds(false)
    {
    }
    void undo() override { m_Adds ? takeOut() : putIn(); }
    void redo() override { m_Adds ? putIn() : takeOut(); }

private:
    void putIn() { m_pProject->applyAddition(std::move(m_pParked), m_Index); }
    void takeOut() { m_pParked = m_pProject->applyRemoval(m_pEntity); }

    OrvProject* m_pProject;
    OrvGeoEntity* m_pEntity;
    std::unique_ptr<OrvGeoEntity> m_pParked;
    int m_Index;
    bool m_Adds;
};

/// Another object becomes current, as part of an edit.
class OrvCurrentEntityEdit : public QUndoCommand {
public:
    OrvCurrentEntityEdit(OrvProject* pProject, OrvGeoEntity* pEntity)
        : QUndoCommand(OrvProject::tr("Make Object Current"))
        , m_pProject(pProject)
        , m_pBefore(pProject->currentGeoEntity())
        , m_pAfter(pEntity)
    {
    }
    void undo() override { m_pProject->setCurrentGeoEntity(m_pBefore); }
    void redo() override { m_pProject->setCurrentGeoEntity(m_pAfter); }

private:
    OrvProject* m_pProject;
    OrvGeoEntity *m_pBefore, *m_pAfter;
};

/// Comes before the nodes of an object are removed, so that undo, with the nodes back, makes current what
/// was.
class OrvCurrentStateEdit : public QUndoCommand {
public:
    explicit OrvCurrentStateEdit(const OrvGeoEntity* pEntity)
        : m_pEntity(pEntity)
    {
    }
    void undo() override { m_State.apply(m_pEntity); }
    void redo() override { m_State = OrvCurrentState::of(m_pEntity); }

private:
    const OrvGeoEntity* m_pEntity;
    OrvCurrentState m_State;
};

OrvProject::OrvProject(const QString& Name)
    : m_Name(Name)
    , m_CacheName(OrvSerializableObject::createUuidString())
{
}

OrvProject::~OrvProject()
{
    qDeleteAll(m_GeoEntities);
}

OrvGeoEntity* OrvProject::geoEntity(const QString& Name) const
{
    for (OrvGeoEntity* pEntity : m_GeoEntities) {
        if (pEntity->name() == Name)
            return pEntity;
    }
    return nullptr;
}

QString OrvProject::uniqueGeoEntityName(const QString& Base) const
{
    QString Name = Base;
    for (int Number = 2; geoEntity(Name); ++Number)
        Name = Base + QLatin1Char(' ') + QString::number(Number);
    return Name;
}

OrvGeoEntity* OrvProject::neighborOf(const OrvGeoEntity* pEntity) const
{
    const int Index = m_GeoEntities.indexOf(const_cast<OrvGeoEntity*>(pEntity));
    return m_GeoEntities.value(Index + 1, m_GeoEntities.value(Index - 1));
}

OrvGeoEntity* OrvProject::addGeoEntity(std::unique_ptr<OrvGeoEntity> pEntity)
{
    OrvGeoEntity* pAdded = pEntity.get();
    OrvUndoManager::instance().perform(std::make_unique<OrvEntityPopulationEdit>(this, std::move(pEntity)));
    return pAdded;
}

OrvGeoEntity* OrvProject::addGeoEntity(const QString& Name)
{
    return addGeoEntity(std::make_unique<OrvGeoEntity>(Name));
}

bool OrvProject::removeGeoEntity(OrvGeoEntity* pEntity)
{
    if (!m_GeoEntities.contains(pEntity) || m_GeoEntities.size() == 1)
        return false;
    OrvUndoManager& Undo = OrvUndoManager::instance();
    const OrvUndoManager::AutoMacro Macro(tr("Remove Object '%1'").arg(pEntity->name()));
    if (m_pCurrent == pEntity)
        setCurrentGeoEntity(neighborOf(pEntity), true);
    Undo.perform(std::make_unique<OrvCurrentStateEdit>(pEntity));
    for (OrvSnBaseNode* pNode : OrvShaderNetworkUtils::readersFirst(pEntity->shaderNetwork()))
        pEntity->shaderNetwork()->removeNode(pNode);
    Undo.perform(std::make_unique<OrvEntityPopulationEdit>(this, pEntity));
    return true;
}

void OrvProject::applyAddition(std::unique_ptr<OrvGeoEntity> pEntity, int Index)
{
    OrvGeoEntity* pAdded = pEntity.release();
    pAdded->setParent(this);
    m_GeoEntities.insert(qBound(0, Index, m_GeoEntities.size()), pAdded);
    Q_EMIT OrvProjectManager::instance().geoEntityAdded(pAdded);
}

std::unique_ptr<OrvGeoEntity> OrvProject::applyRemoval(OrvGeoEntity* pEntity)
{
    // Somebody may have made an object current that a step of the history takes away.
    if (m_pCurrent == pEntity)
        setCurrentGeoEntity(neighborOf(pEntity));
    m_GeoEntities.removeOne(pEntity);
    pEntity->setParent(nullptr);
    Q_EMIT OrvProjectManager::instance().geoEntityRemoved(pEntity);
    return std::unique_ptr<OrvGeoEntity>(pEntity);
}

void OrvProject::setCurrentGeoEntity(OrvGeoEntity* pEntity, bool Undoable)
{
    if (m_pCurrent == pEntity)
        return;
    if (Undoable) {
        OrvUndoManager::instance().perform(std::make_unique<OrvCurrentEntityEdit>(this, pEntity));
        return;
    }
    m_pCurrent = pEntity;
    OrvShaderNetworkManager::instance().setCurrentShaderNetwork(pEntity ? pEntity->shaderNetwork() : nullptr);
    Q_EMIT OrvProjectManager::instance().objectMadeCurrent(pEntity);
}

#include "moc_OrvProject.cpp"
