#pragma once

#include "OrvCore/OrvCoreExport.h"

#include "OrvDdi/Image/OrvUdimLayout.h"

#include <QtCore/QRect>

class OrvSnBaseNode;

/// How large the pixels are that a node computes. Lengths of operations are meant for tiles of
/// OrvOperation::ReferenceEdge, a Ptex face counts as one; on others the same picture is to come out. A
/// value, read from what the node reads, a procedural's from its extent; else from the channel around, or the
/// network's first.
struct ORVCORE_EXPORT OrvContentScale {
    double Lengths = 1.0; ///< pixels for one that lengths are meant for
    /// Pixels of the result for one of the node's. Below 1 inside a custom procedural of a small channel:
    /// grain, kernels and thresholds of grain have no length that could be scaled, so all of it is computed
    /// as it is meant, and the whole is reduced.
    double Reduction = 1.0;

    static OrvContentScale at(const OrvSnBaseNode* pNode);
    /// What a procedural covers, from the origin, in the node's pixels.
    QRect plane(const QSize& Extent) const;

    /// The layout that the pixels of a result have when it need not be that of the channel where it is read;
    /// else none.
    static OrvUdimLayout layoutOf(const OrvSnBaseNode* pNode);
};
