#include "OrvDdi/Engine/OrvColorOperation.h"

#include "OrvDdi/Color/OrvColorManager.h"
#include "OrvDdi/Engine/OrvOwnOperation.h"

#include <QtCore/QString>

#include <algorithm>

namespace {

struct Conversion {
    QString From, To;
    bool IsMatrix = false;
    float Factors[9] = {};
};

struct ColorOperation {
    GeglOperationPointFilter Parent;
    Conversion* pConversion;
};

struct ColorOperationClass {
    GeglOperationPointFilterClass Parent;
};

GType color_operation_get_type();
G_DEFINE_TYPE(ColorOperation, color_operation, GEGL_TYPE_OPERATION_POINT_FILTER)

ColorOperation* instance(void* pOperation)
{
    return static_cast<ColorOperation*>(pOperation);
}

void prepare(GeglOperation* pOperation)
{
    const char* pFormat = instance(pOperation)->pConversion->IsMatrix ? "RaGaBaA float" : "RGBA float";
    OrvOwnOperation::setFormat(pOperation, {"input", "output"}, babl_format(pFormat));
}

void multiply(const float* pFactors, const float* pFrom, float* pTo, glong Count)
{
    for (const float* pEnd = pFrom + Count * 4; pFrom != pEnd; pFrom += 4, pTo += 4) {
        const float Red = pFrom[0], Green = pFrom[1], Blue = pFrom[2];
        pTo[0] = pFactors[0] * Red + pFactors[1] * Green + pFactors[2] * Blue;
        pTo[1] = pFactors[3] * Red + pFactors[4] * Green + pFactors[5] * Blue;
        pTo[2] = pFactors[6] * Red + pFactors[7] * Green + pFactors[8] * Blue;
        pTo[3] = pFrom[3];
    }
}

gboolean process(GeglOperation* pOperation, void* pFrom, void* pTo, glong Count, const GeglRectangle*, int)
{
    const Conversion& Wanted = *instance(pOperation)->pConversion;
    const auto* pGiven = static_cast<const float*>(pFrom);
    auto* pMade = static_cast<float*>(pTo);
    if (Wanted.IsMatrix) {
        multiply(Wanted.Factors, pGiven, pMade, Count);
        return TRUE;
    }
    std::copy_n(pGiven, Count * 4, pMade);
    QString Error; // whoever chose the spaces has made sure of them
    OrvColorManager::transformPixels(pMade, int(Count), 1, 0, Wanted.From, Wanted.To, Error);
    // What is not there has no colour, not that which a curve makes of nothing.
    for (float* pPixel = pMade; pPixel != pMade + Count * 4; pPixel += 4) {
        if (pPixel[3] == 0.0f)
            std::fill_n(pPixel, 3, 0.0f);
    }
    return TRUE;
}

void finalize(GObject* pObject)
{
    delete instance(pObject)->pConversion;
    G_OBJECT_CLASS(color_operation_parent_class)->finalize(pObject);
}

void color_operation_class_init(ColorOperationClass* pClass)
{
    GeglOperationClass* pOperationClass = GEGL_OPERATION_CLASS(pClass);
    G_OBJECT_CLASS(pClass)->finalize = finalize;
    pOperationClass->prepare = prepare;
    GEGL_OPERATION_POINT_FILTER_CLASS(pClass)->process = process;
    OrvOwnOperation::describe(pOperationClass, OrvColorOperation::Name, "Color");
}

void color_operation_init(ColorOperation* pSelf)
{
    pSelf->pConversion = new Conversion;
}

} // namespace

void OrvColorOperation::registerType()
{
    g_type_class_ref(color_operation_get_type());
}

void OrvColorOperation::setSpaces(GeglNode* pNode, const QString& From, const QString& To)
{
    Conversion& Wanted = *OrvOwnOperation::behind<ColorOperation>(pNode)->pConversion;
    Wanted.From = From;
    Wanted.To = To;
    Wanted.IsMatrix = OrvColorManager::matrix(From, To, Wanted.Factors);
}
