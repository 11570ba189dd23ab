#include "OrvDdi/Files/OrvImageFileProperties.h"

#include "OrvDdi/Color/OrvColorManager.h"

OrvPixelFormat OrvImageFileProperties::pixelFormat() const
{
    const auto depth = [this] {
        switch (Depth) {
        case Integer8:
            return GLenum(GL_UNSIGNED_BYTE);
        case Integer16:
            return GLenum(Scalar ? GL_FLOAT : GL_HALF_FLOAT);
        case Half:
            return GLenum(GL_HALF_FLOAT);
        case Float:
            break;
        }
        return GLenum(GL_FLOAT);
    };
    OrvPixelFormat Format;
    Format.Depth = depth();
    Format.Kind = Scalar && !HasAlpha ? OrvPixelFormat::Scalar : OrvPixelFormat::Rgba;
    // Linear 8-bit values would lose steps under the curve.
    const bool Curved = Format.Depth == GL_UNSIGNED_BYTE && Format.Kind == OrvPixelFormat::Rgba
        && ColorSpace != OrvColorManager::linear() && ColorSpace != OrvColorManager::raw();
    Format.Curve = Curved ? OrvPixelFormat::Srgb : OrvPixelFormat::Linear;
    return Format;
}
