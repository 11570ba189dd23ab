#include "OrvDdi/Engine/OrvBlendParameters.h"

#include <algorithm>

bool OrvBlendParameters::operator==(const OrvBlendParameters& Other) const
{
    return Mode == Other.Mode && Amount == Other.Amount && Enabled == Other.Enabled
        && MaskEnabled == Other.MaskEnabled && PassThrough == Other.PassThrough
        && AdvancedEnabled == Other.AdvancedEnabled && WriteRed == Other.WriteRed
        && WriteGreen == Other.WriteGreen && WriteBlue == Other.WriteBlue && WriteAlpha == Other.WriteAlpha
        && std::equal(OverRange, OverRange + 4, Other.OverRange)
        && std::equal(BaseRange, BaseRange + 4, Other.BaseRange);
}

const QStringList& OrvBlendParameters::modeNames()
{
    static const QStringList Names{QStringLiteral("Normal"), QStringLiteral("Multiply"),
        QStringLiteral("Screen"), QStringLiteral("Overlay"), QStringLiteral("Darken"),
        QStringLiteral("Lighten"), QStringLiteral("Color Dodge"), QStringLiteral("Color Burn"),
        QStringLiteral("Hard Light"), QStringLiteral("Soft Light"), QStringLiteral("Difference"),
        QStringLiteral("Exclusion"), QStringLiteral("Hue"), QStringLiteral("Saturation"),
        QStringLiteral("Color"), QStringLiteral("Luminosity"), QStringLiteral("Add"),
        QStringLiteral("Subtract"), QStringLiteral("Divide"), QStringLiteral("Average")};
    return Names;
}

OrvBlendMode OrvBlendParameters::modeFromName(const QString& Name)
{
    const int Index = modeNames().indexOf(Name);
    return Index < 0 ? OrvBlendMode::Normal : OrvBlendMode(Index);
}
