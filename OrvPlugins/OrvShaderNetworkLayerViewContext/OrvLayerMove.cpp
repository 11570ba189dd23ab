#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerMove.h"

#include "OrvCore/Layers/OrvEditObstacle.h"
#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerStack.h"
#include "OrvCore/Layers/OrvLayerStreamUtils.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Undo/OrvUndoManager.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerEditScope.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewUtils.h"

#include <algorithm>

OrvLayerMove::OrvLayerMove(OrvLayer* pLayer, OrvLayerStack* pLayerStack)
    : m_pLayerStack(pLayerStack)
{
    if (pLayer && pLayerStack)
        m_Layers = pLayerStack->outermost(OrvLayerEditScope::of(pLayer, pLayerStack));
}

QVector<OrvLayerMove::Level> OrvLayerMove::levels() const
{
    QVector<Level> Levels;
    if (m_Layers.isEmpty())
        return Levels;
    const QList<OrvLayer*> TopLevel = m_pLayerStack->layerList();
    for (OrvLayer* pLayer : m_Layers) {
        OrvLayer* pGroup = TopLevel.contains(pLayer) ? nullptr : pLayer->parentGroup();
        if (std::any_of(Levels.cbegin(), Levels.cend(),
                [pGroup](const Level& Known) { return Known.pGroup == pGroup; }))
            continue;
        const OrvLayerStack* pInside = pGroup ? OrvLayerStreamUtils::groupStack(pGroup) : nullptr;
        Levels.append({pGroup, pInside ? pInside->layerList() : TopLevel});
    }
    return Levels;
}

QList<OrvLayer*> OrvLayerMove::moving(const Level& On) const
{
    QList<OrvLayer*> Moving;
    for (OrvLayer* pLayer : On.Layers) {
        if (m_Layers.contains(pLayer))
            Moving.append(pLayer);
    }
    return Moving;
}

bool OrvLayerMove::placeAbove(const QList<OrvLayer*>& Layers, OrvSnBaseNode* pTarget, OrvLayer* pGroup) const
{
    OrvLayerStack* pInside = pGroup ? OrvLayerStreamUtils::groupStack(pGroup) : nullptr;
    return OrvLayerStreamUtils::insertLayersAfter(Layers, pTarget, pInside ? pInside : m_pLayerStack);
}

bool OrvLayerMove::inUndoStep(const QString& Text, const std::function<bool()>& Work) const
{
    bool Done = false;
    {
        OrvUndoManager::AutoMacro Macro(Text);
        Done = Work();
        if (!Done)
            Macro.cancel();
    }
    if (!Done) {
        QStringList Obstacles;
        for (const OrvLayer* pLayer : m_Layers)
            Obstacles.append(OrvEditObstacle::of(pLayer));
        const QString Obstacle = OrvEditObstacle::several(Obstacles);
        OrvLayerViewUtils::tell(Obstacle.isEmpty()
                ? OrvLayerView::tr("Nothing was moved: the layers cannot stand there")
                : OrvLayerView::tr("Nothing was moved: %1").arg(Obstacle));
    }
    return Done;
}

void OrvLayerMove::up()
{
    inUndoStep(OrvLayerView::tr("Move Layers Up"), [this] {
        for (Level On : levels()) {
            for (int Row = 1; Row < On.Layers.size(); ++Row) {
                OrvLayer* pAbove = On.Layers[Row - 1];
                if (!m_Layers.contains(On.Layers[Row]) || m_Layers.contains(pAbove))
                    continue;
                if (!placeAbove({On.Layers[Row]}, pAbove->blendNode(), On.pGroup))
                    return false;
                On.Layers.swapItemsAt(Row - 1, Row);
            }
        }
        return true;
    });
}

void OrvLayerMove::down()
{
    inUndoStep(OrvLayerView::tr("Move Layers Down"), [this] {
        for (Level On : levels()) {
            for (int Row = On.Layers.size() - 2; Row >= 0; --Row) {
                OrvLayer* pBelow = On.Layers[Row + 1];
                if (!m_Layers.contains(On.Layers[Row]) || m_Layers.contains(pBelow))
                    continue;
                OrvSnBaseNode* pTarget = OrvLayerStreamUtils::layerNodeBelow(pBelow, m_pLayerStack);
                if (!placeAbove({On.Layers[Row]}, pTarget, On.pGroup))
                    return false;
                On.Layers.swapItemsAt(Row, Row + 1);
            }
        }
        return true;
    });
}

OrvLayer* OrvLayerMove::intoGroup()
{
    const QVector<Level> Levels = levels();
    // Layers of several levels have no neighbour in common.
    if (Levels.size() != 1)
        return nullptr;
    const QList<OrvLayer*>& OnLevel = Levels.first().Layers;
    const QList<OrvLayer*> Moving = moving(Levels.first());
    const auto group = [&](int Row) {
        OrvLayer* pLayer = OnLevel.value(Row);
        return OrvLayerStreamUtils::isLayerGroup(pLayer, m_pLayerStack) ? pLayer : nullptr;
    };
    OrvLayer* pBelow = group(OnLevel.indexOf(Moving.last()) + 1);
    OrvLayer* pGroup = pBelow ? pBelow : group(OnLevel.indexOf(Moving.first()) - 1);
    const OrvLayerStack* pInside = pGroup ? OrvLayerStreamUtils::groupStack(pGroup) : nullptr;
    if (!pInside)
        return nullptr;
    OrvSnBaseNode* pTarget = pBelow ? pInside->topNode() : pInside->bottomNode();
    const bool Done = inUndoStep(OrvLayerView::tr("Move Layers into Group '%1'").arg(pGroup->name()),
        [&] { return placeAbove(Moving, pTarget, pGroup); });
    return Done ? pGroup : nullptr;
}

void OrvLayerMove::outOfGroup()
{
    inUndoStep(OrvLayerView::tr("Move Layers out of Group"), [this] {
        for (const Level& On : levels()) {
            if (On.pGroup && !placeAbove(moving(On), On.pGroup->blendNode(), nullptr))
                return false;
        }
        return true;
    });
}
