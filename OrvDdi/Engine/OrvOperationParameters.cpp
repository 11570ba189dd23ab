#include "OrvDdi/Engine/OrvOperationParameters.h"

#include "OrvDdi/Image/OrvColor.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <functional>

namespace {

QString text(const char* pText)
{
    return QString::fromUtf8(pText);
}

void describeReal(GParamSpec* pSpec, OrvOperationParameter& Parameter)
{
    const GParamSpecDouble* pDouble = G_PARAM_SPEC_DOUBLE(pSpec);
    Parameter.Type = Parameter.Unit == QLatin1String("degree") ? OrvOperationParameter::Angle
                                                               : OrvOperationParameter::Real;
    Parameter.Default = pDouble->default_value;
    Parameter.Minimum = Parameter.UiMinimum = pDouble->minimum;
    Parameter.Maximum = Parameter.UiMaximum = pDouble->maximum;
    if (GEGL_IS_PARAM_SPEC_DOUBLE(pSpec)) {
        const GeglParamSpecDouble* pDetails = GEGL_PARAM_SPEC_DOUBLE(pSpec);
        Parameter.UiMinimum = std::clamp(pDetails->ui_minimum, Parameter.Minimum, Parameter.Maximum);
        Parameter.UiMaximum = std::clamp(pDetails->ui_maximum, Parameter.Minimum, Parameter.Maximum);
        Parameter.UiGamma = pDetails->ui_gamma;
        Parameter.Step = pDetails->ui_step_small;
        Parameter.Decimals = pDetails->ui_digits;
    }
    if (!(Parameter.Step > 0.0))
        Parameter.Step = (Parameter.UiMaximum - Parameter.UiMinimum) / 100.0;
    Parameter.Decimals = std::clamp(Parameter.Decimals, 0, 6);
}

void describeInteger(GParamSpec* pSpec, OrvOperationParameter& Parameter)
{
    const GParamSpecInt* pInt = G_PARAM_SPEC_INT(pSpec);
    Parameter.Type = OrvOperationParameter::Integer;
    Parameter.Default = pInt->default_value;
    Parameter.Minimum = Parameter.UiMinimum = pInt->minimum;
    Parameter.Maximum = Parameter.UiMaximum = pInt->maximum;
    Parameter.Step = 1.0;
    if (GEGL_IS_PARAM_SPEC_INT(pSpec)) {
        const GeglParamSpecInt* pDetails = GEGL_PARAM_SPEC_INT(pSpec);
        Parameter.UiMinimum = std::clamp<double>(pDetails->ui_minimum, Parameter.Minimum, Parameter.Maximum);
        Parameter.UiMaximum = std::clamp<double>(pDetails->ui_maximum, Parameter.Minimum, Parameter.Maximum);
        Parameter.UiGamma = pDetails->ui_gamma;
        Parameter.Step = std::max(1, pDetails->ui_step_small);
    }
    Parameter.Decimals = 0;
}

void describeSeed(GParamSpec* pSpec, OrvOperationParameter& Parameter)
{
    const GParamSpecUInt* pSeed = G_PARAM_SPEC_UINT(pSpec);
    Parameter.Type = OrvOperationParameter::Integer;
    Parameter.Default = int(pSeed->default_value);
    Parameter.Minimum = 0.0;
    Parameter.Maximum = std::min<double>(pSeed->maximum, INT_MAX);
    Parameter.UiMinimum = 0.0;
    Parameter.UiMaximum = 1000.0;
    Parameter.Step = 1.0;
    Parameter.Decimals = 0;
}

void describeEnumeration(GParamSpec* pSpec, OrvOperationParameter& Parameter)
{
    const GEnumClass* pEnumeration = G_PARAM_SPEC_ENUM(pSpec)->enum_class;
    Parameter.Type = OrvOperationParameter::Enumeration;
    for (guint Index = 0; Index < pEnumeration->n_values; ++Index) {
        const GEnumValue& Value = pEnumeration->values[Index];
        Parameter.Choices.append(text(Value.value_nick));
        QString Label = text(Value.value_name);
        // Enumerations without names for users have the constants' names instead.
        if (Label.contains(QLatin1Char('_'))) {
            Label = text(Value.value_nick).replace(QLatin1Char('-'), QLatin1Char(' '));
            Label.replace(0, 1, Label.left(1).toUpper());
        }
        Parameter.ChoiceLabels.append(Label);
        if (Value.value == G_PARAM_SPEC_ENUM(pSpec)->default_value)
            Parameter.Default = text(Value.value_nick);
    }
}

/// Numbers that the engine gives a meaning in their description alone.
struct NumberedChoices {
    const char* pOperation;
    const char* pProperty;
    QStringList Choices; ///< from 0
};

const NumberedChoices* numberedChoices(const GParamSpec* pSpec)
{
    static const NumberedChoices Known[] = {
        {"gegl:text", "alignment",
            {QStringLiteral("left"), QStringLiteral("center"), QStringLiteral("right")}},
        {"gegl:text", "vertical-alignment",
            {QStringLiteral("top"), QStringLiteral("middle"), QStringLiteral("bottom")}},
    };
    if (!G_IS_PARAM_SPEC_INT(pSpec))
        return nullptr;
    const gpointer pOwner = g_type_class_peek(pSpec->owner_type);
    const char* pOperation
        = pOwner && GEGL_IS_OPERATION_CLASS(pOwner) ? GEGL_OPERATION_CLASS(pOwner)->name : nullptr;
    for (const NumberedChoices& Entry : Known) {
        if (g_strcmp0(pOperation, Entry.pOperation) == 0
            && g_strcmp0(g_param_spec_get_name(const_cast<GParamSpec*>(pSpec)), Entry.pProperty) == 0)
            return &Entry;
    }
    return nullptr;
}

void describeNumberedChoices(
    GParamSpec* pSpec, const NumberedChoices& Numbered, OrvOperationParameter& Parameter)
{
    Parameter.Type = OrvOperationParameter::Enumeration;
    Parameter.Choices = Numbered.Choices;
    for (const QString& Choice : Numbered.Choices)
        Parameter.ChoiceLabels.append(Choice.left(1).toUpper() + Choice.mid(1));
    Parameter.Default = Numbered.Choices.value(G_PARAM_SPEC_INT(pSpec)->default_value);
}

OrvColor colorOf(GeglColor* pColor)
{
    float Pixel[4] = {0.0f, 0.0f, 0.0f, 1.0f};
    if (pColor)
        gegl_color_get_pixel(pColor, babl_format("RGBA float"), Pixel);
    return {Pixel[0], Pixel[1], Pixel[2], Pixel[3]};
}

/// Sets a property of the engine's own value type.
void setValue(GeglNode* pNode, const char* pName, GType Type, const std::function<void(GValue*)>& Fill)
{
    GValue Value = G_VALUE_INIT;
    g_value_init(&Value, Type);
    Fill(&Value);
    gegl_node_set_property(pNode, pName, &Value);
    g_value_unset(&Value);
}

bool setColor(GeglNode* pNode, const char* pName, const QVariant& Value)
{
    if (Value.userType() != qMetaTypeId<OrvColor>())
        return false;
    const OrvColor Color = Value.value<OrvColor>();
    GeglColor* pColor = gegl_color_new(nullptr);
    gegl_color_set_pixel(pColor, babl_format("RGBA float"), Color.components());
    gegl_node_set(pNode, pName, pColor, nullptr);
    g_object_unref(pColor);
    return true;
}

bool setEnumeration(GeglNode* pNode, const char* pName, GParamSpec* pSpec, const QVariant& Value)
{
    const GEnumValue* pFound = g_enum_get_value_by_nick(
        G_PARAM_SPEC_ENUM(pSpec)->enum_class, Value.toString().toUtf8().constData());
    if (!pFound)
        return false;
    setValue(
        pNode, pName, pSpec->value_type, [&](GValue* pValue) { g_value_set_enum(pValue, pFound->value); });
    return true;
}

bool setNumber(GeglNode* pNode, const char* pName, GParamSpec* pSpec, const QVariant& Value)
{
    bool IsNumber = false;
    const double Number = Value.toDouble(&IsNumber);
    if (!IsNumber || std::isnan(Number))
        return false;
    setValue(pNode, pName, pSpec->value_type, [&](GValue* pValue) {
        if (G_IS_PARAM_SPEC_DOUBLE(pSpec)) {
            const GParamSpecDouble* pRange = G_PARAM_SPEC_DOUBLE(pSpec);
            g_value_set_double(pValue, std::clamp(Number, pRange->minimum, pRange->maximum));
        } else if (G_IS_PARAM_SPEC_INT(pSpec)) {
            const GParamSpecInt* pRange = G_PARAM_SPEC_INT(pSpec);
            g_value_set_int(
                pValue, int(std::clamp<double>(std::round(Number), pRange->minimum, pRange->maximum)));
        } else {
            const GParamSpecUInt* pRange = G_PARAM_SPEC_UINT(pSpec);
            g_value_set_uint(
                pValue, guint(std::clamp<double>(std::round(Number), pRange->minimum, pRange->maximum)));
        }
    });
    return true;
}

bool setNumberedChoice(GeglNode* pNode, const char* pName, GParamSpec* pSpec, const NumberedChoices& Numbered,
    const QVariant& Value)
{
    const int Index = Numbered.Choices.indexOf(Value.toString());
    if (Index >= 0)
        return setNumber(pNode, pName, pSpec, Index);
    // A bare number, as older documents have it, is as good as the name.
    bool IsNumber = false;
    const double Number = Value.toDouble(&IsNumber);
    return IsNumber && Number >= 0.0 && Number < Numbered.Choices.size()
        && setNumber(pNode, pName, pSpec, Number);
}

} // namespace

