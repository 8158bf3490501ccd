// Times imagelib against the plain loops of the tests' model and against memcpy, on one picture in one
// process, the two sides in turn; prints medians and their ratio.
//
// quantize_bench [--rounds N] [--path plain|sse2|avx2|avx512|neon] [--only sixteen|octree|threads|calls]
//                [--write-picture FILE.ppm]

#include "bench/imagelib/Picture.h"
#include "bench/imagelib/Sides.h"
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

constexpr int kWidth = 1920, kHeight = 1080;
constexpr double kPixels = double{kWidth} * kHeight;
constexpr auto kSixteen = static_cast<HWPalette>(5); // a full palette of sixteen colours

struct Bench {
    int rounds;
    const Model::Picture original;
    Model::Picture model = original;
    Surface<Pixel32> surface{kWidth, kHeight};
    Surface<Pixel32> copy{kWidth, kHeight};

    std::size_t Bytes() const { return original.pixels.size() * sizeof(Model::Colour); }
    void Restore() {
        std::memcpy(model.pixels.data(), original.pixels.data(), Bytes());
        std::memcpy(surface.Row(0), original.pixels.data(), Bytes());
    }
    bool IsEqual() const { return std::memcmp(surface.Row(0), model.pixels.data(), Bytes()) == 0; }
};

void Print(const char* work, const char* firstName, const char* secondName, const Sides& sides,
           const char* note) {
    std::printf("QuantizeBench  %-26s %dx%d  %s %8.2f ms  %s %7.2f ms  ratio %6.2f%s\n", work, kWidth,
                kHeight, firstName, 1e3 * sides.first, secondName, 1e3 * sides.second, sides.ratio, note);
    std::fflush(stdout);
}

// Plain against ours on one core; also checks that both left the same picture.
template <class Plain, class Ours>
Sides Compare(Bench& bench, const char* work, int rounds, Plain plain, Ours ours) {
    const Sides sides = Sides::Time(
        rounds, Clock::Thread, [&] { bench.Restore(); }, plain, ours);
    bench.Restore();
    plain();
    ours();
    Print(work, "plain", "ours", sides, bench.IsEqual() ? "" : "  DIFFERENT RESULTS");
    return sides;
}

template <class Ours>
void CompareWithCopy(Bench& bench, const char* work, Ours ours) {
    const auto copy = [&] { std::memcpy(bench.copy.Row(0), bench.original.pixels.data(), bench.Bytes()); };
    const Sides sides = Sides::Time(
        bench.rounds, Clock::Thread, [&] { bench.Restore(); }, copy, ours);
    char note[40];
    std::snprintf(note, sizeof note, "  (%.0f %% of memcpy)", 100 * sides.ratio);
    Print(work, "memcpy", "ours", sides, note);
}

void MeasureSixteenColours(Bench& bench) {
    const Model::Palette palette = Model::FixedPalette(kSixteen);
    const Model::Matrix bayer = Model::BayerMatrix(14);
    const unsigned selector = 8 + kSixteen;
    const auto ours = [&](int mode, bool serpentine) {
        return [&bench, selector, mode, serpentine] {
            Quantize(bench.surface, selector, static_cast<DitheringMode>(mode), 0.25f, serpentine);
        };
    };
    Compare(
        bench, "nearest 16", bench.rounds, [&] { Model::MapNearest(bench.model, palette); }, ours(0, false));
    CompareWithCopy(bench, "nearest 16", ours(0, false));
    Compare(
        bench, "ordered 8x8 16", bench.rounds, [&] { Model::MapOrdered(bench.model, bayer, palette, 0.25f); },
        ours(14, false));
    CompareWithCopy(bench, "ordered 8x8 16", ours(14, false));

    const char* const names[] = {"Floyd-Steinberg", "Jarvis-Judice", "Stucki",
                                 "Atkinson",        "Burkes",        "Sierra",
                                 "Sierra two-row",  "Sierra lite",   "Stevenson-Arce"};
    for (const bool serpentine : {false, true}) {
        for (int mode = 2; mode <= 10; ++mode) {
            const Model::Matrix matrix = Model::DiffusionMatrix(mode);
            char work[64];
            std::snprintf(work, sizeof work, "%s 16%s", names[mode - 2], serpentine ? " serp." : "");
            Compare(
                bench, work, bench.rounds, [&] { Model::Diffuse(bench.model, matrix, palette, serpentine); },
                ours(mode, serpentine));
        }
    }
}

void MeasureOctree(Bench& bench) {
    const std::vector<std::uint8_t> bytes = Model::ToBytes(bench.original);
    OctreeQuantEngine engine;
    const auto work = [&] { engine.work(bytes.data(), kWidth, kHeight, 256); };
    Model::Palette palette;
    const auto plainWork = [&] { palette = Model::OctreePalette(bytes, 256); };
    const Sides build = Sides::Time((bench.rounds + 2) / 3, Clock::Thread, [] {}, plainWork, work);
    char note[40];
    std::snprintf(note, sizeof note, "  (%.1f ns a pixel)", 1e9 * build.second / kPixels);
    Print("octree build 256", "plain", "ours", build, note);

    const ColourSet colours{engine.Palette(), 256, false, 0};
    Compare(
        bench, "nearest 256", (bench.rounds + 2) / 3, [&] { Model::MapNearest(bench.model, palette); },
        [&] { Quantizers::Process(bench.surface, colours); });
    const Model::Matrix matrix = Model::DiffusionMatrix(2);
    Compare(
        bench, "Floyd-Steinberg 256", (bench.rounds + 2) / 3,
        [&] { Model::Diffuse(bench.model, matrix, palette, false); },
        [&] { Dither::ErrorDiffusion(bench.surface, FloydSteinbergKernel, colours, false); });
}

