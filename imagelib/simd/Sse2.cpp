#include "imagelib/simd/Kernels.h"

#if defined(__x86_64__)
#include "imagelib/simd/VecSse2.h"

#include "imagelib/simd/DiffuseKernels.h"

namespace ImageLib::Simd {
const Kernels Sse2Kernels = {Map<Vec4>, DiffuseWithFourLanes<Vec4>, s_MaxBruteForce};
}
#endif
