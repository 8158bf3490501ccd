// Times imagelib against the reference implementation of the tests and against memcpy, on one picture in one
// process, both sides alternately. Prints medians and their ratio.
//
// quantize_bench [--rounds N] [--path scalar|sse2|avx2|avx512|neon] [--only
// sixteen|octree|threads|calls|paths]
//                [--write-picture FILE.ppm]

#include "bench/imagelib/Bench.h"
#include "bench/imagelib/Picture.h"
#include "bench/imagelib/SimdPaths.h"
#include "imagelib/Convert.h"
#include "imagelib/Dither.h"
#include "imagelib/Quantize.h"
#include "imagelib/Settings.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <thread>

using namespace ImageLib;

namespace {

template <class Ours>
void CompareWithCopy(Bench& bench, const char* work, Ours ours) {
    const auto copy = [&] { std::memcpy(bench.copy.Row(0), bench.original.pixels.data(), bench.Bytes()); };
    const Pairs pairs = TimePairs(bench, bench.rounds, Clock::Thread, copy, ours);
    char note[40];
    std::snprintf(note, sizeof note, "  (%.0f %% of memcpy's speed)", 100 * pairs.Speedup());
    Print(work, "memcpy", "ours", pairs, note);
}

void MeasureSixteenColours(Bench& bench) {
    const Reference::Palette palette = Reference::FixedPalette(s_SixteenColours);
    const Reference::Matrix bayer = Reference::BayerMatrix(14);
    const unsigned selector = 8 + s_SixteenColours;
    const auto ours = [&](int mode, bool serpentine) {
        return [&bench, selector, mode, serpentine] {
            Quantize(bench.surface, selector, static_cast<DitheringMode>(mode), 0.25f, serpentine);
        };
    };
    CompareWithReference(
        bench, "nearest 16", bench.rounds, [&] { Reference::MapNearest(bench.reference, palette); },
        ours(0, false));
    CompareWithCopy(bench, "nearest 16", ours(0, false));
    CompareWithReference(
        bench, "ordered 8x8 16", bench.rounds,
        [&] { Reference::MapOrdered(bench.reference, bayer, palette, 0.25f); }, ours(14, false));
    CompareWithCopy(bench, "ordered 8x8 16", ours(14, false));

    const char* const names[] = {"Floyd-Steinberg", "Jarvis-Judice", "Stucki",
                                 "Atkinson",        "Burkes",        "Sierra",
                                 "Sierra two-row",  "Sierra lite",   "Stevenson-Arce"};
    for (const bool serpentine : {false, true}) {
        for (int mode = 2; mode <= 10; ++mode) {
            const Reference::Matrix matrix = Reference::DiffusionMatrix(mode);
            char work[64];
            std::snprintf(work, sizeof work, "%s 16%s", names[mode - 2], serpentine ? " serp." : "");
            CompareWithReference(
                bench, work, bench.rounds,
                [&] { Reference::Diffuse(bench.reference, matrix, palette, serpentine); },
                ours(mode, serpentine));
        }
    }
}

void MeasureOctree(Bench& bench) {
    const std::vector<std::uint8_t> bytes = Reference::ToBytes(bench.original);
    OctreeQuantEngine engine;
    const auto work = [&] { engine.work(bytes.data(), s_Width, s_Height, 256); };
    Reference::Palette palette;
    const auto referenceWork = [&] { palette = Reference::OctreePalette(bytes, 256); };
    const Pairs build = TimePairs(bench, (bench.rounds + 2) / 3, Clock::Thread, referenceWork, work);
    char note[40];
    std::snprintf(note, sizeof note, "  (%.1f ns a pixel)", 1e6 * build.OursMilliseconds() / s_Pixels);
    Print("octree build 256", "reference", "ours", build, note);

    const ColourSet colours{engine.Palette(), 256, false, 0};
    CompareWithReference(
        bench, "nearest 256", (bench.rounds + 2) / 3,
        [&] { Reference::MapNearest(bench.reference, palette); },
        [&] { Quantizers::Process(bench.surface, colours); });
    const Reference::Matrix matrix = Reference::DiffusionMatrix(2);
    CompareWithReference(
        bench, "Floyd-Steinberg 256", (bench.rounds + 2) / 3,
        [&] { Reference::Diffuse(bench.reference, matrix, palette, false); },
        [&] { Dither::ErrorDiffusion(bench.surface, FloydSteinbergKernel, colours, false); });
}

// Compares run(1) with run(2), each on that many threads. The ratio of the fastest runs is noted as well: on
// a busy machine the medians mostly reflect how many other programs wait for its processors.
template <class Run>
void CompareThreads(Bench& bench, const char* work, Run run) {
    const Pairs pairs = TimePairs(
        bench, 4 * bench.rounds, Clock::Wall, [&] { run(1); }, [&] { run(2); });
    char note[60];
    std::snprintf(note, sizeof note, "  (%.2f between the fastest runs)",
                  pairs.FastestBaselineMilliseconds() / pairs.FastestOursMilliseconds());
    Print(work, "one thread", "two", pairs, note);
}

// Measures what two threads of this machine gain on work that shares nothing: the most that the other rows
// can reach.
void MeasureMachine(Bench& bench) {
    const auto onThreads = [](unsigned threads, auto part) {
        std::jthread other;
        if (threads == 2)
            other = std::jthread([&] { part(1u); });
        part(0u);
    };
    CompareThreads(bench, "(machine) arithmetic", [&](unsigned threads) {
        onThreads(threads, [&](unsigned) {
            volatile float sum = 0;
            for (int i = 0; i < 4'000'000 / static_cast<int>(threads); ++i)
                sum = sum + 1.0f;
        });
    });
    CompareThreads(bench, "(machine) memcpy", [&](unsigned threads) {
        onThreads(threads, [&](unsigned part) {
            const std::size_t bytes = bench.Bytes() / threads;
            std::memcpy(reinterpret_cast<std::byte*>(bench.copy.Row(0)) + part * bytes,
                        reinterpret_cast<const std::byte*>(bench.original.pixels.data()) + part * bytes,
                        bytes);
        });
    });
}

void MeasureThreads(Bench& bench) {
    MeasureMachine(bench);
    const auto quantize = [&](DitheringMode mode) {
        return [&bench, mode](unsigned threads) {
            SetThreadCount(threads);
            Quantize(bench.surface, 8 + s_SixteenColours, mode, 0.25f, false);
        };
    };
    CompareThreads(bench, "nearest 16", quantize(DitheringMode::None));
    CompareThreads(bench, "ordered 8x8 16", quantize(DitheringMode::Bayer8x8));
    const std::vector<std::uint8_t> bytes = Reference::ToBytes(bench.original);
    OctreeQuantEngine engine;
    engine.work(bytes.data(), s_Width, s_Height, 256);
    const ColourSet colours{engine.Palette(), 256, false, 0};
    CompareThreads(bench, "nearest 256", [&](unsigned threads) {
        SetThreadCount(threads);
        Quantizers::Process(bench.surface, colours);
    });
    SetThreadCount(1);
}

// Times whole calls from 8-bit rows to 8-bit rows on one thread, as peers.sh times other programs.
void MeasureWholeCalls(Bench& bench) {
    std::vector<std::uint8_t> rows(std::size_t{s_Width} * s_Height * 4);
    StoreSurface(bench.surface, rows.data(), rows.size(), 8, s_Width * 4);
    const struct {
        const char* name;
        unsigned selector;
        DitheringMode mode;
    } calls[] = {
        {"16 fixed, none", 8 + s_SixteenColours, DitheringMode::None},
        {"16 fixed, Floyd-Steinberg", 8 + s_SixteenColours, DitheringMode::FloydSteinberg},
        {"16 fixed, ordered 8x8", 8 + s_SixteenColours, DitheringMode::Bayer8x8},
        {"256 adaptive, none", 7, DitheringMode::None},
        {"256 adaptive, Floyd-Steinb.", 7, DitheringMode::FloydSteinberg},
    };
    for (const auto& call : calls) {
        std::vector<double> times;
        for (int i = 0; i < bench.rounds; ++i) {
            std::vector<std::uint8_t> out = rows;
            const auto wholeCall = [&] {
                Surface<Pixel32> surface;
                LoadSurface(out.data(), out.size(), s_Width, s_Height, 8, s_Width * 4, surface);
                Quantize(surface, call.selector, call.mode, 0.25f, false);
                StoreSurface(surface, out.data(), out.size(), 8, s_Width * 4);
            };
            times.push_back(Pairs::Time(wholeCall, Clock::Thread));
        }
        std::printf("QuantizeBench  whole call %-27s %dx%d  ours %7.2f ms\n", call.name, s_Width, s_Height,
                    1e3 * Pairs::Median(times));
    }
}

bool ChoosePath(const char* name) {
    for (const SimdPath path : SupportedSimdPaths())
        if (std::strcmp(SimdPathName(path), name) == 0)
            return SetSimdPath(path);
    std::fprintf(stderr, "quantize_bench: --path %s: this processor supports", name);
    for (const SimdPath path : SupportedSimdPaths())
        std::fprintf(stderr, " %s", SimdPathName(path));
    std::fprintf(stderr, "\n");
    return false;
}

int Usage() {
    std::fprintf(stderr, "usage: quantize_bench [--rounds N] [--path NAME] [--write-picture FILE.ppm]\n"
                         "                      [--only sixteen|octree|threads|calls|paths]\n");
    return 2;
}

} // namespace

