#include "OrvDdi/Engine/OrvFitOperation.h"

#include "OrvDdi/Engine/OrvOwnOperation.h"
#include "OrvDdi/Engine/OrvPictureProgram.h"
#include "OrvDdi/Image/OrvResamplingTaps.h"
#include "OrvDdi/Image/OrvUdimLayout.h"

#include <algorithm>
#include <cmath>

namespace {

struct FitOperation {
    GeglOperationFilter Parent;
    GeglRectangle From, To; ///< the planes
    double RatioX, RatioY; ///< pixels of the one plane for one of the other
};

struct FitOperationClass {
    GeglOperationFilterClass Parent;
};

GType fit_operation_get_type();
G_DEFINE_TYPE(FitOperation, fit_operation, GEGL_TYPE_OPERATION_FILTER)

FitOperation* instance(void* pOperation)
{
    return static_cast<FitOperation*>(pOperation);
}

/// Farther away there are no pixels; small enough to be added and multiplied.
constexpr int Far = 1 << 28;
const GeglRectangle Everywhere{-Far, -Far, 2 * Far, 2 * Far};

/// What a stretch of one axis becomes at a ratio, with all that the filter takes from around it.
void stretch(int First, int Length, double Ratio, double Reach, int& NewFirst, int& NewLength)
{
    const auto pixel = [](double Place) { return int(std::clamp(Place, -double(Far), double(Far))); };
    NewFirst = pixel(std::floor(First * Ratio - Reach)) - 1;
    NewLength = pixel(std::ceil((double(First) + Length) * Ratio + Reach)) + 1 - NewFirst;
}

GeglRectangle stretched(const GeglRectangle& Region, double RatioX, double RatioY, double ReachX,
    double ReachY, GeglRectangle Within)
{
    GeglRectangle Result;
    stretch(Region.x, Region.width, RatioX, ReachX, Result.x, Result.width);
    stretch(Region.y, Region.height, RatioY, ReachY, Result.y, Result.height);
    if (!gegl_rectangle_intersect(&Result, &Result, &Within))
        return {};
    return Result;
}

/// The part of the source that a region needs.
GeglRectangle needed(const FitOperation* pSelf, const GeglRectangle& Region)
{
    return stretched(Region, pSelf->RatioX, pSelf->RatioY, std::max(1.0, pSelf->RatioX),
        std::max(1.0, pSelf->RatioY), pSelf->From);
}

void prepare(GeglOperation* pOperation)
{
    OrvOwnOperation::setPremultiplied(pOperation, {"input", "output"});
}

GeglRectangle boundingBox(GeglOperation* pOperation)
{
    const GeglRectangle* pInput = gegl_operation_source_get_bounding_box(pOperation, "input");
    return pInput && !gegl_rectangle_is_empty(pInput) ? instance(pOperation)->To : GeglRectangle{};
}

GeglRectangle requiredForOutput(GeglOperation* pOperation, const char*, const GeglRectangle* pRegion)
{
    return needed(instance(pOperation), *pRegion);
}

GeglRectangle invalidatedByChange(GeglOperation* pOperation, const char*, const GeglRectangle* pRegion)
{
    const FitOperation* pSelf = instance(pOperation);
    const double RatioX = 1.0 / pSelf->RatioX, RatioY = 1.0 / pSelf->RatioY;
    return stretched(*pRegion, RatioX, RatioY, std::max(1.0, RatioX), std::max(1.0, RatioY), pSelf->To);
}

void addWeighted(const float* pFrom, float Weight, int Count, float* pTo)
{
    for (int Index = 0; Index < Count; ++Index)
        pTo[Index] += Weight * pFrom[Index];
}

gboolean process(
    GeglOperation* pOperation, GeglOperationContext* pContext, const char*, const GeglRectangle* pRegion, int)
{
    const FitOperation* pSelf = instance(pOperation);
    GObject* pInput = gegl_operation_context_get_object(pContext, "input");
    const GeglRectangle Source = needed(pSelf, *pRegion);
    if (!pInput || gegl_rectangle_is_empty(&Source))
        return FALSE;
    const int Width = pRegion->width, Height = pRegion->height;
    std::vector<float> Read(size_t(Source.width) * size_t(Source.height) * 4);
    OrvPictureProgram(OrvPicture::of(pInput))
        .renderTo(Read.data(), Source.width * 16, OrvPixelLayout::Premultiplied, Source, 0);

    const auto Columns
        = OrvResamplingTaps::along(pRegion->x, Width, pSelf->RatioX, pSelf->From.x, pSelf->From.width);
    std::vector<float> Narrow(size_t(Width) * size_t(Source.height) * 4);
    for (int Row = 0; Row < Source.height; ++Row) {
        const float* pRow = Read.data() + size_t(Row) * size_t(Source.width) * 4;
        float* pTo = Narrow.data() + size_t(Row) * size_t(Width) * 4;
        for (const OrvResamplingTaps& Column : Columns) {
            for (size_t Tap = 0; Tap < Column.Weights.size(); ++Tap)
                addWeighted(pRow + (size_t(Column.First - Source.x) + Tap) * 4, Column.Weights[Tap], 4, pTo);
            pTo += 4;
        }
    }

    const auto Rows
        = OrvResamplingTaps::along(pRegion->y, Height, pSelf->RatioY, pSelf->From.y, pSelf->From.height);
    const size_t Stride = size_t(Width) * 4;
    std::vector<float> Written(Stride * size_t(Height));
    for (int Row = 0; Row < Height; ++Row) {
        const OrvResamplingTaps& Taken = Rows[size_t(Row)];
        for (size_t Tap = 0; Tap < Taken.Weights.size(); ++Tap) {
            addWeighted(Narrow.data() + Stride * (size_t(Taken.First - Source.y) + Tap), Taken.Weights[Tap],
                int(Stride), Written.data() + Stride * size_t(Row));
        }
    }
    gegl_buffer_set(gegl_operation_context_get_target(pContext, "output"), pRegion, 0,
        babl_format("RaGaBaA float"), Written.data(), GEGL_AUTO_ROWSTRIDE);
    return TRUE;
}

void fit_operation_class_init(FitOperationClass* pClass)
{
    GeglOperationClass* pOperationClass = GEGL_OPERATION_CLASS(pClass);
    pOperationClass->prepare = prepare;
    pOperationClass->get_bounding_box = boundingBox;
    pOperationClass->get_required_for_output = requiredForOutput;
    pOperationClass->get_invalidated_by_change = invalidatedByChange;
    pOperationClass->process = process;
    OrvOwnOperation::describe(pOperationClass, OrvFitOperation::Name, "Fit");
}

void fit_operation_init(FitOperation* pSelf)
{
    pSelf->RatioX = pSelf->RatioY = 1.0;
}

GeglRectangle planeOf(const OrvUdimLayout& Layout)
{
    const QRect Extent = Layout.extent();
    return {Extent.x(), Extent.y(), Extent.width(), Extent.height()};
}

} // namespace

