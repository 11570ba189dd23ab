// What is seen of the steps of an evaluation, told from what they are made of: nothing is computed.

#include "OrvDdi/Engine/OrvBlendOperation.h"
#include "OrvDdi/Engine/OrvEngineRects.h"
#include "OrvDdi/Engine/OrvEngineSubGraph.h"
#include "OrvDdi/Engine/OrvOutputOperation.h"
#include "OrvDdi/Image/OrvBufferContent.h"

#include <algorithm>

using namespace OrvEngineRects;

QRect OrvEngineNode::SubGraph::content() const
{
    QRect Content;
    const SubGraph* pStep = this;
    for (; pStep && pStep->WhichKind == Blend; pStep = pStep->Sources[Base])
        Content |= pStep->contribution();
    return pStep ? Content | pStep->contribution() : Content;
}

QRect OrvEngineNode::SubGraph::contribution() const
{
    const SubGraph* pBase = Sources[Base];
    switch (WhichKind) {
    case Source:
        // A scalar of zero is an opaque black.
        if (Pixels.isNull() || Pixels.format().Kind == OrvPixelFormat::Scalar)
            return Pixels.extent();
        return OrvBufferContent::of(Pixels.handle())->bounds();
    case Uniform:
        return ColorExtent;
    case Color:
    case Pass:
        return pBase ? pBase->content() : QRect();
    case Blend:
        break;
    case Fit:
    case Zoom:
        if (pBase && pBase->content().isEmpty())
            return QRect();
        [[fallthrough]];
    default:
        return toQt(Plane);
    }
    const OrvBlendParameters& Parameters = OrvBlendOperation::parameters(pInput);
    const SubGraph* pOver = Sources[Over];
    if (!Parameters.Enabled || Parameters.Amount == 0.0f)
        return QRect();
    if (!Parameters.PassThrough)
        return pOver ? pOver->content() : QRect();
    // A whole picture takes the place of the base: it differs where something lies above the base in it.
    QRect Contribution;
    for (; pOver != pBase; pOver = pOver->Sources[Base]) {
        if (!pOver || pOver->WhichKind != Blend)
            return Contribution | (pOver ? pOver->content() : QRect()) | (pBase ? pBase->content() : QRect());
        Contribution |= pOver->contribution();
    }
    return Contribution;
}

std::vector<OrvEngineNode::SubGraph::Layer> OrvEngineNode::SubGraph::layers(const SubGraph* pTop)
{
    std::vector<Layer> Layers;
    for (const SubGraph* pStep = pTop; pStep; pStep = pStep->Sources[Base]) {
        if (pStep->WhichKind == Pass && OrvOutputOperation::passesOn(pStep->pOutput))
            continue;
        const bool IsAbandoned = Abandoned.count(const_cast<SubGraph*>(pStep)) > 0;
        Layers.push_back({pStep, IsAbandoned, IsAbandoned ? pStep->contribution() : QRect()});
        if (pStep->WhichKind != Blend)
            break;
    }
    return Layers;
}

QRect OrvEngineNode::SubGraph::difference(std::vector<Layer> Before, std::vector<Layer> After)
{
    const auto isSame = [](const Layer& A, const Layer& B) { return A.pStep == B.pStep; };
    const auto dropCommon = [&] {
        const auto Tops = std::mismatch(Before.begin(), Before.end(), After.begin(), After.end(), isSame);
        Before.erase(Before.begin(), Tops.first);
        After.erase(After.begin(), Tops.second);
        const auto Bottoms
            = std::mismatch(Before.rbegin(), Before.rend(), After.rbegin(), After.rend(), isSame);
        Before.erase(Bottoms.first.base(), Before.end());
        After.erase(Bottoms.second.base(), After.end());
    };
    dropCommon();
    for (std::vector<Layer>* pLayers : {&Before, &After}) {
        for (Layer& One : *pLayers)
            One.Contribution = One.IsAbandoned ? One.Contribution : One.pStep->contribution();
        const auto showsNothing = [](const Layer& One) { return One.Contribution.isEmpty(); };
        pLayers->erase(std::remove_if(pLayers->begin(), pLayers->end(), showsNothing), pLayers->end());
    }
    dropCommon();
    QRect Difference;
    for (const std::vector<Layer>* pLayers : {&Before, &After}) {
        for (const Layer& One : *pLayers)
            Difference |= One.Contribution;
    }
    return Difference;
}
