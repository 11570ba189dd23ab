#include "OrvCore/Layers/OrvChainTargets.h"

#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Network/OrvSnGraphOutputNode.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Network/OrvSnMultiChannelMergeNode.h"

#include <QtCore/QHash>
#include <QtCore/QSet>

namespace {

struct Memory {
    quint64 Revision = 0;
    QHash<const OrvSnBaseNode*, OrvChainTargets::Entry> Entries;
    QHash<const OrvSnBaseNode*, OrvChainTargets::Entry> Fixed; ///< survive structural changes

    const OrvChainTargets::Entry* find(const OrvSnBaseNode* pNode) const
    {
        const auto AlwaysKnown = Fixed.constFind(pNode);
        if (AlwaysKnown != Fixed.constEnd())
            return &*AlwaysKnown;
        const auto Known = Entries.constFind(pNode);
        return Known != Entries.constEnd() ? &*Known : nullptr;
    }
};

Memory& memory()
{
    static Memory Remembered;
    return Remembered;
}

/// The node through which what comes in at a consumer's input goes on; null where it ends.
const OrvSnBaseNode* continuation(const OrvSnBaseNode::Consumer& Reader)
{
    const OrvSnBaseNode* pNode = Reader.pNode;
    if (pNode->hasTag(OrvSnNames::AdjustmentStackBottomTag))
        return pNode; // who owns the stack is found there
    if (OrvChainTargets::isTarget(pNode, Reader.InputName) || pNode->hasTag(OrvSnNames::ShaderTag))
        return nullptr;
    if (qobject_cast<const OrvSnGraphOutputNode*>(pNode))
        return pNode->network() ? pNode->network()->container() : nullptr;
    return pNode;
}

} // namespace

OrvChainTargets::FixedPlaces::FixedPlaces(const QVector<OrvSnBaseNode*>& Nodes)
{
    QHash<const OrvSnBaseNode*, Entry> Places;
    for (const OrvSnBaseNode* pNode : Nodes) {
        Places.insert(pNode, of(pNode));
        for (const OrvSnBaseNode* pContainer : containers(pNode))
            Places.insert(pContainer, of(pContainer));
    }
    memory().Fixed = Places;
}

OrvChainTargets::FixedPlaces::~FixedPlaces()
{
    memory().Fixed.clear();
    invalidate();
}

bool OrvChainTargets::isTarget(const OrvSnBaseNode* pNode, const QString& InputName)
{
    if (qobject_cast<const OrvSnMergeNode*>(pNode))
        return InputName == OrvSnNames::Over || InputName == OrvSnNames::Mask;
    if (qobject_cast<const OrvSnMultiChannelMergeNode*>(pNode))
        return InputName == OrvSnNames::Mask;
    return InputName == OrvSnNames::Input
        && (pNode->hasTag(OrvSnNames::ShaderInputTag) || pNode->hasTag(OrvSnNames::AdjustmentStackBottomTag));
}

bool OrvChainTargets::continuesChain(const OrvSnBaseNode* pNode, const QString& InputName)
{
    return qobject_cast<const OrvSnMergeNode*>(pNode) ? InputName == OrvSnNames::Base
                                                      : pNode->hasTag(OrvSnNames::AdjustmentStackTopTag);
}

OrvChainTargets::Entry OrvChainTargets::compute(const OrvSnBaseNode* pNode)
{
    Entry Result;
    const auto add = [&Result](const Target& One) {
        if (!Result.Targets.contains(One))
            Result.Targets.append(One);
    };
    for (const OrvSnBaseNode::Consumer& Reader : pNode->consumers()) {
        if (isTarget(Reader.pNode, Reader.InputName)) {
            add({Reader.pNode, Reader.InputName});
            continue;
        }
        const OrvSnBaseNode* pNext = continuation(Reader);
        const Entry* pAbove = pNext ? memory().find(pNext) : nullptr;
        if (!pAbove)
            continue;
        if (continuesChain(Reader.pNode, Reader.InputName)) {
            Result.FrozenAbove |= pAbove->FrozenAbove
                || (Reader.pNode->cacheActive() == OrvSnCacheActive
                    && qobject_cast<const OrvSnMergeNode*>(Reader.pNode));
            if (Result.Targets.isEmpty())
                Result.Targets = pAbove->Targets; // shared: a long chain has one list
            else
                for (const Target& One : pAbove->Targets)
                    add(One);
            continue;
        }
        for (const Target& One : pAbove->Targets) {
            // The operation of an adjustment layer reads what lies below its layer, but does not hold it.
            const QVector<OrvSnMergeNode*> Layers = owners(One);
            const bool ReadsBase
                = std::any_of(Layers.begin(), Layers.end(), [pNode](const OrvSnMergeNode* pLayer) {
                      return pLayer->inputNode(OrvSnNames::Base) == pNode;
                  });
            if (!ReadsBase)
                add(One);
        }
    }
    return Result;
}

