#include "OrvDdi/Engine/OrvOutputOperation.h"

#include "OrvDdi/Engine/OrvDelivery.h"
#include "OrvDdi/Engine/OrvOwnOperation.h"
#include "OrvDdi/Engine/OrvPictureProgram.h"

namespace {

struct OutputOperation {
    GeglOperationFilter Parent;
    GeglRectangle Extent;
    bool Cached;
    bool Deferred;
    bool FullScale;
};

struct OutputOperationClass {
    GeglOperationFilterClass Parent;
};

GType output_operation_get_type();
G_DEFINE_TYPE(OutputOperation, output_operation, GEGL_TYPE_OPERATION_FILTER)

OutputOperation* instance(void* pOperation)
{
    return static_cast<OutputOperation*>(pOperation);
}

/// Null when the node is of another operation.
const OutputOperation* instanceOf(GeglNode* pNode)
{
    GeglOperation* pOperation = gegl_node_get_gegl_operation(pNode);
    if (!pOperation || !G_TYPE_CHECK_INSTANCE_TYPE(pOperation, output_operation_get_type()))
        return nullptr;
    return instance(pOperation);
}

void prepare(GeglOperation* pOperation)
{
    const Babl* pFormat = gegl_operation_get_source_format(pOperation, "input");
    // Caches of pixels that are blended next are best in the blend's own format.
    if (!pFormat || instance(pOperation)->Cached)
        pFormat = babl_format("RaGaBaA float");
    OrvOwnOperation::setFormat(pOperation, {"input", "output"}, pFormat);
}

GeglRectangle boundingBox(GeglOperation* pOperation)
{
    const GeglRectangle* pInput = gegl_operation_source_get_bounding_box(pOperation, "input");
    GeglRectangle Box = pInput ? *pInput : GeglRectangle{};
    const GeglRectangle& Extent = instance(pOperation)->Extent;
    if (!gegl_rectangle_is_empty(&Extent))
        gegl_rectangle_intersect(&Box, &Box, &Extent);
    return Box;
}

/// A reduced evaluation does not enter what is below: it is evaluated by itself then.
GeglRectangle requiredForOutput(GeglOperation* pOperation, const char*, const GeglRectangle* pRegion)
{
    return instance(pOperation)->FullScale && OrvDelivery::currentLevel() > 0 ? GeglRectangle{} : *pRegion;
}

gboolean processAtFullScale(
    GeglOperation* pOperation, GeglOperationContext* pContext, const GeglRectangle* pRegion)
{
    const OrvDelivery::FullScale FullScale;
    GeglBuffer* pResult = gegl_buffer_new(pRegion, babl_format("RaGaBaA float"));
    gegl_node_blit_buffer(pOperation->node, pResult, pRegion, 0, GEGL_ABYSS_NONE);
    // Whoever reads it at a reduced scale gets averages.
    gegl_operation_context_take_object(pContext, "output", G_OBJECT(pResult));
    return TRUE;
}

gboolean process(GeglOperation* pOperation, GeglOperationContext* pContext, const char*,
    const GeglRectangle* pRegion, int Level)
{
    const OutputOperation* pSelf = instance(pOperation);
    if (pSelf->FullScale && Level > 0)
        return processAtFullScale(pOperation, pContext, pRegion);
    GObject* pInput = gegl_operation_context_get_object(pContext, "input");
    if (!pInput)
        return FALSE;
    const bool IsCropped = !gegl_rectangle_is_empty(&pSelf->Extent);
    const OrvPicture::Pointer pPicture = OrvPicture::of(pInput);
    const bool IsDescription
        = pPicture->kind() == OrvPicture::Blend || pPicture->kind() == OrvPicture::Uniform;
    const bool NeedsProgram
        = IsDescription || (pPicture->kind() == OrvPicture::Pixels && !pPicture->isReadableAt(Level));
    const bool PassesDescriptions
        = !IsCropped && (pSelf->Deferred || OrvDelivery::isTarget(pOperation->node));
    if (pSelf->Cached || (NeedsProgram && !PassesDescriptions)) {
        OrvPictureProgram(pPicture).renderOutput(pContext, *pRegion, Level);
        return TRUE;
    }
    if (NeedsProgram || !IsCropped
        || gegl_rectangle_contains(&pSelf->Extent, gegl_buffer_get_extent(GEGL_BUFFER(pInput)))) {
        gegl_operation_context_set_object(pContext, "output", pInput);
        return TRUE;
    }
    GeglBuffer* pInside = gegl_buffer_create_sub_buffer(GEGL_BUFFER(pInput), &pSelf->Extent);
    gegl_object_set_has_forked(G_OBJECT(pInside));
    gegl_operation_context_take_object(pContext, "output", G_OBJECT(pInside));
    return TRUE;
}

void output_operation_class_init(OutputOperationClass* pClass)
{
    GeglOperationClass* pOperationClass = GEGL_OPERATION_CLASS(pClass);
    pOperationClass->prepare = prepare;
    pOperationClass->get_bounding_box = boundingBox;
    pOperationClass->get_required_for_output = requiredForOutput;
    pOperationClass->get_invalidated_by_change = OrvOwnOperation::sameRegion;
    pOperationClass->process = process;
    OrvOwnOperation::describe(pOperationClass, OrvOutputOperation::Name, "Output");
}

void output_operation_init(OutputOperation*) { }

} // namespace

void OrvOutputOperation::registerType()
{
    g_type_class_ref(output_operation_get_type());
}

bool OrvOutputOperation::passesOn(GeglNode* pNode)
{
    const OutputOperation* pSelf = instanceOf(pNode);
    return pSelf && !pSelf->Cached && !pSelf->FullScale && gegl_rectangle_is_empty(&pSelf->Extent);
}

bool OrvOutputOperation::keepsFullScale(GeglNode* pNode)
{
    const OutputOperation* pSelf = instanceOf(pNode);
    return pSelf && pSelf->Cached && pSelf->FullScale;
}

void OrvOutputOperation::setExtent(GeglNode* pNode, const GeglRectangle& Extent)
{
    OrvOwnOperation::behind<OutputOperation>(pNode)->Extent = Extent;
}

GeglRectangle OrvOutputOperation::extent(GeglNode* pNode)
{
    return OrvOwnOperation::behind<OutputOperation>(pNode)->Extent;
}

void OrvOutputOperation::setCached(GeglNode* pNode, bool Cached)
{
    OrvOwnOperation::behind<OutputOperation>(pNode)->Cached = Cached;
    OrvOwnOperation::setKept(pNode, Cached);
}

void OrvOutputOperation::setDeferred(GeglNode* pNode, bool Deferred)
{
    OrvOwnOperation::behind<OutputOperation>(pNode)->Deferred = Deferred;
}

void OrvOutputOperation::setFullScale(GeglNode* pNode, bool FullScale)
{
    OrvOwnOperation::behind<OutputOperation>(pNode)->FullScale = FullScale;
}
