#include "OrvDdi/Engine/OrvOperationMenu.h"

#include "OrvDdi/Engine/OrvPointOperations.h"

#include <cstring>

namespace {

constexpr auto AnyScale = OrvOperationMenuEntry::AtAnyScale;
constexpr auto FullScale = OrvOperationMenuEntry::AtFullScale;

} // namespace

const OrvOperationMenuEntry OrvOperationMenu[] = {
    {OrvPointOperations::LevelsName, "Filter/Adjust/Levels", AnyScale},
    {"gegl:brightness-contrast", "Filter/Adjust/Brightness and Contrast", AnyScale},
    {"gegl:exposure", "Filter/Adjust/Exposure", AnyScale},
    {"gegl:gamma", "Filter/Adjust/Gamma", AnyScale},
    {"gegl:stretch-contrast", "Filter/Adjust/Stretch Contrast", FullScale},
    {"gegl:stretch-contrast-hsv", "Filter/Adjust/Stretch Saturation and Value", FullScale},
    {"gegl:threshold", "Filter/Adjust/Threshold", AnyScale},
    {"gegl:posterize", "Filter/Adjust/Posterize", AnyScale},
    {"gegl:dither", "Filter/Adjust/Dither", FullScale},
    {"gegl:rgb-clip", "Filter/Adjust/Clamp", AnyScale},
    {"gegl:invert-gamma", "Filter/Adjust/Invert", AnyScale},
    {"gegl:invert-linear", "Filter/Adjust/Invert Linear", AnyScale},
    {"gegl:value-invert", "Filter/Adjust/Invert Value", AnyScale},
    {"gegl:opacity", "Filter/Adjust/Opacity", AnyScale},

    {OrvPointOperations::HueSaturationValueName, "Filter/Color/Hue Saturation Value", AnyScale},
    {"gegl:hue-chroma", "Filter/Color/Hue and Chroma", AnyScale},
    {"gegl:saturation", "Filter/Color/Saturation", AnyScale},
    {"gegl:color-temperature", "Filter/Color/Temperature", AnyScale},
    {"gegl:color-enhance", "Filter/Color/Enhance", FullScale},
    {"gegl:color-overlay", "Filter/Color/Color Overlay", AnyScale},
    {"gegl:color-rotate", "Filter/Color/Replace Hues", AnyScale},
    {"gegl:color-warp", "Filter/Color/Warp Colors", AnyScale},
    {"gegl:gray", "Filter/Color/Grayscale", AnyScale},
    {"gegl:mono-mixer", "Filter/Color/Monochrome Mixer", AnyScale},
    {"gegl:component-extract", "Filter/Color/Extract Component", AnyScale},
    {"gegl:sepia", "Filter/Color/Sepia", AnyScale},
    {"gegl:negative-darkroom", "Filter/Color/Darkroom Negative", AnyScale},
    {"gegl:alien-map", "Filter/Color/Alien Map", AnyScale},

    {"gegl:gaussian-blur", "Filter/Blur/Gaussian Blur", FullScale},
    {"gegl:box-blur", "Filter/Blur/Box Blur", FullScale},
    {"gegl:median-blur", "Filter/Blur/Median", FullScale},
    {"gegl:motion-blur-linear", "Filter/Blur/Motion Blur", FullScale},
    {"gegl:lens-blur", "Filter/Blur/Lens Blur", FullScale},
    {"gegl:focus-blur", "Filter/Blur/Focus Blur", FullScale},
    {"gegl:wavelet-blur", "Filter/Blur/Wavelet Blur", FullScale},
    {"gegl:bilateral-filter", "Filter/Blur/Bilateral", FullScale},
    {"gegl:domain-transform", "Filter/Blur/Edge-Preserving Smoothing", FullScale},
    {"gegl:snn-mean", "Filter/Blur/Nearest Neighbor Smoothing", FullScale},
    {"gegl:mean-curvature-blur", "Filter/Blur/Mean Curvature", FullScale},

    {"gegl:unsharp-mask", "Filter/Sharpen/Unsharp Mask", FullScale},
    {"gegl:high-pass", "Filter/Sharpen/High Pass", FullScale},
    {"gegl:convolution-matrix", "Filter/Sharpen/Convolution Matrix", FullScale},

    {"gegl:noise-rgb", "Filter/Noise/Color Noise", FullScale},
    {"gegl:noise-hsv", "Filter/Noise/Hue Saturation Value Noise", FullScale},
    {"gegl:noise-cie-lch", "Filter/Noise/Lightness Chroma Hue Noise", FullScale},
    {"gegl:noise-hurl", "Filter/Noise/Hurl", FullScale},
    {"gegl:noise-pick", "Filter/Noise/Pick", FullScale},
    {"gegl:noise-spread", "Filter/Noise/Spread", FullScale},

    {"gegl:difference-of-gaussians", "Filter/Edge/Difference of Gaussians", FullScale},
    {"gegl:image-gradient", "Filter/Edge/Gradient", FullScale},

    {"gegl:normal-map", "Filter/Surface/Normals from Height", FullScale},
    {"gegl:distance-transform", "Filter/Surface/Distance", FullScale},

    {"gegl:bloom", "Filter/Light/Bloom", FullScale},
    {"gegl:dropshadow", "Filter/Light/Drop Shadow", FullScale},
    {"gegl:long-shadow", "Filter/Light/Long Shadow", FullScale},
    {"gegl:vignette", "Filter/Light/Vignette", FullScale},

    {"gegl:pixelize", "Filter/Stylize/Pixelize", FullScale},
    {"gegl:newsprint", "Filter/Stylize/Halftone", FullScale},
    {"gegl:mirrors", "Filter/Stylize/Kaleidoscope", FullScale},
    {"gegl:slic", "Filter/Stylize/Superpixels", FullScale},
    {"gegl:color-assimilation-grid", "Filter/Stylize/Color Grid", FullScale},

    {"gegl:reinhard05", "Filter/Tone Mapping/Photographic", FullScale},

    {"gegl:translate", "Filter/Transform/Translate", FullScale},
    {"gegl:rotate", "Filter/Transform/Rotate", FullScale},
    {"gegl:rotate-on-center", "Filter/Transform/Rotate on Center", FullScale},
    {"gegl:scale-ratio", "Filter/Transform/Scale", FullScale},
    {"gegl:shear", "Filter/Transform/Shear", FullScale},
    {"gegl:reflect", "Filter/Transform/Reflect", FullScale},
    {"gegl:spherize", "Filter/Transform/Spherize", FullScale},
    {"gegl:tile", "Filter/Transform/Tile", FullScale},
    {"gegl:tile-seamless", "Filter/Transform/Make Seamless", FullScale},
    {"gegl:panorama-projection", "Filter/Transform/Panorama", FullScale},
    {"gegl:stereographic-projection", "Filter/Transform/Little Planet", FullScale},

    {OrvPointOperations::ScaleAndOffsetName, "Filter/Math/Scale and Offset", AnyScale},
    {"gegl:add", "Filter/Math/Add", AnyScale},
    {"gegl:subtract", "Filter/Math/Subtract", AnyScale},
    {"gegl:multiply", "Filter/Math/Multiply", AnyScale},
    {"gegl:divide", "Filter/Math/Divide", AnyScale},
    {"gegl:absolute", "Filter/Math/Absolute", AnyScale},

    {"gegl:color", "Procedural/Basic/Solid Color", AnyScale},
    {"gegl:rectangle", "Procedural/Basic/Rectangle", AnyScale},
    {"gegl:text", "Procedural/Basic/Text", FullScale},
    {"gegl:linear-gradient", "Procedural/Gradient/Linear Gradient", FullScale},
    {"gegl:radial-gradient", "Procedural/Gradient/Radial Gradient", FullScale},
    {OrvPointOperations::ConicalGradientName, "Procedural/Gradient/Conical Gradient", AnyScale},
    {"gegl:cell-noise", "Procedural/Noise/Cell Noise", FullScale},
    {"gegl:perlin-noise", "Procedural/Noise/Perlin Noise", FullScale},
    {"gegl:simplex-noise", "Procedural/Noise/Simplex Noise", FullScale},
    {"gegl:checkerboard", "Procedural/Pattern/Checkerboard", FullScale},
    {"gegl:grid", "Procedural/Pattern/Grid", FullScale},
    {nullptr, nullptr, AnyScale},
};

bool orvNeedsFullScale(const char* pOperation)
{
    for (const OrvOperationMenuEntry* pEntry = OrvOperationMenu; pEntry->pOperation; ++pEntry) {
        if (std::strcmp(pEntry->pOperation, pOperation) == 0)
            return pEntry->View == FullScale;
    }
    return true;
}
