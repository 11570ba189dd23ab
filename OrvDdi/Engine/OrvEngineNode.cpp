#include "OrvDdi/Engine/OrvEngineNode.h"

#include "OrvDdi/Engine/OrvBlendOperation.h"
#include "OrvDdi/Engine/OrvColorOperation.h"
#include "OrvDdi/Engine/OrvDelivery.h"
#include "OrvDdi/Engine/OrvEngine.h"
#include "OrvDdi/Engine/OrvEngineRects.h"
#include "OrvDdi/Engine/OrvEngineRewiring.h"
#include "OrvDdi/Engine/OrvEngineSubGraph.h"
#include "OrvDdi/Engine/OrvFitOperation.h"
#include "OrvDdi/Engine/OrvGradualEvaluation.h"
#include "OrvDdi/Engine/OrvOperationMenu.h"
#include "OrvDdi/Engine/OrvOperationReach.h"
#include "OrvDdi/Engine/OrvOperationRegistry.h"
#include "OrvDdi/Engine/OrvOutputOperation.h"
#include "OrvDdi/Engine/OrvOwnOperation.h"
#include "OrvDdi/Engine/OrvShadingOperation.h"
#include "OrvDdi/Engine/OrvSourceOperations.h"
#include "OrvDdi/Image/OrvColor.h"

#include <QtCore/QRectF>

#include <algorithm>
#include <cmath>

using namespace OrvEngineRects;

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
    pGraph->pInput = pGraph->pOutput = OrvOwnOperation::newNode(OrvBlendOperation::Name);
    return std::unique_ptr<OrvEngineNode>(new OrvEngineNode(std::move(pGraph)));
}

std::unique_ptr<OrvEngineNode> OrvEngineNode::createSource()
{
    const OrvEngine::Lock Lock;
    auto pGraph = std::make_unique<SubGraph>(SubGraph::Source);
    pGraph->pInput = pGraph->pOutput = OrvOwnOperation::newNode(OrvSourceOperations::BufferName);
    return std::unique_ptr<OrvEngineNode>(new OrvEngineNode(std::move(pGraph)));
}

std::unique_ptr<OrvEngineNode> OrvEngineNode::createUniform()
{
    const OrvEngine::Lock Lock;
    auto pGraph = std::make_unique<SubGraph>(SubGraph::Uniform);
    pGraph->pInput = pGraph->pOutput = OrvOwnOperation::newNode(OrvSourceOperations::UniformName);
    return std::unique_ptr<OrvEngineNode>(new OrvEngineNode(std::move(pGraph)));
}

std::unique_ptr<OrvEngineNode> OrvEngineNode::createOperation(const QString& OperationName)
{
    const OrvEngine::Lock Lock;
    const QByteArray Name = OperationName.toUtf8();
    if (!gegl_has_operation(Name.constData()))
        return nullptr;
    auto pGraph = std::make_unique<SubGraph>(SubGraph::Operation);
    pGraph->pInput = OrvOwnOperation::newNode(Name.constData());
    pGraph->pOutput = OrvOwnOperation::newNode(OrvOutputOperation::Name);
    if (!gegl_node_has_pad(pGraph->pInput, "output"))
        return nullptr;
    gegl_node_connect_to(pGraph->pInput, "output", pGraph->pOutput, "input");
    OrvOutputOperation::setFullScale(pGraph->pOutput, orvNeedsFullScale(Name.constData()));
    pGraph->Parameters = OrvOperationScale(OrvOperationRegistry::instance().find(OperationName));
    if (OrvOperationReach::computesMoreThanAsked(
            pGraph->pInput)) // which must not happen again for every region
        g_object_set(pGraph->pInput, "cache-policy", GEGL_CACHE_POLICY_ALWAYS, nullptr);
    return std::unique_ptr<OrvEngineNode>(new OrvEngineNode(std::move(pGraph)));
}

