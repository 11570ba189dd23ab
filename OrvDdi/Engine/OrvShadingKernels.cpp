#include "OrvDdi/Engine/OrvShadingKernels.h"

#include "OrvDdi/Engine/OrvShadingKernels.inl"

#if defined(ORV_KERNELS_AVX2)
extern const OrvShadingKernels OrvShadingKernelsAvx2;
#endif

namespace {

constexpr OrvShadingKernels Portable = makeShadingKernels();

} // namespace

const OrvShadingKernels& OrvShadingKernels::portable()
{
    return Portable;
}

const OrvShadingKernels& OrvShadingKernels::best()
{
#if defined(ORV_KERNELS_AVX2)
    static const bool HasAvx2 = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma");
    if (HasAvx2)
        return OrvShadingKernelsAvx2;
#endif
    return Portable;
}
