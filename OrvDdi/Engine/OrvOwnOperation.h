#pragma once

#include "OrvDdi/Engine/OrvGegl.h"

#include <initializer_list>

/// What the engine's operations of ours say of themselves alike. Each is a file of its own with its
/// process(); nothing here knows what they compute.
namespace OrvOwnOperation {

/// Names the operation for the graph, and for no menu.
inline void describe(GeglOperationClass* pClass, const char* pName, const char* pTitle)
{
    gegl_operation_class_set_keys(pClass, "name", pName, "title", pTitle, "categories", "hidden", nullptr);
}

inline void setFormat(GeglOperation* pOperation, std::initializer_list<const char*> Pads, const Babl* pFormat)
{
    for (const char* pPad : Pads)
        gegl_operation_set_format(pOperation, pPad, pFormat);
}

/// The format in which steps hand pixels to each other.
inline void setPremultiplied(GeglOperation* pOperation, std::initializer_list<const char*> Pads)
{
    setFormat(pOperation, Pads, babl_format("RaGaBaA float"));
}

/// What changes in an input changes in the same place of the output.
inline GeglRectangle sameRegion(GeglOperation*, const char*, const GeglRectangle* pRegion)
{
    return *pRegion;
}

/// The state of the operation behind a node, whose type the caller knows.
template <class Operation>
Operation* behind(GeglNode* pNode)
{
    return static_cast<Operation*>(static_cast<void*>(gegl_node_get_gegl_operation(pNode)));
}

/// A node that keeps nothing until it is told to.
inline GeglNode* newNode(const char* pOperation)
{
    GeglNode* pNode = gegl_node_new();
    // Before the operation, because operations made of others hand it on to them.
    g_object_set(pNode, "dont-cache", TRUE, nullptr);
    gegl_node_set(pNode, "operation", pOperation, nullptr);
    return pNode;
}

/// Whether the engine keeps what the node has computed.
inline void setKept(GeglNode* pNode, bool Kept)
{
    g_object_set(pNode, "cache-policy", Kept ? GEGL_CACHE_POLICY_ALWAYS : GEGL_CACHE_POLICY_NEVER, nullptr);
}

} // namespace OrvOwnOperation
