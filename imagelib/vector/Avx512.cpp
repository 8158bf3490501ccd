#include "imagelib/vector/Kernels.h"

#if defined(__AVX512F__)
#include "imagelib/vector/VecAvx2.h"
#include "imagelib/vector/VecAvx512.h"
#include "imagelib/vector/VecSse2.h"

#include "imagelib/vector/DiffuseKernels.h"

namespace ImageLib::Vector {
const Kernels Avx512Kernels = {Map<Vec16, Vec8>, Diffuse<Vec16, Vec8>};
}
#endif
