#pragma once

#include "OrvDdi/Engine/OrvEngineNode.h"
#include "OrvDdi/Image/OrvUdimLayout.h"

/// One engine node between another one and what that reads: it brings images of one size to another, keeps
/// the result, or both. It belongs to the reading node of the document; OrvNodeEvaluation makes and connects
/// it.
class OrvInputStep {
public:
    OrvEngineNode::Pad Pad = OrvEngineNode::Base;
    OrvUdimLayout From, To; ///< the same tiles in another size; anything else is not scaled
    bool Kept = false;
    std::unique_ptr<OrvEngineNode> pEngineNode;

    bool scales() const { return From.isValid() && To.isValid() && From != To && From.tiles() == To.tiles(); }
    bool isNeeded() const { return Kept || scales(); }
    bool doesTheSameAs(const OrvInputStep& Other) const
    {
        return Pad == Other.Pad && Kept == Other.Kept && scales() == Other.scales()
            && (!scales() || (From == Other.From && To == Other.To));
    }
};
