#pragma once

#include "OrvDdi/Engine/OrvEngineNode.h"
#include "OrvDdi/Image/OrvUdimLayout.h"

/// What stands between an engine node and what that reads: it brings images of one size to another and colours from
/// one space to another, keeps the result, or does several of these. It belongs to the reading node of the document;
/// OrvNodeEvaluation makes and connects it.
class OrvInputStep {
public:
    OrvEngineNode::Pad Pad = OrvEngineNode::Base;
    OrvUdimLayout From, To; ///< the same tiles in another size; anything else is not scaled
    QString FromSpace, ToSpace; ///< colour spaces; empty: the numbers stay
    bool Kept = false;
    std::unique_ptr<OrvEngineNode> pEngineNode; ///< yields the result
    std::unique_ptr<OrvEngineNode> pInnerNode; ///< feeds that one where a step both converts and scales

    bool scales() const { return From.isValid() && To.isValid() && From != To && From.tiles() == To.tiles(); }
    bool converts() const { return FromSpace != ToSpace; }
    bool isNeeded() const { return Kept || scales() || converts(); }
    bool doesTheSameAs(const OrvInputStep& Other) const
    {
        return Pad == Other.Pad && Kept == Other.Kept && FromSpace == Other.FromSpace && ToSpace == Other.ToSpace
            && scales() == Other.scales() && (!scales() || (From == Other.From && To == Other.To));
    }

    /// What reads the source.
    OrvEngineNode* entry() const { return pInnerNode ? pInnerNode.get() : pEngineNode.get(); }
    void createEngineNodes()
    {
        if (scales() && converts())
            pInnerNode = OrvEngineNode::createFit(From, To);
        pEngineNode = converts() ? OrvEngineNode::createColorConversion(FromSpace, ToSpace)
            : scales()           ? OrvEngineNode::createFit(From, To)
                                 : OrvEngineNode::createPass();
        if (pInnerNode)
            pEngineNode->connectInput(OrvEngineNode::Base, pInnerNode.get());
        pEngineNode->setCached(Kept);
    }
};