// Times run(1) against run(2), each on that many threads.
template <class Run>
void CompareThreads(Bench& bench, const char* work, Run run) {
    // The fastest of many: on a busy machine the median tells how many others wait for its processors.
    const Sides sides = Sides::Time(
        4 * bench.rounds, Clock::Wall, [&] { bench.Restore(); }, [&] { run(1); }, [&] { run(2); });
    char note[60];
    std::snprintf(note, sizeof note, "  (of the fastest; median of the pairs %.2f)", sides.ratio);
    const double ratio = sides.fastestFirst / sides.fastestSecond;
    Print(work, "one thread", "two", {sides.fastestFirst, sides.fastestSecond, ratio, 0, 0}, note);
}

// What two threads of this machine give to work that shares nothing: the most that the rows below can reach.
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
            Quantize(bench.surface, 8 + kSixteen, mode, 0.25f, false);
        };
    };
    CompareThreads(bench, "nearest 16", quantize(DitheringMode::None));
    CompareThreads(bench, "ordered 8x8 16", quantize(DitheringMode::Bayer8x8));
    const std::vector<std::uint8_t> bytes = Model::ToBytes(bench.original);
    OctreeQuantEngine engine;
    engine.work(bytes.data(), kWidth, kHeight, 256);
    const ColourSet colours{engine.Palette(), 256, false, 0};
    CompareThreads(bench, "nearest 256", [&](unsigned threads) {
        SetThreadCount(threads);
        Quantizers::Process(bench.surface, colours);
    });
    SetThreadCount(1);
}

// Whole calls, as other programs are timed: from 8-bit rows to 8-bit rows, on one thread.
void MeasureWholeCalls(Bench& bench) {
    std::vector<std::uint8_t> rows(std::size_t{kWidth} * kHeight * 4);
    StoreSurface(bench.surface, rows.data(), rows.size(), 8, kWidth * 4);
    const struct {
        const char* name;
        unsigned selector;
        DitheringMode mode;
    } calls[] = {
        {"16 fixed, none", 8 + kSixteen, DitheringMode::None},
        {"16 fixed, Floyd-Steinberg", 8 + kSixteen, DitheringMode::FloydSteinberg},
        {"16 fixed, ordered 8x8", 8 + kSixteen, DitheringMode::Bayer8x8},
        {"256 adaptive, none", 7, DitheringMode::None},
        {"256 adaptive, Floyd-Steinb.", 7, DitheringMode::FloydSteinberg},
    };
    for (const auto& call : calls) {
        std::vector<double> times;
        for (int i = 0; i < bench.rounds; ++i) {
            std::vector<std::uint8_t> out = rows;
            const double start = Now(Clock::Thread);
            Surface<Pixel32> surface;
            LoadSurface(out.data(), out.size(), kWidth, kHeight, 8, kWidth * 4, surface);
            Quantize(surface, call.selector, call.mode, 0.25f, false);
            StoreSurface(surface, out.data(), out.size(), 8, kWidth * 4);
            times.push_back(Now(Clock::Thread) - start);
        }
        std::printf("QuantizeBench  whole call %-27s %dx%d  ours %7.2f ms\n", call.name, kWidth, kHeight,
                    1e3 * Median(times));
    }
}

bool ChoosePath(const char* name) {
    for (const VectorPath path : SupportedPaths())
        if (std::strcmp(PathName(path), name) == 0)
            return SetVectorPath(path);
    std::fprintf(stderr, "quantize_bench: --path %s: this processor has", name);
    for (const VectorPath path : SupportedPaths())
        std::fprintf(stderr, " %s", PathName(path));
    std::fprintf(stderr, "\n");
    return false;
}

int Usage() {
    std::fprintf(stderr,
                 "usage: quantize_bench [--rounds N] [--path NAME] [--only sixteen|octree|threads|calls]\n"
                 "                      [--write-picture FILE.ppm]\n");
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
            return WritePpm(MakePhoto(kWidth, kHeight), value) ? 0 : 1;
        else
            return Usage();
    }
    SetThreadCount(1);
    Bench bench{rounds, MakePhoto(kWidth, kHeight)};
    std::printf("QuantizeBench  vector path %s\n", PathName(CurrentVectorPath()));
    const struct {
        const char* name;
        void (*measure)(Bench& bench);
    } groups[] = {{"sixteen", MeasureSixteenColours},
                  {"octree", MeasureOctree},
                  {"threads", MeasureThreads},
                  {"calls", MeasureWholeCalls}};
    for (const auto& group : groups) {
        if (*only && std::strcmp(only, group.name) != 0)
            continue;
        bench.Restore();
        group.measure(bench);
    }
    return 0;
}
