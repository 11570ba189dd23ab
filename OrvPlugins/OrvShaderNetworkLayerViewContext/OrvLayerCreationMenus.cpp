#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerCreationMenus.h"

#include "OrvCore/Layers/OrvLayerUtils.h"
#include "OrvCore/Shelf/OrvMaterialPaintManager.h"
#include "OrvCoreModules/Menus/OrvMenu.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewUtils.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvNodeMenuBuilder.h"

#include <QtGui/QCursor>

namespace {

/// With the sub-menus, by path, that it got.
OrvMenu* makeMenu(
    OrvLayerView* pLayerView, const QStringList& Groups, const char* pSlot, QHash<QString, QMenu*>& SubMenus)
{
    auto* pMenu = new OrvMenu(pLayerView);
    pMenu->setAttribute(Qt::WA_DeleteOnClose);
    OrvNodeMenuBuilder(pMenu, SubMenus, pLayerView, pSlot).addNodeTypes(Groups);
    return pMenu;
}

} // namespace

void OrvLayerCreationMenus::popupAdjustments(OrvLayerView* pLayerView, const char* pSlot)
{
    QHash<QString, QMenu*> SubMenus;
    makeMenu(pLayerView, {QStringLiteral("Filter")}, pSlot, SubMenus)->popup(QCursor::pos());
}

void OrvLayerCreationMenus::popupProcedurals(OrvLayerView* pLayerView)
{
    const QPoint Position = QCursor::pos();
    OrvLayerViewUtils::report(__LINE__,
        QString::asprintf(
            "[ -- ] About to show procedural main menu at (%d, %d)", Position.x(), Position.y()));
    QHash<QString, QMenu*> SubMenus;
    OrvMenu* pMenu = makeMenu(pLayerView, OrvLayerUtils::getProceduralLayerGroups(),
        SLOT(addProceduralLayerFromAction()), SubMenus);
    pMenu->addSeparator();
    pLayerView->createCustomProceduralLayerMenu(
        pMenu, SubMenus, OrvMaterialPaintManager::instance().customProceduralsFromShelf());
    pMenu->popup(Position);
}

void OrvLayerCreationMenus::addCustomProcedurals(OrvLayerView* pLayerView, QMenu* pRoot,
    QHash<QString, QMenu*>& SubMenus, const QMap<QString, QPair<QString, QIcon>>& Procedurals)
{
    OrvNodeMenuBuilder Builder(pRoot, SubMenus, pLayerView, SLOT(addCustomProceduralLayerFromAction()));
    for (auto Entry = Procedurals.begin(); Entry != Procedurals.end(); ++Entry) {
        const QString& Name = Entry.value().first;
        QStringList MenuPath = Entry.key().split(QLatin1Char('/'), Qt::SkipEmptyParts);
        if (!MenuPath.isEmpty())
            MenuPath.removeLast();
        QAction* pAction = Builder.addAction(MenuPath, Name, Entry.value().second, Entry.key());
        pAction->setToolTip(OrvLayerView::tr("Add Custom Procedural Layer %1").arg(Name));
        pAction->setStatusTip(pAction->toolTip());
    }
}
