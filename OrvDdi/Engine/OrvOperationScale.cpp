#include "OrvDdi/Engine/OrvOperationScale.h"

#include "OrvDdi/Engine/OrvOperationParameters.h"

#include <algorithm>
#include <cmath>

using Parameter = OrvOperationParameter;

namespace {

struct KnownMeasure {
    const char* pOperation; ///< null: any
    const char* pParameter;
    Parameter::Measure Measured;
};

/// The engine gives units to most lengths; these are the others.
const KnownMeasure KnownMeasures[] = {
    {"gegl:cell-noise", "scale", Parameter::Frequency},
    {"gegl:simplex-noise", "scale", Parameter::Frequency},
    {"gegl:radial-gradient", "start-x", Parameter::Length},
    {"gegl:radial-gradient", "start-y", Parameter::Length},
    {"gegl:radial-gradient", "end-x", Parameter::Length},
    {"gegl:radial-gradient", "end-y", Parameter::Length},
    {"gegl:box-blur", "radius", Parameter::Length},
    {"gegl:bilateral-filter", "blur-radius", Parameter::Length},
    {"gegl:domain-transform", "spatial-factor", Parameter::Length},
    {"gegl:high-pass", "std-dev", Parameter::Length},
    {"gegl:difference-of-gaussians", "radius1", Parameter::Length},
    {"gegl:difference-of-gaussians", "radius2", Parameter::Length},
    // A pixel's way in every step: the way of all steps grows with their square root.
    {"gegl:mean-curvature-blur", "iterations", Parameter::Area},
    // Heights stay; the slopes between pixels that are farther apart are to stay too.
    {"gegl:normal-map", "scale", Parameter::Length},
    {"gegl:long-shadow", "length", Parameter::Length},
    {"gegl:long-shadow", "midpoint", Parameter::Length},
    {"gegl:newsprint", "period", Parameter::Length},
    {"gegl:newsprint", "period2", Parameter::Length},
    {"gegl:newsprint", "period3", Parameter::Length},
    {"gegl:newsprint", "period4", Parameter::Length},
    {"gegl:slic", "cluster-size", Parameter::Length},
    {"gegl:panorama-projection", "width", Parameter::Length},
    {"gegl:panorama-projection", "height", Parameter::Length},
    {"gegl:stereographic-projection", "width", Parameter::Length},
    {"gegl:stereographic-projection", "height", Parameter::Length},
    {nullptr, "origin-x", Parameter::Length},
    {nullptr, "origin-y", Parameter::Length},
};

/// Its largest waves are always 50 pixels long.
const QString OneSizeOperation = QStringLiteral("gegl:perlin-noise");

double factor(Parameter::Measure Measured, double Scale)
{
    switch (Measured) {
    case Parameter::Length:
        return Scale;
    case Parameter::Frequency:
        return 1.0 / Scale;
    case Parameter::Area:
        return Scale * Scale;
    default:
        return 1.0;
    }
}

/// "As large as it takes", where -1 says so.
bool isAutomatic(const Parameter& One, const QVariant& Value)
{
    return One.Minimum == -1.0 && Value.toDouble() < 0.0;
}

} // namespace

Parameter::Measure OrvOperationScale::measureOf(const char* pOperation, const Parameter& One)
{
    if (One.Type != Parameter::Real && One.Type != Parameter::Integer)
        return Parameter::Unmeasured;
    if (One.Unit == QLatin1String("pixel-distance") || One.Unit == QLatin1String("pixel-coordinate"))
        return Parameter::Length;
    for (const KnownMeasure& Known : KnownMeasures) {
        if ((!Known.pOperation || g_strcmp0(Known.pOperation, pOperation) == 0)
            && One.Name == QLatin1String(Known.pParameter))
            return Known.Measured;
    }
    return Parameter::Unmeasured;
}

OrvOperationScale::Outcome OrvOperationScale::setValue(
    GeglNode* pNode, const QString& Name, const QVariant& Value)
{
    const auto Known = m_Values.constFind(Name);
    if (Known != m_Values.constEnd() && *Known == Value)
        return Unchanged;
    if (!OrvOperationParameters::set(pNode, Name, Value))
        return Refused;
    m_Values.insert(Name, Value);
    if (m_Scale != 1.0)
        setScaledValues(pNode);
    return Changed;
}

bool OrvOperationScale::setScale(GeglNode* pNode, double Scale)
{
    if (!m_pOperation || Scale == m_Scale)
        return false;
    m_Scale = Scale;
    setScaledValues(pNode);
    return true;
}

double OrvOperationScale::enlargement() const
{
    return m_Scale / drawnScale();
}

double OrvOperationScale::drawnScale() const
{
    if (m_pOperation && m_pOperation->Name == OneSizeOperation)
        return 1.0;
    return isDrawnOnWholePixels() && !fitsPixels() ? std::max(1.0, std::ceil(m_Scale)) : m_Scale;
}

/// Patterns of which a rounded length would put the last piece far from its place.
bool OrvOperationScale::isDrawnOnWholePixels() const
{
    if (!m_pOperation || !m_pOperation->Procedural)
        return false;
    bool HasLengths = false;
    for (const Parameter& One : m_pOperation->Parameters) {
        if (One.Measured == Parameter::Length && One.Type == Parameter::Real)
            return false;
        HasLengths |= One.Measured == Parameter::Length;
    }
    return HasLengths;
}

bool OrvOperationScale::fitsPixels() const
{
    return std::all_of(
        m_pOperation->Parameters.begin(), m_pOperation->Parameters.end(), [this](const Parameter& One) {
            const double Scaled = m_Values.value(One.Name, One.Default).toDouble() * m_Scale;
            return One.Measured != Parameter::Length
                || (Scaled >= One.Minimum && std::abs(Scaled - std::round(Scaled)) < 1e-6);
        });
}

void OrvOperationScale::setScaledValues(GeglNode* pNode) const
{
    if (!m_pOperation)
        return;
    const double Drawn = drawnScale();
    for (const Parameter& One : m_pOperation->Parameters) {
        const QVariant Value = m_Values.value(One.Name, One.Default);
        if (One.Measured != Parameter::Unmeasured && !isAutomatic(One, Value))
            OrvOperationParameters::set(pNode, One.Name, Value.toDouble() * factor(One.Measured, Drawn));
    }
}
