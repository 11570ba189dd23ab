#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerDragRefusal.h"

#include "OrvCoreModules/Window/OrvStatusManager.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewUtils.h"

#include <utility>

namespace {

QString& shownReason()
{
    static QString Shown;
    return Shown;
}

} // namespace

void OrvLayerDragRefusal::show(const QString& Reason)
{
    if (std::exchange(shownReason(), Reason) != Reason)
        OrvStatusManager::instance().showMessage(Reason);
}

void OrvLayerDragRefusal::leave()
{
    // A drop that is not taken ends like this too: the reason stays to be read.
    const QString Reason = std::exchange(shownReason(), QString());
    if (!Reason.isEmpty())
        OrvLayerViewUtils::tell(Reason);
}
