#include "imagelib/simd/Kernels.h"

#if defined(__AVX512F__)
#include "imagelib/simd/VecAvx512.h"

#include "imagelib/simd/WavefrontKernels.h"

namespace ImageLib::Simd {
namespace {

void Map(Pixel32* pixels, std::uint32_t count, const MapJob& job) {
    if (job.grid)
        return Avx2Kernels.map(pixels, count, job); // AVX-512 gains nothing
    MapByBruteForce<Vec16>(pixels, count, job);
}

void Diffuse(const DiffusionJob& job) {
    if (IsFitForWavefront<Vec16>(job))
        return DiffuseAsWavefront<Vec16>(job);
    Avx2Kernels.diffuse(job); // AVX-512 gains nothing
}

} // namespace

const Kernels Avx512Kernels = {Map, Diffuse, 2 * s_MaxBruteForce};

} // namespace ImageLib::Simd
#endif