std::unique_ptr<OrvEngineNode> OrvEngineNode::createFit(const OrvUdimLayout& From, const OrvUdimLayout& To)
{
    const OrvEngine::Lock Lock;
    auto pGraph = std::make_unique<SubGraph>(SubGraph::Fit);
    pGraph->pInput = OrvOwnOperation::newNode(OrvFitOperation::Name);
    pGraph->pOutput = OrvOwnOperation::newNode(OrvOutputOperation::Name);
    pGraph->Shrinkage = OrvFitOperation::setLayouts(pGraph->pInput, From, To);
    gegl_node_connect_to(pGraph->pInput, "output", pGraph->pOutput, "input");
    OrvOutputOperation::setFullScale(pGraph->pOutput, true);
    return std::unique_ptr<OrvEngineNode>(new OrvEngineNode(std::move(pGraph)));
}

std::unique_ptr<OrvEngineNode> OrvEngineNode::createColorConversion(const QString& From, const QString& To)
{
    const OrvEngine::Lock Lock;
    auto pGraph = std::make_unique<SubGraph>(SubGraph::Color);
    pGraph->pInput = OrvOwnOperation::newNode(OrvColorOperation::Name);
    pGraph->pOutput = OrvOwnOperation::newNode(OrvOutputOperation::Name);
    OrvColorOperation::setSpaces(pGraph->pInput, From, To);
    gegl_node_connect_to(pGraph->pInput, "output", pGraph->pOutput, "input");
    return std::unique_ptr<OrvEngineNode>(new OrvEngineNode(std::move(pGraph)));
}

std::unique_ptr<OrvEngineNode> OrvEngineNode::createShading()
{
    const OrvEngine::Lock Lock;
    auto pGraph = std::make_unique<SubGraph>(SubGraph::Shading);
    pGraph->pInput = pGraph->pOutput = OrvOwnOperation::newNode(OrvShadingOperation::Name);
    return std::unique_ptr<OrvEngineNode>(new OrvEngineNode(std::move(pGraph)));
}

std::unique_ptr<OrvEngineNode> OrvEngineNode::createZoom()
{
    const OrvEngine::Lock Lock;
    auto pGraph = std::make_unique<SubGraph>(SubGraph::Zoom);
    pGraph->pInput = OrvOwnOperation::newNode("gegl:nop");
    pGraph->pOutput = OrvOwnOperation::newNode(OrvOutputOperation::Name);
    gegl_node_connect_to(pGraph->pInput, "output", pGraph->pOutput, "input");
    return std::unique_ptr<OrvEngineNode>(new OrvEngineNode(std::move(pGraph)));
}

std::unique_ptr<OrvEngineNode> OrvEngineNode::createPass()
{
    const OrvEngine::Lock Lock;
    auto pGraph = std::make_unique<SubGraph>(SubGraph::Pass);
    pGraph->pInput = pGraph->pOutput = OrvOwnOperation::newNode(OrvOutputOperation::Name);
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
    OrvEngineRewiring::connected(this, Input);
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
    const QRect Before = m_pGraph->contribution();
    OrvBlendOperation::setParameters(m_pGraph->pInput, Parameters);
    m_pGraph->resultChanged(Before | m_pGraph->contribution());
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
    const QRect Before = m_pGraph->content();
    m_pGraph->Pixels = Buffer;
    OrvSourceOperations::setBuffer(m_pGraph->pInput, Buffer.handle());
    m_pGraph->resultChanged(Before | m_pGraph->content());
}

void OrvEngineNode::setUniform(const OrvColor& Color, const QRect& Extent)
{
    const OrvEngine::Lock Lock;
    if (m_pGraph->WhichKind != SubGraph::Uniform)
        return;
    const float Premultiplied[4] = {Color.red() * Color.alpha(), Color.green() * Color.alpha(),
        Color.blue() * Color.alpha(), Color.alpha()};
    OrvSourceOperations::setUniform(m_pGraph->pInput, Premultiplied, toEngine(Extent));
    const QRect Before = m_pGraph->ColorExtent;
    const bool Shows
        = std::any_of(Premultiplied, Premultiplied + 4, [](float Value) { return Value != 0.0f; });
    m_pGraph->ColorExtent = Shows ? Extent : QRect();
    m_pGraph->resultChanged(Before | m_pGraph->ColorExtent);
}

