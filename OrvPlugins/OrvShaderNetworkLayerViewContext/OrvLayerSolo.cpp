#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerSolo.h"

#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerStack.h"
#include "OrvCore/Layers/OrvLayerStreamUtils.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Undo/OrvUndoManager.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewItemRowWidget.h"

#include <QtCore/QPair>
#include <QtCore/QVector>

#include <algorithm>

namespace {

using Row = OrvLayerViewItemRowWidget;
using Changes = QVector<QPair<OrvLayer*, bool>>; // the visibility to come

QString identity(const OrvLayer* pLayer)
{
    return pLayer->blendNode()->uuidString();
}

void add(Changes& Wanted, OrvLayer* pLayer, bool Visible)
{
    if (pLayer->isVisibleHere() != Visible && pLayer->isVisibilityChangeable())
        Wanted.append({pLayer, Visible});
}

/// On every level from the layer's own to the stack's top, what holds the layer is shown and the rest is not.
Changes toBeAlone(OrvLayer* pLayer, const OrvLayerStack* pLayerStack)
{
    Changes Wanted;
    const QList<OrvLayer*> TopLevel = pLayerStack->layerList();
    for (OrvLayer* pShown = pLayer; pShown;) {
        OrvLayer* pGroup = TopLevel.contains(pShown) ? nullptr : pShown->parentGroup();
        const OrvLayerStack* pInside = pGroup ? OrvLayerStreamUtils::groupStack(pGroup) : nullptr;
        for (OrvLayer* pOnLevel : pInside ? pInside->layerList() : TopLevel)
            add(Wanted, pOnLevel, pOnLevel == pShown);
        pShown = pGroup;
    }
    return Wanted;
}

Changes toShowAll(const OrvLayerStack* pLayerStack)
{
    Changes Wanted;
    for (OrvLayer* pLayer : pLayerStack->allLayers())
        add(Wanted, pLayer, true);
    return Wanted;
}

void apply(const Changes& Wanted, const QString& MacroText)
{
    OrvUndoManager::AutoMacro Macro(MacroText);
    for (const auto& Change : Wanted)
        Change.first->setVisibleHere(Change.second);
}

} // namespace

void OrvLayerSolo::toggle(OrvLayer* pLayer, const OrvLayerStack* pLayerStack)
{
    if (!pLayer || !pLayerStack)
        return;
    Memory& Kept = m_Memories[pLayerStack];
    Changes Back;
    bool InEffect = true;
    for (OrvLayer* pPresent : pLayerStack->allLayers()) {
        const auto Before = Kept.VisibleBefore.constFind(identity(pPresent));
        if (Before == Kept.VisibleBefore.cend())
            continue;
        InEffect = InEffect && pPresent->isVisibleHere() != *Before;
        add(Back, pPresent, *Before);
    }
    // Undo and the user's own clicks may have given everything back already, or made something else of it.
    if (!InEffect || Back.isEmpty())
        Kept = Memory();
    if (Kept.Alone != identity(pLayer)) {
        showAlone(pLayer, pLayerStack, Kept);
        return;
    }
    Kept = Memory();
    apply(Back, Row::tr("Show Layers as Before"));
}

void OrvLayerSolo::showAlone(OrvLayer* pLayer, const OrvLayerStack* pLayerStack, Memory& Kept)
{
    const Changes Wanted = toBeAlone(pLayer, pLayerStack);
    if (Wanted.isEmpty()) {
        Kept = Memory();
        apply(toShowAll(pLayerStack), Row::tr("Show All Layers"));
        return;
    }
    // From one layer to the next, what was before the first remains what is given back.
    Kept.Alone = identity(pLayer);
    for (const auto& Change : Wanted) {
        const QString Identity = identity(Change.first);
        const auto Before = Kept.VisibleBefore.find(Identity);
        if (Before == Kept.VisibleBefore.end())
            Kept.VisibleBefore.insert(Identity, !Change.second);
        else
            Kept.VisibleBefore.erase(Before);
    }
    apply(Wanted, Row::tr("Show Layer '%1' Alone").arg(pLayer->name()));
}
