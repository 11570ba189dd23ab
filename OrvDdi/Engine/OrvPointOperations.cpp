#include "OrvDdi/Engine/OrvPointOperations.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace {

/// A parameter as property editors see it: a number, or a colour when it has no range.
struct Parameter {
    const char *pName, *pLabel, *pDescription;
    double Minimum, Maximum, Default;
    double UiMinimum, UiMaximum;
    const char* pUnit;
    const char* pDefaultColor = nullptr;
};

constexpr int MaximumParameters = 6;

/// Parameter values in the order of the description.
struct Values {
    std::array<double, MaximumParameters> Numbers;
    std::array<GeglColor*, MaximumParameters> Colors;
};

struct Description {
    const char *pName, *pTitle, *pText, *pFormat;
    std::vector<Parameter> Parameters;
    /// Filters read and write pixels; sources write them at positions.
    void (*filter)(const Values& Given, const float* pFrom, float* pTo, glong Count);
    void (*render)(const Values& Given, const GeglRectangle& Region, int Level, float* pTo);
};

// ---- one class for all filters and one for all sources; the class knows its description

template <class ParentInstance, class ParentClass>
struct PointOperation {
    struct Instance {
        ParentInstance Parent;
        Values Given;
    };
    struct Class {
        ParentClass Parent;
        const Description* pDescription;
    };

    static Instance* instance(void* pObject) { return static_cast<Instance*>(pObject); }
    static const Description& description(void* pObject)
    {
        return *reinterpret_cast<Class*>(static_cast<GTypeInstance*>(pObject)->g_class)->pDescription;
    }

    static void setProperty(GObject* pObject, guint Id, const GValue* pValue, GParamSpec*)
    {
        Values& Given = instance(pObject)->Given;
        if (description(pObject).Parameters[Id - 1].pDefaultColor) {
            GeglColor*& pColor = Given.Colors[Id - 1];
            g_clear_object(&pColor);
            pColor = GEGL_COLOR(g_value_dup_object(pValue));
        } else {
            Given.Numbers[Id - 1] = g_value_get_double(pValue);
        }
    }

    static void getProperty(GObject* pObject, guint Id, GValue* pValue, GParamSpec*)
    {
        const Values& Given = instance(pObject)->Given;
        if (description(pObject).Parameters[Id - 1].pDefaultColor)
            g_value_set_object(pValue, Given.Colors[Id - 1]);
        else
            g_value_set_double(pValue, Given.Numbers[Id - 1]);
    }

    static void finalize(GObject* pObject)
    {
        for (GeglColor*& pColor : instance(pObject)->Given.Colors)
            g_clear_object(&pColor);
        // The class above the one of this object; types of this family have none below them.
        auto* pParent = static_cast<GObjectClass*>(g_type_class_peek_parent(G_OBJECT_GET_CLASS(pObject)));
        pParent->finalize(pObject);
    }

    static void prepare(GeglOperation* pOperation)
    {
        const Babl* pFormat = babl_format(description(pOperation).pFormat);
        if (gegl_node_has_pad(pOperation->node, "input"))
            gegl_operation_set_format(pOperation, "input", pFormat);
        gegl_operation_set_format(pOperation, "output", pFormat);
    }

    static void installParameter(GObjectClass* pClass, guint Id, const Parameter& One)
    {
        const auto Flags = GParamFlags(G_PARAM_READWRITE | G_PARAM_CONSTRUCT | GEGL_PARAM_PAD_INPUT);
        GParamSpec* pSpec = nullptr;
        if (One.pDefaultColor) {
            pSpec = gegl_param_spec_color_from_string(
                One.pName, One.pLabel, One.pDescription, One.pDefaultColor, Flags);
        } else {
            pSpec = gegl_param_spec_double(One.pName, One.pLabel, One.pDescription, One.Minimum, One.Maximum,
                One.Default, One.UiMinimum, One.UiMaximum, 1.0, Flags);
        }
        if (One.pUnit)
            gegl_param_spec_set_property_key(pSpec, "unit", One.pUnit);
        g_object_class_install_property(pClass, Id, pSpec);
    }

