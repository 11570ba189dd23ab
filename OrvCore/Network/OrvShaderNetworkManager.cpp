#include "OrvCore/Network/OrvShaderNetworkManager.h"

#include "OrvCore/Network/OrvNodeEvaluation.h"
#include "OrvCore/Project/OrvGeoEntity.h"
#include "OrvCore/Project/OrvProject.h"
#include "OrvCore/Project/OrvProjectManager.h"
#include "OrvCore/Shaders/OrvShadingModel.h"
#include "OrvCore/Shaders/OrvSnShaderNode.h"
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
    // Menus are made before the image engine runs.
    return OrvOperationRegistry::menuPaths();
}

QString OrvShaderNetworkManager::nodeMenuPath(const QString& Key) const
{
    const OrvShadingModel* pModel = OrvShadingModel::find(Key);
    return pModel ? pModel->menuPath() : Key;
}

void OrvShaderNetworkManager::upgradeAllNodes()
{
    const OrvProject* pProject = OrvProjectManager::instance().currentProject();
    const OrvUndoManager::AutoMacro Macro(tr("Update Shaders"));
    for (const OrvGeoEntity* pEntity : pProject ? pProject->geoEntities() : QList<OrvGeoEntity*>()) {
        for (OrvSnBaseNode* pNode : pEntity->shaderNetwork()->nodes()) {
            auto* pShader = qobject_cast<OrvSnShaderNode*>(pNode);
            if (!pShader || !pShader->renew())
                continue;
            Q_EMIT nodeInputOrderChanged(pShader->network(), pShader);
            Q_EMIT nodeRefreshed(pShader);
        }
    }
    Q_EMIT upgradeCompleted();
}

#include "moc_OrvShaderNetworkManager.cpp"
