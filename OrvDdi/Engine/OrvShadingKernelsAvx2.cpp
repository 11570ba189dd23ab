// Compiled with AVX2 and FMA switched on: nothing in here may be inline code that other files could share.
#if defined(ORV_KERNELS_AVX2)

#include "OrvDdi/Engine/OrvShadingKernels.h"

#include "OrvDdi/Engine/OrvShadingKernels.inl"

extern const OrvShadingKernels OrvShadingKernelsAvx2;
const OrvShadingKernels OrvShadingKernelsAvx2 = makeShadingKernels();

#endif
