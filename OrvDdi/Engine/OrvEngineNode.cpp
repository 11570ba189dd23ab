#include "OrvDdi/Engine/OrvEngineNode.h"

#include "OrvDdi/Engine/OrvBlendOperation.h"
#include "OrvDdi/Engine/OrvColorOperation.h"
#include "OrvDdi/Engine/OrvDelivery.h"
#include "OrvDdi/Engine/OrvEngine.h"
#include "OrvDdi/Engine/OrvFitOperation.h"
#include "OrvDdi/Engine/OrvOperationMenu.h"
#include "OrvDdi/Engine/OrvOperationParameters.h"
#include "OrvDdi/Engine/OrvOperationReach.h"
#include "OrvDdi/Engine/OrvOutputOperation.h"
#include "OrvDdi/Engine/OrvShadingOperation.h"
#include "OrvDdi/Engine/OrvSourceOperations.h"
#include "OrvDdi/Image/OrvColor.h"

#include <algorithm>
#include <cmath>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace {

/// Stands for the whole plane; the engine's own infinite rectangle overflows when operations widen it.
constexpr int PlaneEdge = 1 << 20;
constexpr GeglRectangle Plane = {-PlaneEdge, -PlaneEdge, 2 * PlaneEdge, 2 * PlaneEdge};

GeglRectangle engineRect(const QRect& Rect)
{
    return {Rect.x(), Rect.y(), Rect.width(), Rect.height()};
}

QRect qtRect(const GeglRectangle& Rect)
{
    GeglRectangle Inside;
    if (!gegl_rectangle_intersect(&Inside, &Rect, &Plane))
        return QRect();
    return QRect(Inside.x, Inside.y, Inside.width, Inside.height);
}

GeglNode* newNode(const char* pOperation)
{
    GeglNode* pNode = gegl_node_new();
    // Before the operation, because operations made of others hand it on to them.
    g_object_set(pNode, "dont-cache", TRUE, nullptr);
    gegl_node_set(pNode, "operation", pOperation, nullptr);
    return pNode;
}

} // namespace

/// Belongs to its OrvEngineNode. When that goes while others still read from it, it is abandoned:
/// disconnecting it makes the engine walk through everything downstream, which would take seconds for a
/// document of thousands of layers that is closed from the bottom up. It goes with its last reader, or before
/// the next evaluation.
struct OrvEngineNode::SubGraph {
    enum Kind { Blend, Source, Uniform, Operation, Fit, Color, Shading, Pass };

    explicit SubGraph(Kind What)
        : WhichKind(What)
    {
    }
    ~SubGraph();

    const Kind WhichKind;
    GeglNode* pInput = nullptr; ///< has the input pads and the parameters
    GeglNode* pOutput = nullptr; ///< the same node, or what follows it
    SubGraph* Sources[PadCount] = {};
    std::vector<SubGraph*> Readers; ///< once for every pad
    OrvImageBuffer Pixels; ///< keeps the handle's buffer the same object
    std::function<void(const QRect&)> Invalidated;
    gulong InvalidatedHandler = 0;
    bool Cached = false;
    bool ReachKnown = false;
    int Reach = 0;
    double Shrinkage = 1.0; ///< how many pixels of the input become one of the output, at least 1
    unsigned LastVisit = 0; ///< number of the walk that was here last

    void setSource(Pad Input, SubGraph* pSource);
    void updateDeferral();
    void invalidate(const GeglRectangle& Region) const;
    void parametersChanged();
    int reach(const GeglRectangle& Rect);
    int reachDownstream(const GeglRectangle& Rect);

    static void abandon(std::unique_ptr<SubGraph> pGraph);
    static void removeAbandoned();
    void removeIfUnread();
    void tellDownstream();

    static std::unordered_set<SubGraph*> Abandoned;
};

std::unordered_set<OrvEngineNode::SubGraph*> OrvEngineNode::SubGraph::Abandoned;

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
    static unsigned s_Visit = 0;
    ++s_Visit;
    std::vector<SubGraph*> Pending(Readers);
    while (!Pending.empty()) {
        SubGraph* pNext = Pending.back();
        Pending.pop_back();
        if (pNext->LastVisit == s_Visit)
            continue;
        pNext->LastVisit = s_Visit;
        if (pNext->Invalidated)
            pNext->Invalidated(qtRect(Plane));
        Pending.insert(Pending.end(), pNext->Readers.begin(), pNext->Readers.end());
    }
}

