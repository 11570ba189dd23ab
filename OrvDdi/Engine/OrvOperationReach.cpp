#include "OrvDdi/Engine/OrvOperationReach.h"

#include <algorithm>
#include <cmath>

namespace {

/// Where the reach of an operation is taken to be the whole image: what it needs depends on where one asks.
constexpr int FarReach = 1024;

/// The engine's recursive Gaussian filter asks for whole rows, though what lies beyond some deviations has no
/// share that could be seen. Unlimited for other operations.
int gaussianReach(GeglNode* pNode)
{
    if (!gegl_node_find_property(pNode, "std-dev"))
        return OrvOperationReach::Unlimited;
    double Deviation = 0.0;
    gegl_node_get(pNode, "std-dev", &Deviation, nullptr);
    return int(std::ceil(Deviation * 6.0)) + 1;
}

} // namespace

int OrvOperationReach::of(GeglNode* pNode, const GeglRectangle& Rect)
{
    int Reach = 0;
    if (GSList* pChildren = gegl_node_get_children(pNode)) {
        // Operations made of others do not know their reach, and asking them would never end.
        for (GSList* pChild = pChildren; pChild; pChild = pChild->next)
            Reach = std::min(Unlimited, Reach + of(GEGL_NODE(pChild->data), Rect));
        g_slist_free(pChildren);
        return Reach;
    }
    GeglOperation* pOperation = gegl_node_get_gegl_operation(pNode);
    for (const char* pPad : {"input", "aux"}) {
        if (!pOperation || !gegl_node_has_pad(pNode, pPad))
            continue;
        const GeglRectangle Needed = gegl_operation_get_required_for_output(pOperation, pPad, &Rect);
        const GeglRectangle* pWhole = gegl_operation_source_get_bounding_box(pOperation, pPad);
        if (pWhole && !gegl_rectangle_is_empty(pWhole) && gegl_rectangle_contains(&Needed, pWhole))
            return Unlimited;
        const double Sides[] = {double(Rect.x) - Needed.x, double(Rect.y) - Needed.y,
            double(Needed.x) + Needed.width - Rect.x - Rect.width,
            double(Needed.y) + Needed.height - Rect.y - Rect.height};
        const double Widest = *std::max_element(std::begin(Sides), std::end(Sides));
        if (!gegl_rectangle_is_empty(&Needed))
            Reach = std::max(Reach, Widest > FarReach ? Unlimited : int(Widest));
    }
    return std::min(Reach, gaussianReach(pNode));
}

bool OrvOperationReach::computesMoreThanAsked(GeglNode* pNode)
{
    static const auto* pPlainClass = static_cast<GeglOperationClass*>(g_type_class_ref(GEGL_TYPE_OPERATION));
    GeglOperation* pOperation = gegl_node_get_gegl_operation(pNode);
    return pOperation
        && GEGL_OPERATION_GET_CLASS(pOperation)->get_cached_region != pPlainClass->get_cached_region;
}
