#include "OrvDdi/Engine/OrvEngineSubGraph.h"

#include "OrvDdi/Engine/OrvBlendOperation.h"
#include "OrvDdi/Engine/OrvDelivery.h"
#include "OrvDdi/Engine/OrvEngineRects.h"
#include "OrvDdi/Engine/OrvFitOperation.h"
#include "OrvDdi/Engine/OrvOperationReach.h"
#include "OrvDdi/Engine/OrvOutputOperation.h"
#include "OrvDdi/Engine/OrvOwnOperation.h"
#include "OrvDdi/Engine/OrvShadingOperation.h"
#include "OrvDdi/Engine/OrvSourceOperations.h"

#include <algorithm>
#include <cmath>
#include <unordered_map>

using namespace OrvEngineRects;

std::unordered_set<OrvEngineNode::SubGraph*> OrvEngineNode::SubGraph::Abandoned;
unsigned OrvEngineNode::SubGraph::Walks = 0;

OrvEngineNode::SubGraph::~SubGraph()
{
    OrvDelivery::forget(pOutput);
    for (int Input = 0; Input < PadCount; ++Input)
        setSource(Pad(Input), nullptr);
    for (SubGraph* pReader : Readers)
        std::replace(
            std::begin(pReader->Sources), std::end(pReader->Sources), this, static_cast<SubGraph*>(nullptr));
    if (InvalidatedHandler)
        g_signal_handler_disconnect(pOutput, InvalidatedHandler);
    if (pEnlarging)
        g_object_unref(pEnlarging);
    if (pOutput != pInput)
        g_object_unref(pOutput);
    g_object_unref(pInput);
}

void OrvEngineNode::SubGraph::setSource(Pad Input, SubGraph* pSource)
{
    SubGraph* pPrevious = Sources[Input];
    Sources[Input] = pSource;
    if (pSource) {
        pSource->Readers.push_back(this);
        pSource->updateDeferral();
    }
    if (pPrevious) {
        pPrevious->Readers.erase(std::find(pPrevious->Readers.begin(), pPrevious->Readers.end(), this));
        pPrevious->updateDeferral();
    }
}

void OrvEngineNode::SubGraph::abandon(std::unique_ptr<SubGraph> pGraph)
{
    // Whoever reads it is told the rest when it is connected to something else.
    if (!pGraph->contribution().isEmpty())
        pGraph->tellDownstream();
    pGraph->Invalidated = nullptr;
    SubGraph* pAbandoned = pGraph.release();
    Abandoned.insert(pAbandoned);
    pAbandoned->removeIfUnread();
}

/// Deletes an abandoned graph that nobody reads, and those that only it has read.
void OrvEngineNode::SubGraph::removeIfUnread()
{
    std::vector<SubGraph*> Pending{this};
    while (!Pending.empty()) {
        SubGraph* pNext = Pending.back();
        Pending.pop_back();
        if (!pNext->Readers.empty() || !Abandoned.erase(pNext))
            continue;
        for (SubGraph* pSource : pNext->Sources) {
            if (pSource && std::find(Pending.begin(), Pending.end(), pSource) == Pending.end())
                Pending.push_back(pSource);
        }
        delete pNext;
    }
}

void OrvEngineNode::SubGraph::removeAbandoned()
{
    while (!Abandoned.empty()) {
        SubGraph* pNext = *Abandoned.begin();
        Abandoned.erase(Abandoned.begin());
        delete pNext;
    }
}

/// Tells everybody who shows something that depends on this; cheaper than the engine's own way by far.
void OrvEngineNode::SubGraph::tellDownstream()
{
    const unsigned Walk = ++Walks;
    std::vector<SubGraph*> Pending(Readers);
    while (!Pending.empty()) {
        SubGraph* pNext = Pending.back();
        Pending.pop_back();
        if (!pNext->isNewTo(Walk))
            continue;
        if (pNext->Invalidated)
            pNext->Invalidated(toQt(Plane));
        Pending.insert(Pending.end(), pNext->Readers.begin(), pNext->Readers.end());
    }
}

/// Others keep nothing that would take long to compute.
bool OrvEngineNode::SubGraph::standsOnOperations()
{
    const unsigned Walk = ++Walks;
    std::vector<SubGraph*> Pending{this};
    while (!Pending.empty()) {
        SubGraph* pNext = Pending.back();
        Pending.pop_back();
        if (!pNext->isNewTo(Walk))
            continue;
        if (pNext->WhichKind == Operation)
            return true;
        for (SubGraph* pSource : pNext->Sources) {
            if (pSource)
                Pending.push_back(pSource);
        }
    }
    return false;
}

