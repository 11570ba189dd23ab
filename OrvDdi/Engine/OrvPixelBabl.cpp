#include "OrvDdi/Engine/OrvPixelBabl.h"

#include <array>

namespace {

constexpr int LayoutCount = int(OrvPixelLayout::Premultiplied) + 1;

const std::array<const Babl*, LayoutCount>& formats()
{
    // In the order of OrvPixelLayout.
    static const std::array<const Babl*, LayoutCount> Formats{babl_format("RGBA u8"),
        babl_format("R'G'B'A u8"), babl_format("Y u8"), babl_format("Y' u8"), babl_format("RGBA half"),
        babl_format("R'G'B'A half"), babl_format("Y half"), babl_format("Y' half"), babl_format("RGBA float"),
        babl_format("R'G'B'A float"), babl_format("Y float"), babl_format("Y' float"),
        babl_format("RaGaBaA float")};
    return Formats;
}

} // namespace

const Babl* OrvPixelBabl::format(OrvPixelLayout Layout)
{
    return formats()[size_t(Layout)];
}

bool OrvPixelBabl::layoutOf(const Babl* pFormat, OrvPixelLayout& Layout)
{
    for (int Index = 0; Index < LayoutCount; ++Index) {
        if (formats()[size_t(Index)] == pFormat) {
            Layout = OrvPixelLayout(Index);
            return true;
        }
    }
    return false;
}
