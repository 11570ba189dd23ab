#pragma once

#include <type_traits>

/// What light does on a surface: the formulas of a flat texture's lit picture, one function each, without any
/// pixels. Real is a float, or a vector of floats that holds one component of several points; every picture
/// and test of shading computes with these. Lengths of vectors are one; the surface lies flat, with u to the
/// right, v upwards and the third axis towards the eye.
///
/// Reflection follows glTF 2.0, appendix B: Trowbridge-Reitz distribution, Smith's joint
/// masking and shadowing, Schlick's approximation of Fresnel's law.
namespace OrvShadingMath {

// Inlined everywhere: sources that are compiled for several machines must not share compiled functions.
#define ORV_SHADING                                                                                          \
    template <class Real>                                                                                    \
    inline __attribute__((always_inline))

constexpr float Pi = 3.14159265f;
/// Of a surface that is neither metal nor has a reflectance of its own.
constexpr float DielectricReflectance = 0.04f;
/// Smoother surfaces would reflect a light without size in no pixel at all.
constexpr float SmoothestRoughness = 0.04f;

template <class Real>
struct Triple {
    Real X, Y, Z;
};

ORV_SHADING Real all(float Value)
{
    Real Result = {};
    return Result + Value;
}

ORV_SHADING Real larger(Real A, Real B)
{
    return A > B ? A : B;
}

ORV_SHADING Real smaller(Real A, Real B)
{
    return A < B ? A : B;
}

ORV_SHADING Real unitRange(Real Value)
{
    return smaller(larger(Value, all<Real>(0.0f)), all<Real>(1.0f));
}

ORV_SHADING Real squareRoot(Real Value)
{
    if constexpr (std::is_same<Real, float>::value) {
        return __builtin_sqrtf(Value);
    } else {
        Real Result;
        for (unsigned Lane = 0; Lane < sizeof(Real) / sizeof(float); ++Lane)
            Result[Lane] = __builtin_sqrtf(Value[Lane]);
        return Result;
    }
}

ORV_SHADING Real dot(const Triple<Real>& A, const Triple<Real>& B)
{
    return A.X * B.X + A.Y * B.Y + A.Z * B.Z;
}

ORV_SHADING Triple<Real> scaled(const Triple<Real>& A, Real Factor)
{
    return {A.X * Factor, A.Y * Factor, A.Z * Factor};
}

ORV_SHADING Triple<Real> sum(const Triple<Real>& A, const Triple<Real>& B)
{
    return {A.X + B.X, A.Y + B.Y, A.Z + B.Z};
}

ORV_SHADING Triple<Real> product(const Triple<Real>& A, const Triple<Real>& B)
{
    return {A.X * B.X, A.Y * B.Y, A.Z * B.Z};
}

ORV_SHADING Triple<Real> normalized(const Triple<Real>& A)
{
    return scaled(A, 1.0f / squareRoot(dot(A, A)));
}

/// What a surface is at a point.
template <class Real>
struct Surface {
    Triple<Real> Diffuse; ///< what it scatters in all directions
    Triple<Real> Reflectance; ///< of light that falls in at a right angle
    Real Roughness;
    Triple<Real> Normal;
    Real Occlusion; ///< share of the ambient light that arrives
    Triple<Real> Emission;
};

ORV_SHADING void setMetallic(Surface<Real>& Given, const Triple<Real>& BaseColor, Real Metallic)
{
    const Real Rest = 1.0f - Metallic;
    Given.Diffuse = scaled(BaseColor, Rest);
    const Real Plain = Rest * DielectricReflectance;
    Given.Reflectance
        = {BaseColor.X * Metallic + Plain, BaseColor.Y * Metallic + Plain, BaseColor.Z * Metallic + Plain};
}

/// The vector that a normal map holds as colour: one half is zero, green points along v.
ORV_SHADING Triple<Real> mappedNormal(const Triple<Real>& Color)
{
    // From behind nothing can be seen; such normals are put on the horizon.
    return {Color.X * 2.0f - 1.0f, Color.Y * 2.0f - 1.0f, larger(Color.Z * 2.0f - 1.0f, all<Real>(0.001f))};
}

/// A normal, of any length, of which the surface rises besides by the slopes along u and v.
ORV_SHADING Triple<Real> tilted(const Triple<Real>& Normal, Real SlopeU, Real SlopeV)
{
    return normalized(Triple<Real>{Normal.X - SlopeU * Normal.Z, Normal.Y - SlopeV * Normal.Z, Normal.Z});
}

/// Share of the tiny mirrors that reflect along the half vector, by the fourth power of the roughness.
ORV_SHADING Real distribution(Real NormalDotHalf, Real AlphaSquared)
{
    const Real Width = NormalDotHalf * NormalDotHalf * (AlphaSquared - 1.0f) + 1.0f;
    return AlphaSquared / (Width * Width * Pi);
}

/// Share of them that neither lie in shadow nor are hidden, divided by four times both cosines.
ORV_SHADING Real visibility(Real NormalDotLight, Real NormalDotEye, Real AlphaSquared)
{
    const Real Rest = 1.0f - AlphaSquared;
    const Real Hidden = NormalDotLight * squareRoot(AlphaSquared + Rest * NormalDotEye * NormalDotEye);
    const Real Shadowed = NormalDotEye * squareRoot(AlphaSquared + Rest * NormalDotLight * NormalDotLight);
    return 0.5f / larger(Hidden + Shadowed, all<Real>(1e-7f));
}

ORV_SHADING Real fresnelWeight(Real EyeDotHalf)
{
    const Real Rest = unitRange(1.0f - EyeDotHalf);
    return Rest * Rest * Rest * Rest * Rest;
}

/// Where a light stands, seen from a point, and how much of it arrives.
template <class Real>
struct Illumination {
    Triple<Real> Direction; ///< to the light
    Real Strength; ///< one right below a light of intensity one
};

/// The light fades with the square of the distance. Right below it has the same strength at any height, so
/// that moving it up or down changes where light falls but not how bright it is in the middle.
ORV_SHADING Illumination<Real> illumination(Real AwayU, Real AwayV, float Height)
{
    const Real DistanceSquared = AwayU * AwayU + AwayV * AwayV + Height * Height;
    const Real Inverse = 1.0f / squareRoot(DistanceSquared);
    return {{AwayU * Inverse, AwayV * Inverse, Inverse * Height}, Inverse * Inverse * (Height * Height)};
}

/// What reaches an eye straight above. A white, rough surface reflects a light of strength one as one.
ORV_SHADING Triple<Real> reflected(const Surface<Real>& Given, const Triple<Real>& ToLight)
{
    const Real Facing = unitRange(dot(Given.Normal, ToLight));
    const Real Seen = larger(Given.Normal.Z, all<Real>(1e-4f));
    const Triple<Real> Half = normalized(Triple<Real>{ToLight.X, ToLight.Y, ToLight.Z + 1.0f});
    const Real Rough = larger(unitRange(Given.Roughness), all<Real>(SmoothestRoughness));
    const Real AlphaSquared = Rough * Rough * Rough * Rough;
    const Real Mirrored = distribution(unitRange(dot(Given.Normal, Half)), AlphaSquared)
        * visibility(Facing, Seen, AlphaSquared) * Pi;
    const Real Weight = fresnelWeight(Half.Z);
    const auto component = [&](Real Diffuse, Real Reflectance) __attribute__((always_inline))
    {
        const Real Fresnel = Reflectance + (1.0f - Reflectance) * Weight;
        return ((1.0f - Fresnel) * Diffuse + Fresnel * Mirrored) * Facing;
    };
    return {component(Given.Diffuse.X, Given.Reflectance.X), component(Given.Diffuse.Y, Given.Reflectance.Y),
        component(Given.Diffuse.Z, Given.Reflectance.Z)};
}

/// What it reflects of light that comes evenly from everywhere.
ORV_SHADING Triple<Real> reflectedAmbient(const Surface<Real>& Given)
{
    const auto component = [&](Real Diffuse, Real Reflectance) __attribute__((always_inline))
    {
        return (Diffuse * (1.0f - Reflectance) + Reflectance) * Given.Occlusion;
    };
    return {component(Given.Diffuse.X, Given.Reflectance.X), component(Given.Diffuse.Y, Given.Reflectance.Y),
        component(Given.Diffuse.Z, Given.Reflectance.Z)};
}

#undef ORV_SHADING

} // namespace OrvShadingMath