    static void classInit(void* pClassStruct, void* pDescription)
    {
        auto* pClass = static_cast<Class*>(pClassStruct);
        pClass->pDescription = static_cast<const Description*>(pDescription);
        GObjectClass* pObjectClass = G_OBJECT_CLASS(pClassStruct);
        pObjectClass->set_property = setProperty;
        pObjectClass->get_property = getProperty;
        pObjectClass->finalize = finalize;
        guint Id = 0;
        for (const Parameter& One : pClass->pDescription->Parameters)
            installParameter(pObjectClass, ++Id, One);
        GeglOperationClass* pOperationClass = GEGL_OPERATION_CLASS(pClassStruct);
        pOperationClass->prepare = prepare;
        gegl_operation_class_set_keys(pOperationClass, "name", pClass->pDescription->pName, "title",
            pClass->pDescription->pTitle, "description", pClass->pDescription->pText, "categories", "color",
            nullptr);
    }
};

using Filter = PointOperation<GeglOperationPointFilter, GeglOperationPointFilterClass>;
using Source = PointOperation<GeglOperationPointRender, GeglOperationPointRenderClass>;

gboolean filterProcess(
    GeglOperation* pOperation, void* pFrom, void* pTo, glong Count, const GeglRectangle*, int)
{
    Filter::description(pOperation)
        .filter(Filter::instance(pOperation)->Given, static_cast<const float*>(pFrom),
            static_cast<float*>(pTo), Count);
    return TRUE;
}

gboolean sourceProcess(GeglOperation* pOperation, void* pTo, glong, const GeglRectangle* pRegion, int Level)
{
    Source::description(pOperation)
        .render(Source::instance(pOperation)->Given, *pRegion, Level, static_cast<float*>(pTo));
    return TRUE;
}

GeglRectangle everywhere(GeglOperation*)
{
    return gegl_rectangle_infinite_plane();
}

void filterClassInit(void* pClass, void* pDescription)
{
    Filter::classInit(pClass, pDescription);
    GEGL_OPERATION_POINT_FILTER_CLASS(pClass)->process = filterProcess;
}

void sourceClassInit(void* pClass, void* pDescription)
{
    Source::classInit(pClass, pDescription);
    GEGL_OPERATION_CLASS(pClass)->get_bounding_box = everywhere;
    GEGL_OPERATION_POINT_RENDER_CLASS(pClass)->process = sourceProcess;
}

template <class Family>
void registerType(const Description& Kind, GType Parent, GClassInitFunc Init, const char* pTypeName)
{
    GTypeInfo Info = {};
    Info.class_size = sizeof(typename Family::Class);
    Info.class_init = Init;
    Info.class_data = &Kind;
    Info.instance_size = sizeof(typename Family::Instance);
    g_type_class_ref(g_type_register_static(Parent, pTypeName, &Info, GTypeFlags(0)));
}

// ---- the operations

void levels(const Values& Given, const float* pFrom, float* pTo, glong Count)
{
    const auto Black = float(Given.Numbers[0]), White = float(Given.Numbers[1]);
    const auto OutBlack = float(Given.Numbers[3]), OutWhite = float(Given.Numbers[4]);
    const float Exponent = 1.0f / float(Given.Numbers[2]);
    const float Width = std::abs(White - Black) < 1e-6f ? 1e-6f : White - Black;
    for (glong Index = 0; Index < Count * 4; Index += 4) {
        for (int Component = 0; Component < 3; ++Component) {
            float Value = (pFrom[Index + Component] - Black) / Width;
            // The curve is meant for what lies above black.
            if (Exponent != 1.0f && Value > 0.0f)
                Value = std::pow(Value, Exponent);
            pTo[Index + Component] = OutBlack + Value * (OutWhite - OutBlack);
        }
        pTo[Index + 3] = pFrom[Index + 3];
    }
}