void OrvFitOperation::registerType()
{
    g_type_class_ref(fit_operation_get_type());
}

double OrvFitOperation::setLayouts(GeglNode* pNode, const OrvUdimLayout& From, const OrvUdimLayout& To)
{
    FitOperation* pSelf = OrvOwnOperation::behind<FitOperation>(pNode);
    pSelf->From = planeOf(From);
    pSelf->To = planeOf(To);
    pSelf->RatioX = double(From.tileSize().width()) / To.tileSize().width();
    pSelf->RatioY = double(From.tileSize().height()) / To.tileSize().height();
    return std::max({1.0, pSelf->RatioX, pSelf->RatioY});
}

double OrvFitOperation::setFactor(GeglNode* pNode, double Factor, const GeglRectangle& To)
{
    FitOperation* pSelf = OrvOwnOperation::behind<FitOperation>(pNode);
    pSelf->RatioX = pSelf->RatioY = 1.0 / Factor;
    pSelf->From = pSelf->To = Everywhere;
    if (!gegl_rectangle_is_empty(&To)) {
        pSelf->To = To;
        const int Width = int(std::ceil(To.width / Factor)), Height = int(std::ceil(To.height / Factor));
        pSelf->From = {int(std::floor(To.x / Factor)), int(std::floor(To.y / Factor)), Width, Height};
    }
    return std::max(1.0, pSelf->RatioX);
}
