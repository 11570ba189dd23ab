#include "OrvCore/Project/OrvProject.h"

#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Object/OrvSerializableObject.h"
#include "OrvCore/Project/OrvGeoEntity.h"
#include "OrvCore/Project/OrvProjectManager.h"

OrvProject::OrvProject(const QString& Name)
    : m_Name(Name)
    , m_CacheName(OrvSerializableObject::createUuidString())
{
}

OrvProject::~OrvProject()
{
    qDeleteAll(m_GeoEntities);
}

OrvGeoEntity* OrvProject::addGeoEntity(const QString& Name)
{
    m_GeoEntities.append(new OrvGeoEntity(Name, this));
    return m_GeoEntities.last();
}

void OrvProject::setCurrentGeoEntity(OrvGeoEntity* pEntity)
{
    if (m_pCurrent == pEntity)
        return;
    m_pCurrent = pEntity;
    OrvShaderNetworkManager::instance().setCurrentShaderNetwork(pEntity ? pEntity->shaderNetwork() : nullptr);
    Q_EMIT OrvProjectManager::instance().objectMadeCurrent(pEntity);
}

#include "moc_OrvProject.cpp"
