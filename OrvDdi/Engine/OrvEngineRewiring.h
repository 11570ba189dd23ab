#pragma once

#include "OrvDdi/Engine/OrvEngine.h"
#include "OrvDdi/Engine/OrvEngineNode.h"

#include <set>
#include <utility>
#include <vector>

/// A change of several connections of which only the result is seen. While it lives nobody is told of what is
/// torn apart on the way, and nothing is evaluated; at its end, what looks different from before. So nobody
/// asks for pixels again when a layer that holds nothing moves; results that nodes keep are given up all the
/// same. Made by whoever connects, on the stack, one at a time.
class ORVDDI_EXPORT OrvEngineRewiring {
public:
    struct Input {
        OrvEngineNode* pReader;
        OrvEngineNode::Pad Pad;
    };
    /// The inputs that are about to change; their nodes outlive this.
    explicit OrvEngineRewiring(const std::vector<Input>& Changing);
    ~OrvEngineRewiring();
    OrvEngineRewiring(const OrvEngineRewiring&) = delete;
    OrvEngineRewiring& operator=(const OrvEngineRewiring&) = delete;

    // For engine nodes, under the engine's lock.
    static bool isUnderWay();
    static void connected(OrvEngineNode* pReader, OrvEngineNode::Pad Pad);

private:
    struct Change;
    bool isCompared(const Change& One) const;

    const OrvEngine::Lock m_Lock;
    std::vector<Change> m_Changes;
    std::set<std::pair<const void*, int>> m_Connected; ///< the inputs, new ones too
};