/// Hue in sixths of the circle.
struct HsvColor {
    float Hue, Saturation, Value;
};

HsvColor hsvOfRgb(const float* pRgb)
{
    const float Red = pRgb[0], Green = pRgb[1], Blue = pRgb[2];
    const float High = std::max({Red, Green, Blue}), Low = std::min({Red, Green, Blue});
    const float Chroma = High - Low;
    HsvColor Result{0.0f, High > 0.0f ? Chroma / High : 0.0f, High};
    if (Chroma > 0.0f) {
        if (High == Red)
            Result.Hue = (Green - Blue) / Chroma;
        else if (High == Green)
            Result.Hue = 2.0f + (Blue - Red) / Chroma;
        else
            Result.Hue = 4.0f + (Red - Green) / Chroma;
    }
    return Result;
}

void rgbOfHsv(const HsvColor& Color, float* pRgb)
{
    constexpr float Offsets[3] = {5.0f, 3.0f, 1.0f};
    for (int Component = 0; Component < 3; ++Component) {
        float Position = std::fmod(Offsets[Component] + Color.Hue, 6.0f);
        if (Position < 0.0f)
            Position += 6.0f;
        const float Fall = std::clamp(std::min(Position, 4.0f - Position), 0.0f, 1.0f);
        pRgb[Component] = Color.Value - Color.Value * Color.Saturation * Fall;
    }
}

void hueSaturationValue(const Values& Given, const float* pFrom, float* pTo, glong Count)
{
    const auto Turn = float(Given.Numbers[0] / 60.0), Saturation = float(Given.Numbers[1]),
               Value = float(Given.Numbers[2]);
    for (glong Index = 0; Index < Count * 4; Index += 4) {
        HsvColor Color = hsvOfRgb(pFrom + Index);
        Color.Hue += Turn;
        Color.Saturation = std::min(Color.Saturation * Saturation, std::max(1.0f, Color.Saturation));
        Color.Value *= Value;
        rgbOfHsv(Color, pTo + Index);
        pTo[Index + 3] = pFrom[Index + 3];
    }
}

void scaleAndOffset(const Values& Given, const float* pFrom, float* pTo, glong Count)
{
    const auto Scale = float(Given.Numbers[0]), Offset = float(Given.Numbers[1]);
    for (glong Index = 0; Index < Count * 4; Index += 4) {
        for (int Component = 0; Component < 3; ++Component)
            pTo[Index + Component] = pFrom[Index + Component] * Scale + Offset;
        pTo[Index + 3] = pFrom[Index + 3];
    }
}

void conicalGradient(const Values& Given, const GeglRectangle& Region, int Level, float* pTo)
{
    constexpr double FullTurn = 6.283185307179586;
    float Start[4], End[4];
    const Babl* pFormat = babl_format("RaGaBaA float");
    gegl_color_get_pixel(Given.Colors[4], pFormat, Start);
    gegl_color_get_pixel(Given.Colors[5], pFormat, End);
    const double Scale = double(1 << Level);
    const double Repeats = std::max(Given.Numbers[3], 1.0);
    for (int Row = 0; Row < Region.height; ++Row) {
        for (int Column = 0; Column < Region.width; ++Column) {
            const double X = (Region.x + Column + 0.5) * Scale - Given.Numbers[0];
            const double Y = (Region.y + Row + 0.5) * Scale - Given.Numbers[1];
            double Turn = std::atan2(Y, X) / FullTurn - Given.Numbers[2] / 360.0;
            Turn = (Turn - std::floor(Turn)) * Repeats;
            const auto Share = float(Turn - std::floor(Turn));
            for (int Component = 0; Component < 4; ++Component)
                *pTo++ = Start[Component] + (End[Component] - Start[Component]) * Share;
        }
    }
}

