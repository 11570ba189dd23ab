#include "OrvCore/Object/OrvObjectReferenceManager.h"

OrvObjectReferenceManager& OrvObjectReferenceManager::instance()
{
    // Never destroyed: static objects of plug-ins leave the table when their library is unloaded.
    static auto* pManager = new OrvObjectReferenceManager;
    return *pManager;
}

void OrvObjectReferenceManager::enter(const QString& Uuid, QObject* pObject)
{
    m_Objects.insert(Uuid, pObject);
}

void OrvObjectReferenceManager::leave(const QString& Uuid, const QObject* pObject)
{
    const auto Found = m_Objects.find(Uuid);
    if (Found != m_Objects.end() && Found.value() == pObject)
        m_Objects.erase(Found);
}
