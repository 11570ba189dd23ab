#include "OrvDdi/Engine/OrvPicture.h"

#include "OrvDdi/Image/OrvBufferContent.h"

#include <algorithm>

namespace {

GQuark pictureKey()
{
    static const GQuark Key = g_quark_from_static_string("orv-picture");
    return Key;
}

} // namespace

OrvPicture::Pointer OrvPicture::nothing()
{
    static const Pointer pNothing(new OrvPicture(Nothing));
    return pNothing;
}

OrvPicture::Pointer OrvPicture::pixels(GeglBuffer* pBuffer)
{
    auto* pPicture = new OrvPicture(Pixels);
    pPicture->m_pBuffer = GEGL_BUFFER(g_object_ref(pBuffer));
    pPicture->m_Extent = *gegl_buffer_get_extent(pBuffer);
    return Pointer(pPicture);
}

OrvPicture::Pointer OrvPicture::uniform(const float* pColor, const GeglRectangle& Extent)
{
    auto* pPicture = new OrvPicture(Uniform);
    std::copy(pColor, pColor + 4, pPicture->m_Color);
    pPicture->m_Extent = Extent;
    return Pointer(pPicture);
}

OrvPicture::Pointer OrvPicture::blend(
    const OrvBlendParameters& Parameters, Pointer pBase, Pointer pOver, Pointer pMask)
{
    auto* pPicture = new OrvPicture(Blend);
    pPicture->m_Parameters = Parameters;
    pPicture->m_pBase = pBase ? std::move(pBase) : nothing();
    pPicture->m_pOver = pOver ? std::move(pOver) : nothing();
    pPicture->m_pMask = std::move(pMask);
    return Pointer(pPicture);
}

OrvPicture::Pointer OrvPicture::lit(std::shared_ptr<const OrvLitPicture> pLit)
{
    auto* pPicture = new OrvPicture(Lit);
    pPicture->m_pLit = std::move(pLit);
    return Pointer(pPicture);
}

OrvPicture::~OrvPicture()
{
    if (m_pBuffer)
        g_object_unref(m_pBuffer);
    // Stacks are thousands of layers high: their descriptions are let go one by one instead of recursively.
    Pointer pNext = std::move(m_pBase);
    while (pNext && pNext.use_count() == 1) {
        Pointer pBelow = std::move(const_cast<OrvPicture*>(pNext.get())->m_pBase);
        pNext = std::move(pBelow);
    }
}

bool OrvPicture::isReadableAt(int Level) const
{
    return m_Kind == Pixels && (Level == 0 || !OrvBufferContent::of(m_pBuffer));
}

GeglBuffer* OrvPicture::carrier(const Pointer& pPicture)
{
    static const GeglRectangle OnePixel = {0, 0, 1, 1};
    GeglBuffer* pCarrier = gegl_buffer_new(&OnePixel, babl_format("RaGaBaA float"));
    const auto letGo = [](gpointer pHeld) { delete static_cast<Pointer*>(pHeld); };
    g_object_set_qdata_full(G_OBJECT(pCarrier), pictureKey(), new Pointer(pPicture), letGo);
    return pCarrier;
}

OrvPicture::Pointer OrvPicture::of(GObject* pObject)
{
    if (!pObject)
        return nothing();
    if (const void* pHeld = g_object_get_qdata(pObject, pictureKey()))
        return *static_cast<const Pointer*>(pHeld);
    GeglBuffer* pBuffer = GEGL_BUFFER(pObject);
    return gegl_rectangle_is_empty(gegl_buffer_get_extent(pBuffer)) ? nothing() : pixels(pBuffer);
}
