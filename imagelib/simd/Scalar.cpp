#include "imagelib/simd/Kernels.h"

// The scalar implementation, which runs on any processor, and the search that the SIMD paths fall back to.
namespace ImageLib::Simd {

unsigned NearestEntry(const Pixel32& pixel, const PaletteTable& palette) {
    float best = s_StartDistance;
    unsigned nearest = 0;
    for (unsigned i = 0; i < palette.count; ++i) {
        const float alpha = pixel.alpha - palette.alpha[i], red = pixel.red - palette.red[i];
        const float green = pixel.green - palette.green[i], blue = pixel.blue - palette.blue[i];
        const float distance = alpha * alpha + red * red + green * green + blue * blue;
        if (distance < best) {
            best = distance;
            nearest = i;
        }
    }
    return nearest;
}

namespace {

void Map(Pixel32* pixels, std::uint32_t count, const MapJob& job) {
    for (std::uint32_t x = 0; x < count; ++x) {
        Pixel32 sum = pixels[x];
        if (job.offsets) {
            const float offset = job.offsets[x];
            sum = {sum.alpha + offset, sum.red + offset, sum.green + offset, sum.blue + offset};
        }
        pixels[x] = job.palette->entries[NearestEntry(sum, *job.palette)];
    }
}

void AddWeighted(Pixel32& pixel, float weight, const Pixel32& error) {
    pixel.alpha += weight * error.alpha;
    pixel.red += weight * error.red;
    pixel.green += weight * error.green;
    pixel.blue += weight * error.blue;
}

void Diffuse(const DiffusionJob& job) {
    const auto row = [&](std::uint32_t y) { return reinterpret_cast<Pixel32*>(job.pixels + y * job.stride); };
    const std::int64_t width = job.width;
    for (std::uint32_t y = 0; y < job.height; ++y) {
        const bool reversed = job.serpentine && y & 1;
        for (std::int64_t i = 0; i < width; ++i) {
            Pixel32& pixel = row(y)[reversed ? width - 1 - i : i];
            const unsigned index = job.search == Search::Threshold ? !(pixel.red > job.threshold)
                                                                   : NearestEntry(pixel, *job.palette);
            const Pixel32 old = pixel;
            pixel = job.palette->entries[index];
            const Pixel32 error{old.alpha - pixel.alpha, old.red - pixel.red, old.green - pixel.green,
                                old.blue - pixel.blue};
            for (unsigned t = 0; t < job.tapCount; ++t) {
                const DiffusionTap& tap = job.taps[t];
                const std::int64_t target = i - tap.dx;
                if (std::uint64_t{y} + tap.row < job.height && target >= 0 && target < width)
                    AddWeighted(row(y + tap.row)[reversed ? width - 1 - target : target], tap.weight, error);
            }
        }
    }
}

} // namespace

const Kernels ScalarKernels = {Map, Diffuse, s_MaxBruteForce};

} // namespace ImageLib::Simd
