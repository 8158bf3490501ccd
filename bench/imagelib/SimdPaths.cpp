#include "bench/imagelib/SimdPaths.h"

#include "imagelib/Dither.h"
#include "imagelib/Quantize.h"
#include "imagelib/Settings.h"

#include <functional>
#include <string>

using namespace ImageLib;

namespace {

struct Algorithm {
    std::string name;
    std::function<void()> run;
};

// A picture as narrow as this is diffused in staggered rows: the wavefront needs wide ones.
constexpr std::uint32_t s_Narrow = 32;

std::vector<Algorithm> Algorithms(Bench& bench, const OctreeQuantEngine& octree) {
    const auto quantize = [&bench](unsigned selector, DitheringMode mode, bool serpentine) {
        return [&bench, selector, mode, serpentine] {
            Quantize(bench.surface, selector, mode, 0.25f, serpentine);
        };
    };
    const ColourSet colours{octree.Palette(), 256, false, 0};
    const auto diffuse256 = [&bench, colours](bool serpentine) {
        return [&bench, colours, serpentine] {
            Dither::ErrorDiffusion(bench.surface, FloydSteinbergKernel, colours, serpentine);
        };
    };
    const auto diffuseNarrow = [&bench] {
        Surface<Pixel32> narrow(s_Narrow, s_Width * s_Height / s_Narrow, s_Narrow * sizeof(Pixel32),
                                bench.surface.Row(0));
        Quantize(narrow, 8 + s_SixteenColours, DitheringMode::FloydSteinberg, 0, false);
    };
    const unsigned sixteen = 8 + s_SixteenColours;
    return {
        {"nearest 4", quantize(8 + s_CGA4P1L, DitheringMode::None, false)},
        {"nearest 16", quantize(sixteen, DitheringMode::None, false)},
        {"ordered 8x8 16", quantize(sixteen, DitheringMode::Bayer8x8, false)},
        {"nearest 256", [&bench, colours] { Quantizers::Process(bench.surface, colours); }},
        {"diffusion 2", quantize(1, DitheringMode::FloydSteinberg, false)},
        {"diffusion 2 serpentine", quantize(1, DitheringMode::FloydSteinberg, true)},
        {"diffusion 16", quantize(sixteen, DitheringMode::FloydSteinberg, false)},
        {"diffusion 16, 9 weights", quantize(sixteen, DitheringMode::JarvisJudice, false)},
        {"diffusion 16 narrow", diffuseNarrow},
        {"diffusion 4 serpentine", quantize(8 + s_CGA4P1L, DitheringMode::FloydSteinberg, true)},
        {"diffusion 16 serpentine", quantize(sixteen, DitheringMode::FloydSteinberg, true)},
        {"diffusion 256", diffuse256(false)},
        {"diffusion 256 serpentine", diffuse256(true)},
    };
}

} // namespace

void MeasureSimdPaths(Bench& bench) {
    const SimdPath current = CurrentSimdPath();
    const std::vector<SimdPath> paths = SupportedSimdPaths();
    OctreeQuantEngine octree;
    const std::vector<std::uint8_t> bytes = Reference::ToBytes(bench.original);
    octree.work(bytes.data(), s_Width, s_Height, 256);
    for (const Algorithm& algorithm : Algorithms(bench, octree)) {
        for (std::size_t i = 1; i < paths.size(); ++i) {
            const auto runOn = [&](SimdPath path) {
                return [&algorithm, path] {
                    SetSimdPath(path);
                    algorithm.run();
                };
            };
            const Pairs pairs =
                TimePairs(bench, bench.rounds, Clock::Thread, runOn(paths[i - 1]), runOn(paths[i]));
            Print(algorithm.name.c_str(), SimdPathName(paths[i - 1]), SimdPathName(paths[i]), pairs, "");
        }
    }
    SetSimdPath(current);
}
