#include "OrvDdi/Engine/OrvDelivery.h"

#include "OrvDdi/Engine/OrvLitPicture.h"
#include "OrvDdi/Engine/OrvOutputOperation.h"
#include "OrvDdi/Engine/OrvOwnOperation.h"
#include "OrvDdi/Engine/OrvPictureProgram.h"

#include <cstring>
#include <vector>

namespace {

constexpr char OperationName[] = "orv:delivery";

/// What is being rendered, and where to.
struct Order {
    GeglRectangle Region;
    int Level;
    OrvPixelLayout Layout;
    void* pPixels;
    int Stride;
    bool Done;
};

GeglNode* pDeliveryNode = nullptr;
GeglNode* pConnectedTarget = nullptr; ///< stays connected until another one is rendered
bool IsRendering = false;
int Level = 0;
Order* pOrder = nullptr; ///< null: the pixels are asked for as a buffer

struct DeliveryOperation {
    GeglOperationFilter Parent;
};

struct DeliveryOperationClass {
    GeglOperationFilterClass Parent;
};

GType delivery_operation_get_type();
G_DEFINE_TYPE(DeliveryOperation, delivery_operation, GEGL_TYPE_OPERATION_FILTER)

void prepare(GeglOperation* pOperation)
{
    OrvOwnOperation::setPremultiplied(pOperation, {"input", "output"});
}

gboolean process(
    GeglOperation*, GeglOperationContext* pContext, const char*, const GeglRectangle* pRegion, int Level)
{
    const OrvPicture::Pointer pPicture = OrvPicture::of(gegl_operation_context_get_object(pContext, "input"));
    if (pPicture->kind() == OrvPicture::Lit) {
        pPicture->litPicture().renderTo(
            pOrder->pPixels, pOrder->Stride, pOrder->Layout, pOrder->Region, pOrder->Level);
        pOrder->Done = true;
        gegl_operation_context_take_object(
            pContext, "output", G_OBJECT(OrvPicture::carrier(OrvPicture::nothing())));
        return TRUE;
    }
    OrvPictureProgram Program(pPicture);
    if (pOrder) {
        Program.renderTo(pOrder->pPixels, pOrder->Stride, pOrder->Layout, pOrder->Region, pOrder->Level);
        pOrder->Done = true;
        gegl_operation_context_take_object(
            pContext, "output", G_OBJECT(OrvPicture::carrier(OrvPicture::nothing())));
        return TRUE;
    }
    Program.renderOutput(pContext, *pRegion, Level);
    return TRUE;
}

void delivery_operation_class_init(DeliveryOperationClass* pClass)
{
    GeglOperationClass* pOperationClass = GEGL_OPERATION_CLASS(pClass);
    pOperationClass->prepare = prepare;
    pOperationClass->process = process;
    OrvOwnOperation::describe(pOperationClass, OperationName, "Delivery");
}

void delivery_operation_init(DeliveryOperation*) { }

void connectTo(GeglNode* pTarget)
{
    if (!pDeliveryNode)
        pDeliveryNode = OrvOwnOperation::newNode(OperationName);
    if (pConnectedTarget == pTarget)
        return;
    gegl_node_connect_to(pTarget, "output", pDeliveryNode, "input");
    pConnectedTarget = pTarget;
}

/// The engine's mipmap level for a scale, as it computes it itself.
int levelOf(double Scale)
{
    int Level = 0;
    for (; Scale <= 0.5; Scale *= 2.0)
        ++Level;
    return Level;
}

void clear(const GeglRectangle& Region, int BytesPerPixel, void* pPixels, int Stride)
{
    for (int Row = 0; Row < Region.height; ++Row)
        std::memset(
            static_cast<char*>(pPixels) + qsizetype(Row) * Stride, 0, size_t(Region.width) * BytesPerPixel);
}

/// Leaves the scaling to the engine; its result is then brought into the caller's format.
void renderScaled(const GeglRectangle& Region, double Scale, OrvPixelLayout Layout, void* pPixels, int Stride)
{
    std::vector<float> Premultiplied(size_t(Region.width) * size_t(Region.height) * 4);
    gegl_node_blit(pDeliveryNode, Scale, &Region, babl_format("RaGaBaA float"), Premultiplied.data(),
        GEGL_AUTO_ROWSTRIDE, GEGL_BLIT_DEFAULT);
    for (int Row = 0; Row < Region.height; ++Row) {
        OrvPixelKernels::best().narrowPremultiplied(Layout,
            Premultiplied.data() + qsizetype(Row) * Region.width * 4, Region.width,
            static_cast<char*>(pPixels) + qsizetype(Row) * Stride);
    }
}

/// Straight into the caller's memory.
void renderAtLevel(const GeglRectangle& Region, OrvPixelLayout Layout, void* pPixels, int Stride)
{
    Order Wanted{Region, Level, Layout, pPixels, Stride, false};
    pOrder = &Wanted;
    gegl_node_blit(pDeliveryNode, 1.0 / (1 << Level), &Region, babl_format("RaGaBaA float"), nullptr,
        GEGL_AUTO_ROWSTRIDE, GEGL_BLIT_DEFAULT);
    pOrder = nullptr;
    if (!Wanted.Done)
        clear(Region, orvBytesPerPixel(Layout), pPixels, Stride);
}

} // namespace

void OrvDelivery::registerType()
{
    g_type_class_ref(delivery_operation_get_type());
}

void OrvDelivery::release()
{
    g_clear_object(&pDeliveryNode);
    pConnectedTarget = nullptr;
}

void OrvDelivery::render(GeglNode* pTarget, const GeglRectangle& Region, double Scale, OrvPixelLayout Layout,
    void* pPixels, int Stride)
{
    connectTo(pTarget);
    IsRendering = true;
    Level = levelOf(Scale);
    if (Scale * (1 << Level) == 1.0)
        renderAtLevel(Region, Layout, pPixels, Stride);
    else
        renderScaled(Region, Scale, Layout, pPixels, Stride);
    Level = 0;
    IsRendering = false;
}

bool OrvDelivery::isTarget(const GeglNode* pNode)
{
    return IsRendering && pNode == pConnectedTarget;
}

bool OrvDelivery::delivers(const GeglNode* pNode)
{
    if (!pOrder || !pConnectedTarget)
        return false;
    return pNode == pConnectedTarget
        || (OrvOutputOperation::passesOn(pConnectedTarget)
            && gegl_node_get_producer(pConnectedTarget, "input", nullptr) == pNode);
}

void OrvDelivery::forget(const GeglNode* pNode)
{
    if (pConnectedTarget != pNode)
        return;
    gegl_node_disconnect(pDeliveryNode, "input");
    pConnectedTarget = nullptr;
}

int OrvDelivery::currentLevel()
{
    return Level;
}

OrvDelivery::FullScale::FullScale()
    : m_Outer(Level)
{
    Level = 0;
}

OrvDelivery::FullScale::~FullScale()
{
    Level = m_Outer;
}
