// The blend modes of the pixel kernels, on vectors of two pixels.
//
// S and B are over and base, premultiplied, with the alpha lanes holding alpha; Sa and Ba hold alpha in all
// lanes. All are the compositing formula  as ab f(cb, cs) + (1 - ab) S + (1 - as) B, simplified where f
// allows it.

#include "OrvDdi/Engine/OrvPixelVectors.inl"

namespace {

struct Inputs {
    Floats S, B, Sa, Ba;
    /// The shares of both where the other is transparent.
    ORV_INLINE Floats alone() const { return S * (1.0f - Ba) + B * (1.0f - Sa); }
    ORV_INLINE Floats alpha() const { return Sa + Ba - Sa * Ba; }
    ORV_INLINE Floats straightS() const { return select(Sa != Zero, S / Sa, Zero); }
    ORV_INLINE Floats straightB() const { return select(Ba != Zero, B / Ba, Zero); }
    /// The formula for a function of straight colours.
    ORV_INLINE Floats composite(Floats F) const { return withAlpha(Sa * Ba * F + alone(), alpha()); }
};

struct Normal {
    static ORV_INLINE Floats blend(const Inputs& I) { return I.S + I.B * (1.0f - I.Sa); }
};

struct Multiply {
    static ORV_INLINE Floats blend(const Inputs& I) { return I.S * I.B + I.alone(); }
};

struct Screen {
    static ORV_INLINE Floats blend(const Inputs& I) { return I.S + I.B - I.S * I.B; }
};

struct Overlay {
    static ORV_INLINE Floats blend(const Inputs& I)
    {
        const Floats Product = 2.0f * I.S * I.B;
        const Floats Inverse = I.Sa * I.Ba - 2.0f * (I.Ba - I.B) * (I.Sa - I.S);
        return select(2.0f * I.B <= I.Ba, Product, Inverse) + I.alone();
    }
};

struct HardLight {
    static ORV_INLINE Floats blend(const Inputs& I)
    {
        const Floats Product = 2.0f * I.S * I.B;
        const Floats Inverse = I.Sa * I.Ba - 2.0f * (I.Ba - I.B) * (I.Sa - I.S);
        return select(2.0f * I.S <= I.Sa, Product, Inverse) + I.alone();
    }
};

struct Darken {
    static ORV_INLINE Floats blend(const Inputs& I) { return smaller(I.S * I.Ba, I.B * I.Sa) + I.alone(); }
};

struct Lighten {
    static ORV_INLINE Floats blend(const Inputs& I) { return larger(I.S * I.Ba, I.B * I.Sa) + I.alone(); }
};

struct Difference {
    static ORV_INLINE Floats blend(const Inputs& I)
    {
        return withAlpha(magnitude(I.S * I.Ba - I.B * I.Sa) + I.alone(), I.alpha());
    }
};

struct Exclusion {
    static ORV_INLINE Floats blend(const Inputs& I)
    {
        return withAlpha(I.S + I.B - 2.0f * I.S * I.B, I.alpha());
    }
};

/// The published formulas end at one. Brighter bases keep their value where the over image would leave them
/// alone.
struct ColorDodge {
    static ORV_INLINE Floats blend(const Inputs& I)
    {
        const Floats Cs = I.straightS(), Cb = I.straightB();
        const Floats Limit = larger(Cb, all(1.0f));
        const Floats Ratio = select(Cs >= 1.0f, Limit, smaller(Cb / (1.0f - Cs), Limit));
        return I.composite(select(Cb <= Zero, smaller(Cb, Zero), Ratio));
    }
};

struct ColorBurn {
    static ORV_INLINE Floats blend(const Inputs& I)
    {
        const Floats Cs = I.straightS(), Cb = I.straightB();
        const Floats Ratio = select(Cs <= Zero, Zero, larger(1.0f - (1.0f - Cb) / Cs, Zero));
        return I.composite(select(Cb >= 1.0f, Cb, Ratio));
    }
};

struct SoftLight {
    static ORV_INLINE Floats root(Floats V)
    {
        Floats Roots = {};
        for (int Lane = 0; Lane < 8; ++Lane)
            Roots[Lane] = __builtin_sqrtf(V[Lane]);
        return Roots;
    }
    static ORV_INLINE Floats blend(const Inputs& I)
    {
        const Floats Cs = I.straightS(), Cb = I.straightB();
        const Floats Dark = ((16.0f * Cb - 12.0f) * Cb + 4.0f) * Cb;
        const Floats D = select(Cb <= 0.25f, Dark, root(larger(Cb, Zero)));
        const Floats Weight = 2.0f * Cs - 1.0f;
        const Floats Lighter = Cb + Weight * (D - Cb);
        const Floats Darker = Cb + Weight * Cb * (1.0f - Cb);
        return I.composite(select(Cs <= 0.5f, Darker, Lighter));
    }
};

struct Add {
    static ORV_INLINE Floats blend(const Inputs& I)
    {
        // as ab (cs + cb) + (1 - ab) S + (1 - as) B
        return withAlpha(I.S + I.B, I.alpha());
    }
};

struct Subtract {
    static ORV_INLINE Floats blend(const Inputs& I)
    {
        return withAlpha(I.B * I.Sa - I.S * I.Ba + I.alone(), I.alpha());
    }
};

struct Divide {
    static ORV_INLINE Floats blend(const Inputs& I)
    {
        const Floats Cs = I.straightS(), Cb = I.straightB();
        const Floats ByNothing = select(Cb > Zero, all(1.0f), Zero);
        return I.composite(select(Cs != Zero, Cb / Cs, ByNothing));
    }
};

struct Average {
    static ORV_INLINE Floats blend(const Inputs& I)
    {
        return withAlpha(0.5f * (I.S * I.Ba + I.B * I.Sa) + I.alone(), I.alpha());
    }
};

// Hue, Saturation, Color and Luminosity; the weights are those of their published definition.

ORV_INLINE Floats lum(Floats Color)
{
    return weightedSum(Color, 0.3f, 0.59f, 0.11f);
}

ORV_INLINE Floats lowest(Floats Color)
{
    const Floats Rotated = __builtin_shuffle(Color, (Ints){1, 2, 0, 3, 5, 6, 4, 7});
    const Floats Again = __builtin_shuffle(Color, (Ints){2, 0, 1, 3, 6, 4, 5, 7});
    return __builtin_shuffle(smaller(smaller(Color, Rotated), Again), (Ints){0, 0, 0, 0, 4, 4, 4, 4});
}

ORV_INLINE Floats highest(Floats Color)
{
    const Floats Rotated = __builtin_shuffle(Color, (Ints){1, 2, 0, 3, 5, 6, 4, 7});
    const Floats Again = __builtin_shuffle(Color, (Ints){2, 0, 1, 3, 6, 4, 5, 7});
    return __builtin_shuffle(larger(larger(Color, Rotated), Again), (Ints){0, 0, 0, 0, 4, 4, 4, 4});
}

ORV_INLINE Floats sat(Floats Color)
{
    return highest(Color) - lowest(Color);
}

/// A colour of the given luminosity; pulled towards grey where it would leave the range from zero to Limit.
ORV_INLINE Floats setLum(Floats Color, Floats Luminosity, Floats Limit)
{
    const Floats Moved = Color + (Luminosity - lum(Color));
    const Floats Low = lowest(Moved), High = highest(Moved);
    const Floats Lifted = Luminosity + (Moved - Luminosity) * larger(Luminosity, Zero) / (Luminosity - Low);
    const Floats AboveZero = select(Low < Zero, Lifted, Moved);
    const Floats Pulled = Luminosity + (AboveZero - Luminosity) * (Limit - Luminosity) / (High - Luminosity);
    return select(High > Limit, Pulled, AboveZero);
}

ORV_INLINE Floats setSat(Floats Color, Floats Saturation)
{
    const Floats Low = lowest(Color);
    const Floats Spread = highest(Color) - Low;
    return select(Spread > Zero, (Color - Low) * Saturation / Spread, Zero);
}

struct NonSeparable {
    Floats Cs, Cb, Limit;
    explicit ORV_INLINE NonSeparable(const Inputs& I)
        : Cs(I.straightS())
        , Cb(I.straightB())
        , Limit(larger(all(1.0f), larger(highest(Cs), highest(Cb))))
    {
    }
};

struct Hue {
    static ORV_INLINE Floats blend(const Inputs& I)
    {
        const NonSeparable C(I);
        return I.composite(setLum(setSat(C.Cs, sat(C.Cb)), lum(C.Cb), C.Limit));
    }
};

struct Saturation {
    static ORV_INLINE Floats blend(const Inputs& I)
    {
        const NonSeparable C(I);
        return I.composite(setLum(setSat(C.Cb, sat(C.Cs)), lum(C.Cb), C.Limit));
    }
};

struct Color {
    static ORV_INLINE Floats blend(const Inputs& I)
    {
        const NonSeparable C(I);
        return I.composite(setLum(C.Cs, lum(C.Cb), C.Limit));
    }
};

struct Luminosity {
    static ORV_INLINE Floats blend(const Inputs& I)
    {
        const NonSeparable C(I);
        return I.composite(setLum(C.Cb, lum(C.Cs), C.Limit));
    }
};

} // namespace