bool OrvEngineNode::setParameter(const QString& Name, const QVariant& Value)
{
    const OrvEngine::Lock Lock;
    if (m_pGraph->WhichKind != SubGraph::Operation)
        return false;
    const OrvOperationScale::Outcome Outcome = m_pGraph->Parameters.setValue(m_pGraph->pInput, Name, Value);
    if (Outcome == OrvOperationScale::Changed) {
        m_pGraph->enlarge(m_pGraph->Parameters.enlargement());
        m_pGraph->parametersChanged();
    }
    return Outcome != OrvOperationScale::Refused;
}

void OrvEngineNode::setScale(double Scale)
{
    if (!(Scale > 0.0) || std::isinf(Scale))
        return;
    const OrvEngine::Lock Lock;
    if (m_pGraph->WhichKind == SubGraph::Zoom) {
        m_pGraph->enlarge(Scale);
    } else if (m_pGraph->WhichKind == SubGraph::Operation
        && m_pGraph->Parameters.setScale(m_pGraph->pInput, Scale)) {
        m_pGraph->enlarge(m_pGraph->Parameters.enlargement());
        m_pGraph->parametersChanged();
    }
}

void OrvEngineNode::setExtent(const QRect& Extent)
{
    const OrvEngine::Lock Lock;
    if (m_pGraph->WhichKind != SubGraph::Operation && m_pGraph->WhichKind != SubGraph::Zoom
        && m_pGraph->WhichKind != SubGraph::Pass)
        return;
    const GeglRectangle Wanted = Extent.isEmpty() ? GeglRectangle{} : toEngine(Extent);
    const GeglRectangle Present = OrvOutputOperation::extent(m_pGraph->pOutput);
    if (gegl_rectangle_equal(&Wanted, &Present))
        return;
    OrvOutputOperation::setExtent(m_pGraph->pOutput, Wanted);
    m_pGraph->extentChanged();
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
    m_pGraph->resultChanged(Region);
}

QRect OrvEngineNode::boundingBox() const
{
    const OrvEngine::Lock Lock;
    SubGraph::removeAbandoned();
    return toQt(gegl_node_get_bounding_box(m_pGraph->pOutput));
}

void OrvEngineNode::render(
    const QRect& Region, double Scale, const OrvPixelFormat& Format, void* pPixels, int Stride)
{
    while (!renderTurn(Region, Scale, Format, pPixels, Stride)) { }
}

bool OrvEngineNode::renderTurn(
    const QRect& Region, double Scale, const OrvPixelFormat& Format, void* pPixels, int Stride)
{
    if (Region.isEmpty() || !(Scale > 0.0))
        return true;
    const OrvEngine::Lock Lock;
    SubGraph::removeAbandoned();
    if (m_pGraph->standsOnOperations()) {
        // At a reduced scale neighbours are farther away.
        const int Reach = Scale < 1.0 ? int(std::ceil(1.0 / Scale)) : 0;
        const QRectF Whole(QPointF(Region.topLeft()) / Scale, QSizeF(Region.size()) / Scale);
        if (OrvGradualEvaluation::advance(
                m_pGraph->pOutput, toEngine(Whole.toAlignedRect().adjusted(-Reach, -Reach, Reach, Reach))))
            return false;
    }
    OrvDelivery::render(m_pGraph->pOutput, toEngine(Region), Scale, orvPixelLayout(Format), pPixels,
        Stride ? Stride : Region.width() * Format.bytesPerPixel());
    return true;
}

void OrvEngineNode::setInvalidated(std::function<void(const QRect&)> Callback)
{
    const OrvEngine::Lock Lock;
    m_pGraph->Invalidated = std::move(Callback);
    if (m_pGraph->InvalidatedHandler || !m_pGraph->Invalidated)
        return;
    const auto tell = [](GeglNode*, const GeglRectangle* pRegion, void* pReceiver) {
        const auto* pGraph = static_cast<const SubGraph*>(pReceiver);
        const QRect Region = toQt(*pRegion);
        if (pGraph->Invalidated && !Region.isEmpty() && !OrvEngineRewiring::isUnderWay())
            pGraph->Invalidated(Region);
    };
    m_pGraph->InvalidatedHandler = g_signal_connect(m_pGraph->pOutput, "invalidated",
        G_CALLBACK(static_cast<void (*)(GeglNode*, const GeglRectangle*, void*)>(tell)), m_pGraph.get());
}

_GeglNode* OrvEngineNode::handle() const
{
    return m_pGraph->pOutput;
}
