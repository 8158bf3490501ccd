#include "imagelib/simd/Kernels.h"

#if defined(__aarch64__)
#include "imagelib/simd/VecNeon.h"

#include "imagelib/simd/DiffuseKernels.h"

namespace ImageLib::Simd {
const Kernels NeonKernels = {Map<Vec4>, DiffuseWithFourLanes<Vec4>, s_MaxBruteForce};
}
#endif
