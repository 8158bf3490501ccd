#include "imagelib/simd/Kernels.h"

#if defined(__AVX2__)
#include "imagelib/simd/VecAvx2.h"
#include "imagelib/simd/VecSse2.h"

#include "imagelib/simd/DiffuseKernels.h"
#include "imagelib/simd/WavefrontKernels.h"

namespace ImageLib::Simd {
namespace {

void Diffuse(const DiffusionJob& job) {
    if (IsFitForWavefront<Vec8>(job))
        return DiffuseAsWavefront<Vec8>(job);
    if (job.search == Search::Grid && !job.serpentine)
        return DiffuseRowsTogether<Vec8>(job, GridSearch{*job.grid, *job.palette});
    if (job.search == Search::BruteForce && job.serpentine && !IsFitForScalar(job))
        return DiffuseShortSerpentine<Vec8>(job);
    Sse2Kernels.diffuse(job); // AVX2 gains nothing
}

} // namespace

const Kernels Avx2Kernels = {Map<Vec8>, Diffuse, s_MaxBruteForce};

} // namespace ImageLib::Simd
#endif
