// Compiled with AVX2, FMA and F16C switched on: nothing in here may be inline code that other files could
// share.
#if defined(ORV_KERNELS_AVX2)

#include "OrvDdi/Engine/OrvPixelKernels.h"

#include "OrvDdi/Engine/OrvPixelKernels.inl"

extern const OrvPixelKernels OrvPixelKernelsAvx2;
const OrvPixelKernels OrvPixelKernelsAvx2 = makeKernels();

#endif
