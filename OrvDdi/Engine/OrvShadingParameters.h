#pragma once

#include "OrvDdi/OrvDdiExport.h"

#include <QtCore/QSize>

class OrvUdimLayout;

/// What the lit picture of a flat texture depends on besides the images of its inputs. A value, written by
/// the document, read by the shading step of the engine. All colours are linear light.
struct ORVDDI_EXPORT OrvShadingParameters {
    enum Model {
        Unlit, ///< Color as it is
        MetallicRoughness,
        SpecularGloss, ///< Color is the diffuse colour; Normal holds a bump, that is heights
        Layered ///< Color, Metallic, Roughness, Specular are materials that are lit already, the bottom one
                ///< first
    };
    /// In the order of the engine's pads.
    enum Slot { Color, Metallic, Roughness, Specular, Normal, Height, Occlusion, Emissive, SlotCount };

    /// One input. Scalar slots take the luminance of what is connected.
    struct SlotValue {
        bool Used = false; ///< the model has it, and it is switched on; else its neutral value counts
        /// A channel feeds it. Value then shows where the channel is transparent, but for Color and
        /// materials, whose transparency is the picture's.
        bool Connected = false;
        bool Inverted = false; ///< what comes from the channel counts as one minus itself
        float Value[4] = {0.0f, 0.0f, 0.0f, 1.0f}; ///< straight; all components the same for a scalar

        bool operator==(const SlotValue& Other) const;
    };

    /// A point light above the picture. Ambient light comes from everywhere.
    struct Light {
        float U = 0.2f, V = 0.85f; ///< in tiles: to the right and up from the corner of tile 1001
        float Height = 0.6f; ///< in tiles above the picture
        float Color[3] = {1.0f, 1.0f, 1.0f};
        float Intensity = 1.2f; ///< how bright a white surface is right below
        float Ambient = 0.25f; ///< how bright a white surface is without the light

        bool operator==(const Light& Other) const;
        bool operator!=(const Light& Other) const { return !(*this == Other); }
    };

    Model WhichModel = Unlit;
    SlotValue Slots[SlotCount];
    Light Lamp;
    QSize TileSize; ///< in pixels
    QSize PlaneSize; ///< of all tiles, in pixels; tile 1001 is at the bottom left
    float BumpScale = 0.01f; ///< how high a bump of 1 stands, in tiles
    float HeightScale = 0.03f; ///< how high a displacement of 1 stands, in tiles

    /// Every slot starts with its neutral value: a grey, rough, flat, unshadowed surface that does not shine.
    OrvShadingParameters();

    void setLayout(const OrvUdimLayout& Layout);
    /// What feeds the slot matters.
    bool reads(int Slot) const { return Slots[Slot].Used && Slots[Slot].Connected; }
    /// All that matters of the slot's image is how it changes from pixel to pixel.
    bool holdsHeights(int Slot) const
    {
        return Slot == Height || (Slot == Normal && WhichModel == SpecularGloss);
    }

    bool operator==(const OrvShadingParameters& Other) const;
    bool operator!=(const OrvShadingParameters& Other) const { return !(*this == Other); }
};
