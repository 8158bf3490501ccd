#include "imagelib/vector/Kernels.h"

#if defined(__aarch64__)
#include "imagelib/vector/VecNeon.h"

#include "imagelib/vector/DiffuseKernels.h"

namespace ImageLib::Vector {
const Kernels NeonKernels = {Map<Vec4, Vec4>, Diffuse<Vec4, Vec4>};
}
#endif
