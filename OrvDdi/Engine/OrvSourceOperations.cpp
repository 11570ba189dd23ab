#include "OrvDdi/Engine/OrvSourceOperations.h"

#include "OrvDdi/Engine/OrvDelivery.h"
#include "OrvDdi/Engine/OrvOwnOperation.h"
#include "OrvDdi/Engine/OrvPictureProgram.h"

#include <algorithm>

namespace {

// ---- a buffer

struct BufferOperation {
    GeglOperationSource Parent;
    GeglBuffer* pBuffer;
    bool Deferred;
};

struct BufferOperationClass {
    GeglOperationSourceClass Parent;
};

GType buffer_operation_get_type();
G_DEFINE_TYPE(BufferOperation, buffer_operation, GEGL_TYPE_OPERATION_SOURCE)

BufferOperation* bufferInstance(void* pOperation)
{
    return static_cast<BufferOperation*>(pOperation);
}

void bufferPrepare(GeglOperation* pOperation)
{
    if (GeglBuffer* pBuffer = bufferInstance(pOperation)->pBuffer)
        gegl_operation_set_format(pOperation, "output", gegl_buffer_get_format(pBuffer));
}

GeglRectangle bufferBoundingBox(GeglOperation* pOperation)
{
    GeglBuffer* pBuffer = bufferInstance(pOperation)->pBuffer;
    return pBuffer ? *gegl_buffer_get_extent(pBuffer) : GeglRectangle{};
}

gboolean bufferProcess(GeglOperation* pOperation, GeglOperationContext* pContext, const char*,
    const GeglRectangle* pRegion, int Level)
{
    const BufferOperation* pSelf = bufferInstance(pOperation);
    GeglBuffer* pBuffer = pSelf->pBuffer;
    if (!pBuffer)
        return FALSE;
    if (Level > 0 && !pSelf->Deferred && !OrvDelivery::isTarget(pOperation->node)) {
        const OrvPicture::Pointer pPicture = OrvPicture::pixels(pBuffer);
        if (!pPicture->isReadableAt(Level)) {
            OrvPictureProgram(pPicture).renderOutput(pContext, *pRegion, Level);
            return TRUE;
        }
    }
    // Later steps must not compute in place in what is the document's.
    gegl_object_set_has_forked(G_OBJECT(pBuffer));
    gegl_operation_context_set_object(pContext, "output", G_OBJECT(pBuffer));
    return TRUE;
}

void bufferDispose(GObject* pObject)
{
    g_clear_object(&bufferInstance(pObject)->pBuffer);
    G_OBJECT_CLASS(buffer_operation_parent_class)->dispose(pObject);
}

void buffer_operation_class_init(BufferOperationClass* pClass)
{
    G_OBJECT_CLASS(pClass)->dispose = bufferDispose;
    GeglOperationClass* pOperationClass = GEGL_OPERATION_CLASS(pClass);
    pOperationClass->prepare = bufferPrepare;
    pOperationClass->get_bounding_box = bufferBoundingBox;
    pOperationClass->process = bufferProcess;
    OrvOwnOperation::describe(pOperationClass, OrvSourceOperations::BufferName, "Buffer");
}

void buffer_operation_init(BufferOperation*) { }

// ---- a colour

struct UniformOperation {
    GeglOperationSource Parent;
    float Color[4];
    GeglRectangle Extent;
    bool Deferred;
};

struct UniformOperationClass {
    GeglOperationSourceClass Parent;
};

GType uniform_operation_get_type();
G_DEFINE_TYPE(UniformOperation, uniform_operation, GEGL_TYPE_OPERATION_SOURCE)

UniformOperation* uniformInstance(void* pOperation)
{
    return static_cast<UniformOperation*>(pOperation);
}

void uniformPrepare(GeglOperation* pOperation)
{
    OrvOwnOperation::setPremultiplied(pOperation, {"output"});
}

GeglRectangle uniformBoundingBox(GeglOperation* pOperation)
{
    return uniformInstance(pOperation)->Extent;
}

gboolean uniformProcess(GeglOperation* pOperation, GeglOperationContext* pContext, const char*,
    const GeglRectangle* pRegion, int Level)
{
    const UniformOperation* pSelf = uniformInstance(pOperation);
    const OrvPicture::Pointer pPicture = OrvPicture::uniform(pSelf->Color, pSelf->Extent);
    if (pSelf->Deferred || OrvDelivery::isTarget(pOperation->node)) {
        gegl_operation_context_take_object(pContext, "output", G_OBJECT(OrvPicture::carrier(pPicture)));
        return TRUE;
    }
    OrvPictureProgram(pPicture).renderOutput(pContext, *pRegion, Level);
    return TRUE;
}

void uniform_operation_class_init(UniformOperationClass* pClass)
{
    GeglOperationClass* pOperationClass = GEGL_OPERATION_CLASS(pClass);
    pOperationClass->prepare = uniformPrepare;
    pOperationClass->get_bounding_box = uniformBoundingBox;
    pOperationClass->process = uniformProcess;
    OrvOwnOperation::describe(pOperationClass, OrvSourceOperations::UniformName, "Uniform");
}

void uniform_operation_init(UniformOperation*) { }

} // namespace

void OrvSourceOperations::registerTypes()
{
    g_type_class_ref(buffer_operation_get_type());
    g_type_class_ref(uniform_operation_get_type());
}

void OrvSourceOperations::setBuffer(GeglNode* pNode, GeglBuffer* pBuffer)
{
    g_set_object(&OrvOwnOperation::behind<BufferOperation>(pNode)->pBuffer, pBuffer);
}

void OrvSourceOperations::setUniform(GeglNode* pNode, const float* pColor, const GeglRectangle& Extent)
{
    UniformOperation* pSelf = OrvOwnOperation::behind<UniformOperation>(pNode);
    std::copy(pColor, pColor + 4, pSelf->Color);
    pSelf->Extent = Extent;
}

void OrvSourceOperations::setBufferDeferred(GeglNode* pNode, bool Deferred)
{
    OrvOwnOperation::behind<BufferOperation>(pNode)->Deferred = Deferred;
}

void OrvSourceOperations::setUniformDeferred(GeglNode* pNode, bool Deferred)
{
    OrvOwnOperation::behind<UniformOperation>(pNode)->Deferred = Deferred;
}