const Description& levelsDescription()
{
    static const Description Levels{OrvPointOperations::LevelsName, "Levels",
        "Moves black, white and the grays between them, as values look on a screen", "R'G'B'A float",
        {{"in-black", "Input black", "What becomes black", -10.0, 10.0, 0.0, 0.0, 1.0, nullptr},
            {"in-white", "Input white", "What becomes white", -10.0, 10.0, 1.0, 0.0, 1.0, nullptr},
            {"gamma", "Gamma", "Above one brightens the grays", 0.01, 100.0, 1.0, 0.1, 4.0, nullptr},
            {"out-black", "Output black", "What black becomes", -10.0, 10.0, 0.0, 0.0, 1.0, nullptr},
            {"out-white", "Output white", "What white becomes", -10.0, 10.0, 1.0, 0.0, 1.0, nullptr}},
        levels, nullptr};
    return Levels;
}

const Description& hueSaturationValueDescription()
{
    static const Description HueSaturationValue{OrvPointOperations::HueSaturationValueName,
        "Hue Saturation Value", "Turns the hue and scales saturation and value", "R'G'B'A float",
        {{"hue", "Hue", "Turns all hues by an angle", -180.0, 180.0, 0.0, -180.0, 180.0, "degree"},
            {"saturation", "Saturation", "Zero turns colors into grays", 0.0, 100.0, 1.0, 0.0, 2.0, nullptr},
            {"value", "Value", "Scales the brightness", 0.0, 100.0, 1.0, 0.0, 2.0, nullptr}},
        hueSaturationValue, nullptr};
    return HueSaturationValue;
}

const Description& scaleAndOffsetDescription()
{
    static const Description ScaleAndOffset{OrvPointOperations::ScaleAndOffsetName, "Scale and Offset",
        "Multiplies linear values and adds to them; for data such as displacement", "RGBA float",
        {{"scale", "Scale", "What values are multiplied by", -1000.0, 1000.0, 1.0, -2.0, 2.0, nullptr},
            {"offset", "Offset", "What is added then", -1000.0, 1000.0, 0.0, -1.0, 1.0, nullptr}},
        scaleAndOffset, nullptr};
    return ScaleAndOffset;
}

const Description& conicalGradientDescription()
{
    static const Description ConicalGradient{OrvPointOperations::ConicalGradientName, "Conical Gradient",
        "Colors that change around a center", "RaGaBaA float",
        {{"x", "X", "Horizontal position of the center", -1e6, 1e6, 512.0, 0.0, 4096.0, "pixel-coordinate"},
            {"y", "Y", "Vertical position of the center", -1e6, 1e6, 512.0, 0.0, 4096.0, "pixel-coordinate"},
            {"angle", "Angle", "Where the gradient begins", -360.0, 360.0, 0.0, -180.0, 180.0, "degree"},
            {"repeats", "Repeats", "How often it runs through in one turn", 1.0, 1000.0, 1.0, 1.0, 32.0,
                nullptr},
            {"start-color", "Start color", "The color at the beginning", 0, 0, 0, 0, 0, nullptr, "black"},
            {"end-color", "End color", "The color at the end", 0, 0, 0, 0, 0, nullptr, "white"}},
        nullptr, conicalGradient};
    return ConicalGradient;
}

} // namespace

void OrvPointOperations::registerTypes()
{
    const GType FilterParent = GEGL_TYPE_OPERATION_POINT_FILTER,
                SourceParent = GEGL_TYPE_OPERATION_POINT_RENDER;
    registerType<Filter>(levelsDescription(), FilterParent, filterClassInit, "OrvLevels");
    registerType<Filter>(
        hueSaturationValueDescription(), FilterParent, filterClassInit, "OrvHueSaturationValue");
    registerType<Filter>(scaleAndOffsetDescription(), FilterParent, filterClassInit, "OrvScaleAndOffset");
    registerType<Source>(conicalGradientDescription(), SourceParent, sourceClassInit, "OrvConicalGradient");
}
