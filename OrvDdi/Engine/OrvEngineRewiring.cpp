#include "OrvDdi/Engine/OrvEngineRewiring.h"

#include "OrvDdi/Engine/OrvEngineSubGraph.h"

namespace {

/// Comparing what is seen through more inputs takes longer than it spares.
constexpr size_t MostChanges = 32;

OrvEngineRewiring* pUnderWay = nullptr;

} // namespace

struct OrvEngineRewiring::Change {
    using SubGraph = OrvEngineNode::SubGraph;

    SubGraph* pReader;
    OrvEngineNode::Pad Pad;
    std::vector<SubGraph::Layer> Before;
    QRect ContributionBefore;

    void tell() const
    {
        const bool IsMask = pReader->WhichKind == SubGraph::Blend && Pad == OrvEngineNode::Mask;
        pReader->inputChanged(Pad,
            IsMask ? ContributionBefore | pReader->contribution()
                   : SubGraph::difference(Before, SubGraph::layers(pReader->Sources[Pad])));
    }
};

OrvEngineRewiring::OrvEngineRewiring(const std::vector<Input>& Changing)
{
    if (Changing.size() > MostChanges)
        return;
    pUnderWay = this;
    for (const Input& One : Changing) {
        auto* pReader = One.pReader->m_pGraph.get();
        m_Changes.push_back(
            {pReader, One.Pad, Change::SubGraph::layers(pReader->Sources[One.Pad]), pReader->contribution()});
    }
}

OrvEngineRewiring::~OrvEngineRewiring()
{
    pUnderWay = nullptr;
    for (const Change& One : m_Changes) {
        if (!isCompared(One))
            One.tell();
    }
}

/// What lies below a layer counts where stacks that hold the layer are compared; if all that read it have
/// just been connected, nobody saw it where it is now.
bool OrvEngineRewiring::isCompared(const Change& One) const
{
    const auto* pLayer = One.pReader;
    if (pLayer->WhichKind != Change::SubGraph::Blend || One.Pad != OrvEngineNode::Base || pLayer->Invalidated)
        return false;
    for (const auto* pReader : pLayer->Readers) {
        for (int Pad = 0; Pad < OrvEngineNode::PadCount; ++Pad) {
            if (pReader->Sources[Pad] == pLayer && m_Connected.count({pReader, Pad}) == 0)
                return false;
        }
    }
    return true;
}

bool OrvEngineRewiring::isUnderWay()
{
    return pUnderWay;
}

void OrvEngineRewiring::connected(OrvEngineNode* pReader, OrvEngineNode::Pad Pad)
{
    if (pUnderWay)
        pUnderWay->m_Connected.insert({pReader->m_pGraph.get(), Pad});
}
