#include "OrvDdi/Engine/OrvShadingOperation.h"

#include "OrvDdi/Engine/OrvDelivery.h"
#include "OrvDdi/Engine/OrvLitPicture.h"
#include "OrvDdi/Engine/OrvOwnOperation.h"
#include "OrvDdi/Engine/OrvPixelBabl.h"

#include <algorithm>
#include <cstring>

namespace {

using Parameters = OrvShadingParameters;

constexpr const char* PadNames[Parameters::SlotCount]
    = {"input", "aux", "aux2", "aux3", "aux4", "aux5", "aux6", "aux7"};

struct ShadingOperation {
    GeglOperation Parent;
    Parameters Given;
    bool Cached;
};

struct ShadingOperationClass {
    GeglOperationClass Parent;
};

GType shading_operation_get_type();
G_DEFINE_TYPE(ShadingOperation, shading_operation, GEGL_TYPE_OPERATION)

ShadingOperation* instance(void* pOperation)
{
    return static_cast<ShadingOperation*>(pOperation);
}

int slotOf(const char* pPad)
{
    const auto* pFound = std::find_if(std::begin(PadNames), std::end(PadNames),
        [pPad](const char* pName) { return std::strcmp(pName, pPad) == 0; });
    return int(pFound - std::begin(PadNames));
}

GeglRectangle widened(const GeglRectangle& Region, int Margin)
{
    return {Region.x - Margin, Region.y - Margin, Region.width + 2 * Margin, Region.height + 2 * Margin};
}

void attach(GeglOperation* pOperation)
{
    const auto create = [pOperation](const char* pName, int Flags) {
        GParamSpec* pSpec = g_param_spec_object(pName, pName, pName, GEGL_TYPE_BUFFER, GParamFlags(Flags));
        gegl_operation_create_pad(pOperation, pSpec);
        g_param_spec_sink(pSpec);
    };
    create("output", int(G_PARAM_READABLE) | int(GEGL_PARAM_PAD_OUTPUT));
    for (const char* pName : PadNames)
        create(pName, int(G_PARAM_READWRITE) | int(GEGL_PARAM_PAD_INPUT));
}

void prepare(GeglOperation* pOperation)
{
    const Babl* pFormat = OrvPixelBabl::format(OrvPixelLayout::Premultiplied);
    for (const char* pPad : PadNames)
        gegl_operation_set_format(pOperation, pPad, pFormat);
    gegl_operation_set_format(pOperation, "output", pFormat);
}

GeglRectangle boundingBox(GeglOperation* pOperation)
{
    const QSize& Plane = instance(pOperation)->Given.PlaneSize;
    return {0, 0, std::max(0, Plane.width()), std::max(0, Plane.height())};
}

GeglRectangle requiredForOutput(GeglOperation* pOperation, const char* pPad, const GeglRectangle* pRegion)
{
    const Parameters& Given = instance(pOperation)->Given;
    const int Slot = slotOf(pPad);
    if (!Given.reads(Slot))
        return {};
    // A pixel of a reduced level is several of the whole picture.
    return Given.holdsHeights(Slot) ? widened(*pRegion, 1 << OrvDelivery::currentLevel()) : *pRegion;
}

GeglRectangle invalidatedByChange(GeglOperation* pOperation, const char* pPad, const GeglRectangle* pRegion)
{
    const Parameters& Given = instance(pOperation)->Given;
    const int Slot = slotOf(pPad);
    if (!Given.reads(Slot))
        return {};
    return Given.holdsHeights(Slot) ? widened(*pRegion, 1) : *pRegion;
}

gboolean process(GeglOperation* pOperation, GeglOperationContext* pContext, const char*,
    const GeglRectangle* pRegion, int Level)
{
    const ShadingOperation* pSelf = instance(pOperation);
    if (pSelf->Given.TileSize.isEmpty())
        return FALSE;
    OrvLitPicture::Pictures Inputs;
    for (int Slot = 0; Slot < Parameters::SlotCount; ++Slot) {
        if (pSelf->Given.reads(Slot))
            Inputs[size_t(Slot)]
                = OrvPicture::of(gegl_operation_context_get_object(pContext, PadNames[Slot]));
    }
    auto pPicture = std::make_shared<OrvLitPicture>(pSelf->Given, std::move(Inputs));
    if (!pSelf->Cached && OrvDelivery::delivers(pOperation->node)) {
        gegl_operation_context_take_object(
            pContext, "output", G_OBJECT(OrvPicture::carrier(OrvPicture::lit(std::move(pPicture)))));
        return TRUE;
    }
    pPicture->renderOutput(pContext, *pRegion, Level);
    return TRUE;
}

void shading_operation_class_init(ShadingOperationClass* pClass)
{
    GeglOperationClass* pOperationClass = GEGL_OPERATION_CLASS(pClass);
    pOperationClass->attach = attach;
    pOperationClass->prepare = prepare;
    pOperationClass->get_bounding_box = boundingBox;
    pOperationClass->get_required_for_output = requiredForOutput;
    pOperationClass->get_invalidated_by_change = invalidatedByChange;
    pOperationClass->process = process;
    OrvOwnOperation::describe(pOperationClass, OrvShadingOperation::Name, "Shading");
}

void shading_operation_init(ShadingOperation* pSelf)
{
    pSelf->Given = Parameters();
}

} // namespace

void OrvShadingOperation::registerType()
{
    g_type_class_ref(shading_operation_get_type());
}

const char* OrvShadingOperation::padName(int Slot)
{
    return PadNames[Slot];
}

const OrvShadingParameters& OrvShadingOperation::parameters(GeglNode* pNode)
{
    return OrvOwnOperation::behind<ShadingOperation>(pNode)->Given;
}

void OrvShadingOperation::setParameters(GeglNode* pNode, const OrvShadingParameters& Parameters)
{
    OrvOwnOperation::behind<ShadingOperation>(pNode)->Given = Parameters;
}

void OrvShadingOperation::setCached(GeglNode* pNode, bool Cached)
{
    OrvOwnOperation::behind<ShadingOperation>(pNode)->Cached = Cached;
    OrvOwnOperation::setKept(pNode, Cached);
}