const OrvChainTargets::Entry& OrvChainTargets::of(const OrvSnBaseNode* pNode)
{
    static const Entry Nothing;
    if (!pNode)
        return Nothing;
    Memory& Remembered = memory();
    const quint64 Revision = OrvShaderNetworkManager::instance().revision();
    if (Remembered.Revision != Revision) {
        Remembered.Entries.clear();
        Remembered.Revision = Revision;
    }
    // Depth first without recursion: stacks are thousands of nodes high.
    QVector<const OrvSnBaseNode*> Pending{pNode};
    while (!Pending.isEmpty()) {
        const OrvSnBaseNode* pNext = Pending.last();
        if (Remembered.find(pNext)) {
            Pending.removeLast();
            continue;
        }
        const int Before = Pending.size();
        for (const OrvSnBaseNode::Consumer& Reader : pNext->consumers()) {
            const OrvSnBaseNode* pAbove = continuation(Reader);
            if (pAbove && !Remembered.find(pAbove))
                Pending.append(pAbove);
        }
        if (Pending.size() == Before)
            Remembered.Entries.insert(Pending.takeLast(), compute(pNext));
    }
    return *Remembered.find(pNode);
}

QVector<OrvSnMergeNode*> OrvChainTargets::owners(const Target& Target)
{
    QVector<OrvSnMergeNode*> Layers;
    if (auto* pMerge = qobject_cast<OrvSnMergeNode*>(Target.pNode)) {
        Layers.append(pMerge);
    } else if (const auto* pCommon = qobject_cast<OrvSnMultiChannelMergeNode*>(Target.pNode)) {
        Layers = pCommon->mergeNodes();
    } else if (Target.pNode->hasTag(OrvSnNames::AdjustmentStackBottomTag)) {
        for (const OrvChainTargets::Target& Stack : of(Target.pNode).Targets) {
            if (auto* pMerge = qobject_cast<OrvSnMergeNode*>(Stack.pNode))
                Layers.append(pMerge);
        }
    }
    return Layers;
}

QVector<OrvSnBaseNode*> OrvChainTargets::containers(const OrvSnBaseNode* pNode)
{
    QVector<OrvSnBaseNode*> Found;
    QSet<const OrvSnBaseNode*> Seen;
    const auto visit = [&](const OrvSnBaseNode* pInside) {
        for (const Target& One : of(pInside).Targets) {
            const QVector<OrvSnMergeNode*> Layers = owners(One);
            const auto note = [&](OrvSnBaseNode* pContainer) {
                if (!Seen.contains(pContainer)) {
                    Seen.insert(pContainer);
                    Found.append(pContainer);
                }
            };
            for (OrvSnMergeNode* pLayer : Layers) {
                note(pLayer);
                if (OrvSnBaseNode* pCommon = pLayer->multiChannelNode(); pCommon && pCommon != pNode)
                    note(pCommon);
            }
            if (One.pNode->hasTag(OrvSnNames::ShaderInputTag))
                note(One.pNode);
        }
    };
    visit(pNode);
    for (int Index = 0; Index < Found.size(); ++Index) {
        // What the streams have in common is held by none of the other channels.
        if (!qobject_cast<OrvSnMultiChannelMergeNode*>(Found[Index]))
            visit(Found[Index]);
    }
    return Found;
}

bool OrvChainTargets::isWithinMask(const Target& Place)
{
    // The group layers around it, up to the first stack that is no group's.
    Target At = Place;
    while (At.pNode && At.InputName != OrvSnNames::Mask && !At.pNode->hasTag(OrvSnNames::ShaderInputTag)) {
        const QVector<OrvSnMergeNode*> Layers = owners(At);
        if (Layers.isEmpty())
            return false;
        At = of(Layers.first()).Targets.value(0);
    }
    return At.pNode && At.InputName == OrvSnNames::Mask;
}

OrvSnBaseNode* OrvChainTargets::channel(const OrvSnBaseNode* pNode)
{
    while (pNode) {
        const Entry& Known = of(pNode);
        if (Known.Targets.isEmpty())
            return nullptr;
        const Target Outer = Known.Targets.first();
        if (Outer.pNode->hasTag(OrvSnNames::ShaderInputTag))
            return Outer.pNode;
        const QVector<OrvSnMergeNode*> Layers = owners(Outer);
        pNode = Layers.isEmpty() ? nullptr : Layers.first();
    }
    return nullptr;
}

void OrvChainTargets::invalidate()
{
    memory().Entries.clear();
}
