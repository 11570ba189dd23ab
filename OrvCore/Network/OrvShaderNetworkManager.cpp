#include "OrvCore/Network/OrvShaderNetworkManager.h"

#include "OrvCore/Network/OrvNodeEvaluation.h"
#include "OrvCore/Undo/OrvUndoManager.h"

#include "OrvDdi/Engine/OrvOperationRegistry.h"

OrvShaderNetworkManager::OrvShaderNetworkManager()
{
    connect(&OrvUndoManager::instance(), &OrvUndoManager::editFinished, this, &OrvNodeEvaluation::update);
}

OrvShaderNetworkManager& OrvShaderNetworkManager::instance()
{
    static OrvShaderNetworkManager Manager;
    return Manager;
}

void OrvShaderNetworkManager::setCurrentShaderNetwork(OrvShaderNetwork* pNetwork)
{
    if (m_pCurrent == pNetwork)
        return;
    OrvShaderNetwork* pOld = m_pCurrent;
    m_pCurrent = pNetwork;
    Q_EMIT currentShaderNetworkChanged(pNetwork, pOld);
}

QStringList OrvShaderNetworkManager::layerPathKeys() const
{
    QStringList Keys;
    for (const OrvOperation& Operation : OrvOperationRegistry::instance().operations())
        Keys.append(Operation.MenuPath);
    return Keys;
}

void OrvShaderNetworkManager::upgradeAllNodes()
{
    Q_EMIT upgradeCompleted();
}

#include "moc_OrvShaderNetworkManager.cpp"