bool OrvOperationParameters::describe(GParamSpec* pSpec, OrvOperationParameter& Parameter)
{
    if (!(pSpec->flags & G_PARAM_WRITABLE))
        return false;
    Parameter.Name = text(g_param_spec_get_name(pSpec));
    Parameter.Label = text(g_param_spec_get_nick(pSpec));
    Parameter.Description = text(g_param_spec_get_blurb(pSpec));
    // What an operation reports of its result is writable to the engine, but of no use to set.
    if (Parameter.Description.contains(QLatin1String("(read only)")))
        return false;
    Parameter.Unit = text(gegl_param_spec_get_property_key(pSpec, "unit"));
    if (G_IS_PARAM_SPEC_DOUBLE(pSpec)) {
        describeReal(pSpec, Parameter);
    } else if (const NumberedChoices* pNumbered = numberedChoices(pSpec)) {
        describeNumberedChoices(pSpec, *pNumbered, Parameter);
    } else if (G_IS_PARAM_SPEC_INT(pSpec)) {
        describeInteger(pSpec, Parameter);
    } else if (G_IS_PARAM_SPEC_UINT(pSpec)) {
        describeSeed(pSpec, Parameter);
    } else if (G_IS_PARAM_SPEC_ENUM(pSpec)) {
        describeEnumeration(pSpec, Parameter);
    } else if (G_IS_PARAM_SPEC_BOOLEAN(pSpec)) {
        Parameter.Type = OrvOperationParameter::Boolean;
        Parameter.Default = bool(G_PARAM_SPEC_BOOLEAN(pSpec)->default_value);
    } else if (G_IS_PARAM_SPEC_STRING(pSpec)) {
        Parameter.Type = GEGL_IS_PARAM_SPEC_FILE_PATH(pSpec) ? OrvOperationParameter::FilePath
                                                             : OrvOperationParameter::Text;
        Parameter.Default = text(G_PARAM_SPEC_STRING(pSpec)->default_value);
    } else if (GEGL_IS_PARAM_SPEC_COLOR(pSpec)) {
        Parameter.Type = OrvOperationParameter::Color;
        Parameter.Default = QVariant::fromValue(colorOf(gegl_param_spec_color_get_default(pSpec)));
    } else {
        return false;
    }
    return true;
}