/// Only blend, shading and pass steps understand descriptions of pictures, and only one reader may have a blend
/// computed for it alone; a colour is computed in no time.
void OrvEngineNode::SubGraph::updateDeferral()
{
    const bool IsUnderstood = !Readers.empty()
        && std::all_of(Readers.begin(), Readers.end(),
            [](const SubGraph* p) {
                return p->WhichKind == Blend || p->WhichKind == Shading || p->WhichKind == Pass;
            });
    const bool IsForOne = IsUnderstood && Readers.size() == 1 && !Cached;
    if (WhichKind == Blend)
        OrvBlendOperation::setDeferred(pInput, IsForOne);
    else if (WhichKind == Pass)
        OrvOutputOperation::setDeferred(pInput, IsForOne);
    else if (WhichKind == Uniform)
        OrvSourceOperations::setDeferred(pInput, IsUnderstood);
}

void OrvEngineNode::SubGraph::invalidate(const GeglRectangle& Region) const
{
    gegl_operation_invalidate(gegl_node_get_gegl_operation(pOutput), &Region, FALSE);
}

void OrvEngineNode::SubGraph::parametersChanged()
{
    ReachKnown = false;
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

OrvEngineNode::OrvEngineNode(std::unique_ptr<SubGraph> pGraph)
    : m_pGraph(std::move(pGraph))
{
}

OrvEngineNode::~OrvEngineNode()
{
    const OrvEngine::Lock Lock;
    if (OrvEngine::isStarted())
        SubGraph::abandon(std::move(m_pGraph));
    else
        m_pGraph.release(); // outlived the engine, which has freed it
}

std::unique_ptr<OrvEngineNode> OrvEngineNode::createBlend()
{
    const OrvEngine::Lock Lock;
    auto pGraph = std::make_unique<SubGraph>(SubGraph::Blend);
    pGraph->pInput = pGraph->pOutput = newNode(OrvBlendOperation::Name);
    return std::unique_ptr<OrvEngineNode>(new OrvEngineNode(std::move(pGraph)));
}

std::unique_ptr<OrvEngineNode> OrvEngineNode::createSource()
{
    const OrvEngine::Lock Lock;
    auto pGraph = std::make_unique<SubGraph>(SubGraph::Source);
    pGraph->pInput = pGraph->pOutput = newNode(OrvSourceOperations::BufferName);
    return std::unique_ptr<OrvEngineNode>(new OrvEngineNode(std::move(pGraph)));
}

std::unique_ptr<OrvEngineNode> OrvEngineNode::createUniform()
{
    const OrvEngine::Lock Lock;
    auto pGraph = std::make_unique<SubGraph>(SubGraph::Uniform);
    pGraph->pInput = pGraph->pOutput = newNode(OrvSourceOperations::UniformName);
    return std::unique_ptr<OrvEngineNode>(new OrvEngineNode(std::move(pGraph)));
}

std::unique_ptr<OrvEngineNode> OrvEngineNode::createOperation(const QString& OperationName)
{
    const OrvEngine::Lock Lock;
    const QByteArray Name = OperationName.toUtf8();
    if (!gegl_has_operation(Name.constData()))
        return nullptr;
    auto pGraph = std::make_unique<SubGraph>(SubGraph::Operation);
    pGraph->pInput = newNode(Name.constData());
    pGraph->pOutput = newNode(OrvOutputOperation::Name);
    if (!gegl_node_has_pad(pGraph->pInput, "output"))
        return nullptr;
    gegl_node_connect_to(pGraph->pInput, "output", pGraph->pOutput, "input");
    OrvOutputOperation::setFullScale(pGraph->pOutput, orvNeedsFullScale(Name.constData()));
    if (OrvOperationReach::computesMoreThanAsked(
            pGraph->pInput)) // which must not happen again for every region
        g_object_set(pGraph->pInput, "cache-policy", GEGL_CACHE_POLICY_ALWAYS, nullptr);
    return std::unique_ptr<OrvEngineNode>(new OrvEngineNode(std::move(pGraph)));
}

std::unique_ptr<OrvEngineNode> OrvEngineNode::createFit(const OrvUdimLayout& From, const OrvUdimLayout& To)
{
    const OrvEngine::Lock Lock;
    auto pGraph = std::make_unique<SubGraph>(SubGraph::Fit);
    pGraph->pInput = newNode(OrvFitOperation::Name);
    pGraph->pOutput = newNode(OrvOutputOperation::Name);
    pGraph->Shrinkage = OrvFitOperation::setLayouts(pGraph->pInput, From, To);
    gegl_node_connect_to(pGraph->pInput, "output", pGraph->pOutput, "input");
    OrvOutputOperation::setFullScale(pGraph->pOutput, true);
    return std::unique_ptr<OrvEngineNode>(new OrvEngineNode(std::move(pGraph)));
}

std::unique_ptr<OrvEngineNode> OrvEngineNode::createColorConversion(const QString& From, const QString& To)
{
    const OrvEngine::Lock Lock;
    auto pGraph = std::make_unique<SubGraph>(SubGraph::Color);
    pGraph->pInput = newNode(OrvColorOperation::Name);
    pGraph->pOutput = newNode(OrvOutputOperation::Name);
    OrvColorOperation::setSpaces(pGraph->pInput, From, To);
    gegl_node_connect_to(pGraph->pInput, "output", pGraph->pOutput, "input");
    return std::unique_ptr<OrvEngineNode>(new OrvEngineNode(std::move(pGraph)));
}

std::unique_ptr<OrvEngineNode> OrvEngineNode::createShading()
{
    const OrvEngine::Lock Lock;
    auto pGraph = std::make_unique<SubGraph>(SubGraph::Shading);
    pGraph->pInput = pGraph->pOutput = newNode(OrvShadingOperation::Name);
    return std::unique_ptr<OrvEngineNode>(new OrvEngineNode(std::move(pGraph)));
}

std::unique_ptr<OrvEngineNode> OrvEngineNode::createPass()
{
    const OrvEngine::Lock Lock;
    auto pGraph = std::make_unique<SubGraph>(SubGraph::Pass);
    pGraph->pInput = pGraph->pOutput = newNode(OrvOutputOperation::Name);
    return std::unique_ptr<OrvEngineNode>(new OrvEngineNode(std::move(pGraph)));
}

void OrvEngineNode::connectInput(Pad Input, OrvEngineNode* pSource)
{
    const OrvEngine::Lock Lock;
    const char* pPad = OrvShadingOperation::padName(Input); // others have the first of them
    SubGraph* pSourceGraph = pSource ? pSource->m_pGraph.get() : nullptr;
    if (!gegl_node_has_pad(m_pGraph->pInput, pPad) || m_pGraph->Sources[Input] == pSourceGraph)
        return;
    if (!pSourceGraph)
        gegl_node_disconnect(m_pGraph->pInput, pPad);
    else if (!gegl_node_connect_to(pSourceGraph->pOutput, "output", m_pGraph->pInput, pPad))
        return;
    SubGraph* pPrevious = m_pGraph->Sources[Input];
    m_pGraph->setSource(Input, pSourceGraph);
    if (pPrevious)
        pPrevious->removeIfUnread();
    m_pGraph->parametersChanged();
}

bool OrvEngineNode::readsFrom(Pad Input, const OrvEngineNode* pSource) const
{
    return m_pGraph->Sources[Input] == (pSource ? pSource->m_pGraph.get() : nullptr);
}

void OrvEngineNode::setBlend(const OrvBlendParameters& Parameters)
{
    const OrvEngine::Lock Lock;
    if (m_pGraph->WhichKind != SubGraph::Blend
        || OrvBlendOperation::parameters(m_pGraph->pInput) == Parameters)
        return;
    OrvBlendOperation::setParameters(m_pGraph->pInput, Parameters);
    m_pGraph->invalidate(Plane);
}

void OrvEngineNode::setShading(const OrvShadingParameters& Parameters)
{
    const OrvEngine::Lock Lock;
    if (m_pGraph->WhichKind != SubGraph::Shading
        || OrvShadingOperation::parameters(m_pGraph->pInput) == Parameters)
        return;
    OrvShadingOperation::setParameters(m_pGraph->pInput, Parameters);
    m_pGraph->invalidate(Plane);
}

void OrvEngineNode::setBuffer(const OrvImageBuffer& Buffer)
{
    const OrvEngine::Lock Lock;
    if (m_pGraph->WhichKind != SubGraph::Source || m_pGraph->Pixels.sameAs(Buffer))
        return;
    m_pGraph->Pixels = Buffer;
    OrvSourceOperations::setBuffer(m_pGraph->pInput, Buffer.handle());
    m_pGraph->invalidate(Plane);
}

void OrvEngineNode::setUniform(const OrvColor& Color, const QRect& Extent)
{
    const OrvEngine::Lock Lock;
    if (m_pGraph->WhichKind != SubGraph::Uniform)
        return;
    const float Premultiplied[4] = {Color.red() * Color.alpha(), Color.green() * Color.alpha(),
        Color.blue() * Color.alpha(), Color.alpha()};
    OrvSourceOperations::setUniform(m_pGraph->pInput, Premultiplied, engineRect(Extent));
    m_pGraph->invalidate(Plane);
}

bool OrvEngineNode::setParameter(const QString& Name, const QVariant& Value)
{
    const OrvEngine::Lock Lock;
    if (m_pGraph->WhichKind != SubGraph::Operation
        || !OrvOperationParameters::set(m_pGraph->pInput, Name, Value))
        return false;
    m_pGraph->parametersChanged();
    return true;
}

void OrvEngineNode::setExtent(const QRect& Extent)
{
    const OrvEngine::Lock Lock;
    if (m_pGraph->WhichKind != SubGraph::Operation && m_pGraph->WhichKind != SubGraph::Pass)
        return;
    OrvOutputOperation::setExtent(m_pGraph->pOutput, Extent.isEmpty() ? GeglRectangle{} : engineRect(Extent));
    m_pGraph->invalidate(Plane);
}

void OrvEngineNode::setCached(bool Cached)
{
    const OrvEngine::Lock Lock;
    // Pixels of a source are there already, a colour needs no memory.
    const bool IsSource = m_pGraph->WhichKind == SubGraph::Source || m_pGraph->WhichKind == SubGraph::Uniform;
    if (IsSource || m_pGraph->Cached == Cached)
        return;
    m_pGraph->Cached = Cached;
    if (m_pGraph->WhichKind == SubGraph::Blend)
        OrvBlendOperation::setCached(m_pGraph->pOutput, Cached);
    else if (m_pGraph->WhichKind == SubGraph::Shading)
        OrvShadingOperation::setCached(m_pGraph->pOutput, Cached);
    else
        OrvOutputOperation::setCached(m_pGraph->pOutput, Cached);
    m_pGraph->updateDeferral();
    // A cache that was kept and switched off has missed what happened since.
    m_pGraph->invalidate(Plane);
}

void OrvEngineNode::pixelsWritten(const QRect& Region)
{
    if (Region.isEmpty())
        return;
    const OrvEngine::Lock Lock;
    // Several of the engine's blurs report too small a part of their result as stale; it is widened here,
    // where it reaches everything downstream.
    const GeglRectangle Written = engineRect(Region);
    const int Reach = m_pGraph->reachDownstream(Written);
    m_pGraph->invalidate(Reach >= OrvOperationReach::Unlimited
            ? Plane
            : engineRect(Region.adjusted(-Reach, -Reach, Reach, Reach)));
}

QRect OrvEngineNode::boundingBox() const
{
    const OrvEngine::Lock Lock;
    SubGraph::removeAbandoned();
    return qtRect(gegl_node_get_bounding_box(m_pGraph->pOutput));
}

void OrvEngineNode::render(
    const QRect& Region, double Scale, const OrvPixelFormat& Format, void* pPixels, int Stride)
{
    if (Region.isEmpty() || !(Scale > 0.0))
        return;
    const OrvEngine::Lock Lock;
    SubGraph::removeAbandoned();
    OrvDelivery::render(m_pGraph->pOutput, engineRect(Region), Scale, orvPixelLayout(Format), pPixels,
        Stride ? Stride : Region.width() * Format.bytesPerPixel());
}

void OrvEngineNode::setInvalidated(std::function<void(const QRect&)> Callback)
{
    const OrvEngine::Lock Lock;
    m_pGraph->Invalidated = std::move(Callback);
    if (m_pGraph->InvalidatedHandler || !m_pGraph->Invalidated)
        return;
    const auto tell = [](GeglNode*, const GeglRectangle* pRegion, void* pReceiver) {
        const auto* pGraph = static_cast<const SubGraph*>(pReceiver);
        const QRect Region = qtRect(*pRegion);
        if (pGraph->Invalidated && !Region.isEmpty())
            pGraph->Invalidated(Region);
    };
    m_pGraph->InvalidatedHandler = g_signal_connect(m_pGraph->pOutput, "invalidated",
        G_CALLBACK(static_cast<void (*)(GeglNode*, const GeglRectangle*, void*)>(tell)), m_pGraph.get());
}

_GeglNode* OrvEngineNode::handle() const
{
    return m_pGraph->pOutput;
}
