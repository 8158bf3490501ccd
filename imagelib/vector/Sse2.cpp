#include "imagelib/vector/Kernels.h"

#if defined(__x86_64__)
#include "imagelib/vector/VecSse2.h"

#include "imagelib/vector/DiffuseKernels.h"

namespace ImageLib::Vector {
const Kernels Sse2Kernels = {Map<Vec4, Vec4>, Diffuse<Vec4, Vec4>};
}
#endif
