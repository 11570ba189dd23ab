#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerSolo.h"

#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerStack.h"
#include "OrvCore/Layers/OrvLayerStreamUtils.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Undo/OrvUndoManager.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewItemRowWidget.h"

#include <QtCore/QVector>

#include <algorithm>

namespace {

using Row = OrvLayerViewItemRowWidget;
struct Change {
    OrvLayer* pLayer;
    bool Visible; ///< from now on
};
using Changes = QVector<Change>;

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
    for (const Change& Wish : Wanted)
        Wish.pLayer->setVisibleHere(Wish.Visible);
}

} // namespace

bool OrvLayerSolo::isInEffect(const Memory& Kept, const OrvLayerStack* pLayerStack)
{
    bool AnyPresent = false;
    for (const OrvLayer* pLayer : pLayerStack->allLayers()) {
        const auto Before = Kept.VisibleBefore.constFind(identity(pLayer));
        if (Before == Kept.VisibleBefore.cend())
            continue;
        if (pLayer->isVisibleHere() == *Before)
            return false;
        AnyPresent = true;
    }
    return AnyPresent;
}

void OrvLayerSolo::toggle(OrvLayer* pLayer, const OrvLayerStack* pLayerStack)
{
    if (!pLayer || !pLayerStack)
        return;
    // Undo, redo and the user's own clicks decide which memory the layers agree with now, if with any.
    const QVector<Memory>& Memories = m_Memories[pLayerStack];
    const auto Latest = std::find_if(Memories.crbegin(), Memories.crend(),
        [pLayerStack](const Memory& Kept) { return isInEffect(Kept, pLayerStack); });
    const Memory Present = Latest == Memories.crend() ? Memory() : *Latest;
    const Changes Wanted = toBeAlone(pLayer, pLayerStack);
    if (Present.Alone == identity(pLayer) || (Wanted.isEmpty() && !Present.Alone.isEmpty()))
        giveBack(Present, pLayerStack);
    else if (Wanted.isEmpty())
        apply(toShowAll(pLayerStack), Row::tr("Show All Layers"));
    else
        showAlone(pLayer, pLayerStack, Present);
}

void OrvLayerSolo::giveBack(const Memory& Kept, const OrvLayerStack* pLayerStack)
{
    Changes Wanted;
    for (OrvLayer* pLayer : pLayerStack->allLayers()) {
        const auto Before = Kept.VisibleBefore.constFind(identity(pLayer));
        if (Before != Kept.VisibleBefore.cend())
            add(Wanted, pLayer, *Before);
    }
    apply(Wanted, Row::tr("Show Layers as Before"));
}

void OrvLayerSolo::showAlone(OrvLayer* pLayer, const OrvLayerStack* pLayerStack, const Memory& Present)
{
    constexpr int LongestHistory = 32;
    // From one layer to the next, what was before the first remains what is given back.
    Memory Kept{identity(pLayer), Present.VisibleBefore};
    const Changes Wanted = toBeAlone(pLayer, pLayerStack);
    for (const Change& Wish : Wanted) {
        const QString Identity = identity(Wish.pLayer);
        if (!Kept.VisibleBefore.remove(Identity))
            Kept.VisibleBefore.insert(Identity, !Wish.Visible);
    }
    QVector<Memory>& Memories = m_Memories[pLayerStack];
    Memories.append(Kept);
    if (Memories.size() > LongestHistory)
        Memories.removeFirst();
    apply(Wanted, Row::tr("Show Layer '%1' Alone").arg(pLayer->name()));
}
