#pragma once

#include "OrvDdi/Engine/OrvEngineNode.h"
#include "OrvDdi/Engine/OrvGegl.h"
#include "OrvDdi/Engine/OrvOperationScale.h"

#include <unordered_set>
#include <utility>
#include <vector>

/// What an engine node has in the engine, and its place among the others. Belongs to its OrvEngineNode. When
/// that goes while others still read from it, it is abandoned: disconnecting it makes the engine walk through
/// everything downstream, which would take seconds for a document of thousands of layers that is closed from
/// the bottom up. It goes with its last reader, or before the next evaluation.
struct OrvEngineNode::SubGraph {
    enum Kind { Blend, Source, Uniform, Operation, Fit, Color, Shading, Zoom, Pass };

    explicit SubGraph(Kind What)
        : WhichKind(What)
    {
    }
    ~SubGraph();

    const Kind WhichKind;
    GeglNode* pInput = nullptr; ///< has the input pads and the parameters
    GeglNode* pOutput = nullptr; ///< the same node, or what follows it
    GeglNode* pEnlarging = nullptr; ///< between the two, once it was needed
    SubGraph* Sources[PadCount] = {};
    std::vector<SubGraph*> Readers; ///< once for every pad
    OrvImageBuffer Pixels; ///< keeps the handle's buffer the same object
    std::function<void(const QRect&)> Invalidated;
    gulong InvalidatedHandler = 0;
    bool Cached = false;
    bool ReachKnown = false;
    int Reach = 0;
    OrvOperationScale Parameters{nullptr};
    double Enlargement = 1.0;
    QRect ColorExtent; ///< of uniform ones: where they show anything
    double Shrinkage = 1.0; ///< how many pixels of the input become one of the output, at least 1
    unsigned LastVisit = 0; ///< number of the walk that was here last

    void setSource(Pad Input, SubGraph* pSource);
    void updateDeferral();
    void invalidate(const GeglRectangle& Region) const;
    void parametersChanged();
    /// The result differs within a region. Invalidates it, and as much more as operations downstream look
    /// around.
    void resultChanged(const QRect& Region);
    void inputChanged(Pad Input, const QRect& Region);
    void enlarge(double Factor);
    void extentChanged();
    int reach(const GeglRectangle& Rect);
    int reachDownstream(const GeglRectangle& Rect);

    static void abandon(std::unique_ptr<SubGraph> pGraph);
    static void removeAbandoned();
    void removeIfUnread();
    void tellDownstream();
    bool standsOnOperations();
    /// The first time that the walk comes here.
    bool isNewTo(unsigned Walk) { return std::exchange(LastVisit, Walk) != Walk; }

    // What is seen of a step. All of it may be taken for larger than it is, never for smaller.

    /// Around all that is not transparent.
    QRect content() const;
    /// Where the result may differ from what the step stands on: from its base, or from nothing.
    QRect contribution() const;
    /// A step of a stack from its top to its bottom.
    struct Layer {
        const SubGraph* pStep;
        bool IsAbandoned; ///< its contribution was known before it went
        QRect Contribution;
    };
    /// The stack that ends in a step, or in none.
    static std::vector<Layer> layers(const SubGraph* pTop);
    /// Where two stacks may look different.
    static QRect difference(std::vector<Layer> Before, std::vector<Layer> After);

    static std::unordered_set<SubGraph*> Abandoned;
    static unsigned Walks;
};