int main(int argc, char** argv) {
    int rounds = 15;
    const char* only = "";
    for (int i = 1; i < argc; i += 2) {
        const char* const value = i + 1 < argc ? argv[i + 1] : nullptr;
        if (value && std::strcmp(argv[i], "--rounds") == 0 && std::atoi(value) > 0)
            rounds = std::atoi(value);
        else if (value && std::strcmp(argv[i], "--only") == 0)
            only = value;
        else if (value && std::strcmp(argv[i], "--path") == 0 && ChoosePath(value))
            continue;
        else if (value && std::strcmp(argv[i], "--write-picture") == 0)
            return WritePpm(MakePhoto(s_Width, s_Height), value) ? 0 : 1;
        else
            return Usage();
    }
    SetThreadCount(1);
    Bench bench{rounds, MakePhoto(s_Width, s_Height)};
    std::printf("QuantizeBench  SIMD path %s\n", SimdPathName(CurrentSimdPath()));
    const struct {
        const char* name;
        void (*measure)(Bench& bench);
    } groups[] = {{"sixteen", MeasureSixteenColours},
                  {"octree", MeasureOctree},
                  {"threads", MeasureThreads},
                  {"calls", MeasureWholeCalls},
                  {"paths", MeasureSimdPaths}};
    for (const auto& group : groups) {
        if (*only && std::strcmp(only, group.name) != 0)
            continue;
        bench.Restore();
        group.measure(bench);
    }
    return 0;
}
