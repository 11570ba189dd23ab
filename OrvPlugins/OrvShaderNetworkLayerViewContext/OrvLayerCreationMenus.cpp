#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerCreationMenus.h"

#include "OrvCore/Layers/OrvLayerUtils.h"
#include "OrvCoreModules/Menus/OrvMenu.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewUtils.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvNodeMenuBuilder.h"

#include <QtGui/QCursor>

namespace {

void popupNodeTypes(
    OrvLayerView* pLayerView, const QStringList& Groups, const char* pSlot, const QPoint& Position)
{
    auto* pMenu = new OrvMenu(pLayerView);
    pMenu->setAttribute(Qt::WA_DeleteOnClose);
    QHash<QString, QMenu*> SubMenus;
    OrvNodeMenuBuilder(pMenu, SubMenus, pLayerView, pSlot).addNodeTypes(Groups);
    pMenu->popup(Position);
}

} // namespace

void OrvLayerCreationMenus::popupAdjustments(OrvLayerView* pLayerView, const char* pSlot)
{
    popupNodeTypes(pLayerView, {QStringLiteral("Filter")}, pSlot, QCursor::pos());
}

void OrvLayerCreationMenus::popupProcedurals(OrvLayerView* pLayerView)
{
    const QPoint Position = QCursor::pos();
    OrvLayerViewUtils::report(__LINE__,
        QString::asprintf(
            "[ -- ] About to show procedural main menu at (%d, %d)", Position.x(), Position.y()));
    popupNodeTypes(pLayerView, OrvLayerUtils::getProceduralLayerGroups(),
        SLOT(addProceduralLayerFromAction()), Position);
}
