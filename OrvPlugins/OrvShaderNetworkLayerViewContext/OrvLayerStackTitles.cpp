#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerStackTitles.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Layers/OrvChainTargets.h"
#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Object/OrvDebug.h"
#include "OrvCore/Project/OrvGeoEntity.h"

namespace {

void report(int Line, const char* pMessage)
{
    OrvDebug("OrvLayerViewContextManager", Line, QString::fromLatin1(pMessage), false, false);
}

/// A mask or the adjustments bear the name of their layer.
QString kindSuffix(const OrvLayerStack* pLayerStack)
{
    if (pLayerStack->isAdjustmentStack())
        return QStringLiteral("/Adjustment Stack");
    return pLayerStack->isMaskStack() ? QStringLiteral("/Mask Stack") : QString();
}

} // namespace

QString OrvLayerStackTitles::title(const OrvLayerStack* pLayerStack)
{
    if (!pLayerStack) {
        report(__LINE__, "pLayerStack is NULL");
        return {};
    }
    const OrvShaderNetwork* pNetwork = pLayerStack->network();
    if (!pNetwork) {
        report(__LINE__, "Network is NULL");
        return {};
    }
    const OrvEntity* pEntity = pNetwork->geoEntity();
    if (!pEntity) {
        report(__LINE__, "Entity is NULL");
        return {};
    }
    return QStringLiteral("%1/%2").arg(pEntity->name(), pLayerStack->name()) + kindSuffix(pLayerStack);
}

QString OrvLayerStackTitles::path(const OrvLayerStack* pLayerStack)
{
    if (!pLayerStack || !pLayerStack->node())
        return {};
    if (const auto* pChannel = qobject_cast<const OrvShaderInput*>(pLayerStack))
        return pChannel->path();
    const QVector<OrvSnMergeNode*> Owners
        = OrvChainTargets::owners({pLayerStack->node(), pLayerStack->targetInputName()});
    const OrvLayer* pLayer
        = Owners.isEmpty() ? nullptr : OrvLayerManager::instance().getLayer(Owners.first());
    return pLayer ? pLayer->path(true) + kindSuffix(pLayerStack) : QString();
}
