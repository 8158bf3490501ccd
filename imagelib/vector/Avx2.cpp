#include "imagelib/vector/Kernels.h"

#if defined(__AVX2__)
#include "imagelib/vector/VecAvx2.h"
#include "imagelib/vector/VecSse2.h"

#include "imagelib/vector/DiffuseKernels.h"

namespace ImageLib::Vector {
const Kernels Avx2Kernels = {Map<Vec8, Vec8>, Diffuse<Vec8, Vec8>};
}
#endif
