#include "OrvDdi/Engine/OrvBlendOperation.h"

#include "OrvDdi/Engine/OrvDelivery.h"
#include "OrvDdi/Engine/OrvOwnOperation.h"
#include "OrvDdi/Engine/OrvPictureProgram.h"

#include <cstring>

namespace {

struct BlendOperation {
    GeglOperationComposer3 Parent;
    OrvBlendParameters Parameters;
    bool Deferred;
    bool Cached;
};

struct BlendOperationClass {
    GeglOperationComposer3Class Parent;
};

GType blend_operation_get_type();
G_DEFINE_TYPE(BlendOperation, blend_operation, GEGL_TYPE_OPERATION_COMPOSER3)

BlendOperation* instance(void* pOperation)
{
    return static_cast<BlendOperation*>(pOperation);
}

/// A blend that leaves its base as it is reads nothing else.
bool readsOver(const OrvBlendParameters& Parameters)
{
    return Parameters.Enabled && Parameters.Amount != 0.0f;
}

void prepare(GeglOperation* pOperation)
{
    OrvOwnOperation::setPremultiplied(pOperation, {"input", "aux", "aux2", "output"});
}

GeglRectangle boundingBox(GeglOperation* pOperation)
{
    GeglRectangle Box = {};
    if (const GeglRectangle* pBase = gegl_operation_source_get_bounding_box(pOperation, "input"))
        Box = *pBase;
    const GeglRectangle* pOver = gegl_operation_source_get_bounding_box(pOperation, "aux");
    if (pOver && instance(pOperation)->Parameters.Enabled)
        gegl_rectangle_bounding_box(&Box, &Box, pOver);
    return Box;
}

bool readsMask(GeglOperation* pOperation)
{
    return instance(pOperation)->Parameters.MaskEnabled && gegl_operation_get_source_node(pOperation, "aux2");
}

/// A whole picture that is not mixed with the base hides it: nothing below needs to be computed.
bool readsBase(GeglOperation* pOperation)
{
    const OrvBlendParameters& Parameters = instance(pOperation)->Parameters;
    return !Parameters.PassThrough || !Parameters.Enabled || Parameters.Amount != 1.0f
        || Parameters.AdvancedEnabled || readsMask(pOperation);
}

GeglRectangle requiredForOutput(GeglOperation* pOperation, const char* pPad, const GeglRectangle* pRegion)
{
    const OrvBlendParameters& Parameters = instance(pOperation)->Parameters;
    const bool IsBase = std::strcmp(pPad, "input") == 0, IsMask = std::strcmp(pPad, "aux2") == 0;
    if (IsBase ? !readsBase(pOperation) : !readsOver(Parameters) || (IsMask && !Parameters.MaskEnabled))
        return {};
    return *pRegion;
}

OrvPicture::Pointer inputPicture(GeglOperationContext* pContext, const char* pPad)
{
    return OrvPicture::of(gegl_operation_context_get_object(pContext, pPad));
}

gboolean process(GeglOperation* pOperation, GeglOperationContext* pContext, const char*,
    const GeglRectangle* pRegion, int Level)
{
    const BlendOperation* pSelf = instance(pOperation);
    const OrvBlendParameters& Parameters = pSelf->Parameters;
    OrvPicture::Pointer pPicture = inputPicture(pContext, "input");
    if (readsOver(Parameters)) {
        pPicture = OrvPicture::blend(Parameters, pPicture, inputPicture(pContext, "aux"),
            readsMask(pOperation) ? inputPicture(pContext, "aux2") : nullptr);
    }
    if (!pSelf->Cached && (pSelf->Deferred || OrvDelivery::isTarget(pOperation->node))) {
        gegl_operation_context_take_object(pContext, "output", G_OBJECT(OrvPicture::carrier(pPicture)));
        return TRUE;
    }
    if (!pSelf->Cached && pPicture->isReadableAt(Level)) {
        gegl_operation_context_set_object(pContext, "output", G_OBJECT(pPicture->buffer()));
        return TRUE;
    }
    OrvPictureProgram(pPicture).renderOutput(pContext, *pRegion, Level);
    return TRUE;
}

void blend_operation_class_init(BlendOperationClass* pClass)
{
    GeglOperationClass* pOperationClass = GEGL_OPERATION_CLASS(pClass);
    pOperationClass->prepare = prepare;
    pOperationClass->get_bounding_box = boundingBox;
    pOperationClass->get_required_for_output = requiredForOutput;
    pOperationClass->get_invalidated_by_change = OrvOwnOperation::sameRegion;
    pOperationClass->process = process;
    OrvOwnOperation::describe(pOperationClass, OrvBlendOperation::Name, "Blend");
}

void blend_operation_init(BlendOperation* pSelf)
{
    pSelf->Parameters = OrvBlendParameters();
}

} // namespace

void OrvBlendOperation::registerType()
{
    // The engine knows an operation by its name from the moment its class exists.
    g_type_class_ref(blend_operation_get_type());
}

const OrvBlendParameters& OrvBlendOperation::parameters(GeglNode* pNode)
{
    return OrvOwnOperation::behind<BlendOperation>(pNode)->Parameters;
}

void OrvBlendOperation::setParameters(GeglNode* pNode, const OrvBlendParameters& Parameters)
{
    OrvOwnOperation::behind<BlendOperation>(pNode)->Parameters = Parameters;
}

void OrvBlendOperation::setDeferred(GeglNode* pNode, bool Deferred)
{
    OrvOwnOperation::behind<BlendOperation>(pNode)->Deferred = Deferred;
}

void OrvBlendOperation::setCached(GeglNode* pNode, bool Cached)
{
    OrvOwnOperation::behind<BlendOperation>(pNode)->Cached = Cached;
    OrvOwnOperation::setKept(pNode, Cached);
}