bool OrvOperationParameters::set(GeglNode* pNode, const QString& Name, const QVariant& Value)
{
    const QByteArray PropertyName = Name.toUtf8();
    const char* pName = PropertyName.constData();
    GParamSpec* pSpec = gegl_node_find_property(pNode, pName);
    if (!pSpec || !Value.isValid())
        return false;
    if (const NumberedChoices* pNumbered = numberedChoices(pSpec))
        return setNumberedChoice(pNode, pName, pSpec, *pNumbered, Value);
    if (G_IS_PARAM_SPEC_DOUBLE(pSpec) || G_IS_PARAM_SPEC_INT(pSpec) || G_IS_PARAM_SPEC_UINT(pSpec))
        return setNumber(pNode, pName, pSpec, Value);
    if (G_IS_PARAM_SPEC_ENUM(pSpec))
        return setEnumeration(pNode, pName, pSpec, Value);
    if (GEGL_IS_PARAM_SPEC_COLOR(pSpec))
        return setColor(pNode, pName, Value);
    if (G_IS_PARAM_SPEC_BOOLEAN(pSpec) && Value.canConvert<bool>()) {
        gegl_node_set(pNode, pName, gboolean(Value.toBool()), nullptr);
        return true;
    }
    if (G_IS_PARAM_SPEC_STRING(pSpec) && Value.canConvert<QString>()) {
        gegl_node_set(pNode, pName, Value.toString().toUtf8().constData(), nullptr);
        return true;
    }
    return false;
}