/// Only blend, shading and pass steps understand descriptions of pictures, and only one reader may have a
/// blend computed for it alone; a colour is computed in no time.
void OrvEngineNode::SubGraph::updateDeferral()
{
    const bool IsUnderstood
        = !Readers.empty() && std::all_of(Readers.begin(), Readers.end(), [](const SubGraph* p) {
              return p->WhichKind == Blend || p->WhichKind == Shading || p->WhichKind == Pass;
          });
    const bool IsForOne = IsUnderstood && Readers.size() == 1 && !Cached;
    if (WhichKind == Blend)
        OrvBlendOperation::setDeferred(pInput, IsForOne);
    else if (WhichKind == Pass)
        OrvOutputOperation::setDeferred(pInput, IsForOne);
    else if (WhichKind == Uniform)
        OrvSourceOperations::setUniformDeferred(pInput, IsUnderstood);
    else if (WhichKind == Source)
        OrvSourceOperations::setBufferDeferred(pInput, IsUnderstood);
}

void OrvEngineNode::SubGraph::invalidate(const GeglRectangle& Region) const
{
    gegl_operation_invalidate(gegl_node_get_gegl_operation(pOutput), &Region, FALSE);
}

void OrvEngineNode::SubGraph::resultChanged(const QRect& Region)
{
    if (Region.contains(toQt(Plane)))
        return invalidate(Plane);
    // Where nothing differs, bounds may.
    if (Region.isEmpty())
        return invalidate({});
    // Several of the engine's blurs report too small a part of their result as stale; it is widened here,
    // where it reaches everything downstream.
    const int Reach = reachDownstream({Region.center().x(), Region.center().y(), 1, 1});
    invalidate(Reach >= OrvOperationReach::Unlimited
            ? Plane
            : toEngine(Region.adjusted(-Reach, -Reach, Reach, Reach)));
}

void OrvEngineNode::SubGraph::inputChanged(Pad Input, const QRect& Region)
{
    if (Region.isEmpty())
        return;
    // What an operation looks at around a pixel, and what becomes of a region elsewhere, is their own affair.
    if (WhichKind == Operation || WhichKind == Zoom)
        return invalidate(Plane);
    const GeglRectangle Changed = toEngine(Region);
    resultChanged(toQt(gegl_operation_get_invalidated_by_change(
        gegl_node_get_gegl_operation(pInput), OrvShadingOperation::padName(Input), &Changed)));
}

void OrvEngineNode::SubGraph::parametersChanged()
{
    ReachKnown = false;
    invalidate(Plane);
}

/// What the operation yields is brought to another size before it is cropped.
void OrvEngineNode::SubGraph::enlarge(double Factor)
{
    if (Factor == Enlargement)
        return;
    Enlargement = Factor;
    if (WhichKind == Zoom)
        OrvOutputOperation::setFullScale(pOutput, Factor != 1.0);
    if (Factor == 1.0) {
        gegl_node_disconnect(pEnlarging, "input");
        gegl_node_connect_to(pInput, "output", pOutput, "input");
    } else {
        if (!pEnlarging)
            pEnlarging = OrvOwnOperation::newNode(OrvFitOperation::Name);
        gegl_node_connect_to(pInput, "output", pEnlarging, "input");
        gegl_node_connect_to(pEnlarging, "output", pOutput, "input");
    }
    extentChanged();
}

/// Pixels at the edges of what is enlarged go on beyond them.
void OrvEngineNode::SubGraph::extentChanged()
{
    Shrinkage = 1.0;
    if (Enlargement != 1.0) {
        Shrinkage = OrvFitOperation::setFactor(pEnlarging, Enlargement, OrvOutputOperation::extent(pOutput));
        gegl_operation_invalidate(gegl_node_get_gegl_operation(pEnlarging), &Plane, FALSE);
    }
    invalidate(Plane);
}

int OrvEngineNode::SubGraph::reach(const GeglRectangle& Rect)
{
    if (WhichKind != Operation)
        return 0;
    if (!ReachKnown) {
        // Operations learn what they will need when the engine prepares them.
        gegl_node_get_bounding_box(pInput);
        Reach = OrvOperationReach::of(pInput, Rect);
        ReachKnown = true;
    }
    return Reach;
}

/// The largest sum of reaches on any way from here to a result.
int OrvEngineNode::SubGraph::reachDownstream(const GeglRectangle& Rect)
{
    // Depth first without recursion; a node is settled when all its readers are.
    std::unordered_map<SubGraph*, int> Settled;
    std::vector<SubGraph*> Pending{this};
    while (!Pending.empty()) {
        SubGraph* pNode = Pending.back();
        if (Settled.count(pNode)) {
            Pending.pop_back();
            continue;
        }
        const size_t Before = Pending.size();
        int Widest = 0;
        for (SubGraph* pReader : pNode->Readers) {
            const auto Found = Settled.find(pReader);
            if (Found == Settled.end())
                Pending.push_back(pReader);
            else
                Widest = std::max(Widest, Found->second);
        }
        if (Pending.size() > Before)
            continue;
        Pending.pop_back();
        const double Wanted = std::ceil(Widest * pNode->Shrinkage) + pNode->reach(Rect);
        Settled.emplace(pNode, int(std::min<double>(OrvOperationReach::Unlimited, Wanted)));
    }
    return Settled[this];
}
