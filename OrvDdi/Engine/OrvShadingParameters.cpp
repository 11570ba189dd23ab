#include "OrvDdi/Engine/OrvShadingParameters.h"

#include "OrvDdi/Image/OrvUdimLayout.h"

#include <algorithm>

namespace {

template <int Count>
bool areSame(const float (&A)[Count], const float (&B)[Count])
{
    return std::equal(A, A + Count, B);
}

constexpr float NeutralValues[OrvShadingParameters::SlotCount][4] = {
    {0.5f, 0.5f, 0.5f, 1.0f}, // Color
    {0.0f, 0.0f, 0.0f, 1.0f}, // Metallic
    {0.5f, 0.5f, 0.5f, 1.0f}, // Roughness
    {0.04f, 0.04f, 0.04f, 1.0f}, // Specular
    {0.5f, 0.5f, 1.0f, 1.0f}, // Normal
    {0.0f, 0.0f, 0.0f, 1.0f}, // Height
    {1.0f, 1.0f, 1.0f, 1.0f}, // Occlusion
    {0.0f, 0.0f, 0.0f, 1.0f}, // Emissive
};

} // namespace

bool OrvShadingParameters::SlotValue::operator==(const SlotValue& Other) const
{
    return Used == Other.Used && Connected == Other.Connected && Inverted == Other.Inverted
        && areSame(Value, Other.Value);
}

bool OrvShadingParameters::Light::operator==(const Light& Other) const
{
    return U == Other.U && V == Other.V && Height == Other.Height && areSame(Color, Other.Color)
        && Intensity == Other.Intensity && Ambient == Other.Ambient;
}

OrvShadingParameters::OrvShadingParameters()
{
    for (int Which = 0; Which < SlotCount; ++Which)
        std::copy(std::begin(NeutralValues[Which]), std::end(NeutralValues[Which]), Slots[Which].Value);
}

void OrvShadingParameters::setLayout(const OrvUdimLayout& Layout)
{
    TileSize = Layout.tileSize();
    PlaneSize = Layout.extent().size();
}

bool OrvShadingParameters::operator==(const OrvShadingParameters& Other) const
{
    return WhichModel == Other.WhichModel
        && std::equal(std::begin(Slots), std::end(Slots), std::begin(Other.Slots)) && Lamp == Other.Lamp
        && TileSize == Other.TileSize && PlaneSize == Other.PlaneSize && BumpScale == Other.BumpScale
        && HeightScale == Other.HeightScale;
}
