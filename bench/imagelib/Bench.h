#pragma once

#include "bench/Pairs.h"
#include "imagelib/Surface.h"
#include "tests/imagelib/reference/Reference.h"

#include <cstdio>
#include <cstring>

// What the groups of quantize_bench share: the picture, and the comparisons that end in a printed row.

inline constexpr int s_Width = 1920, s_Height = 1080;
inline constexpr double s_Pixels = double{s_Width} * s_Height;
inline constexpr unsigned s_SixteenColours = 5; // HWPalette value of a full palette of sixteen colours

// The measured picture, in the forms that the two sides take. `rounds`: pairs to time for each row.
struct Bench {
    int rounds;
    const Reference::Picture original;
    Reference::Picture reference = original;
    ImageLib::Surface<ImageLib::Pixel32> surface{s_Width, s_Height};
    ImageLib::Surface<ImageLib::Pixel32> copy{s_Width, s_Height};

    std::size_t Bytes() const { return original.pixels.size() * sizeof(Reference::Colour); }
    void Restore() {
        std::memcpy(reference.pixels.data(), original.pixels.data(), Bytes());
        std::memcpy(surface.Row(0), original.pixels.data(), Bytes());
    }
    bool IsEqual() const { return std::memcmp(surface.Row(0), reference.pixels.data(), Bytes()) == 0; }
};

inline void Print(const char* work, const char* baselineName, const char* oursName, const Pairs& pairs,
                  const char* note) {
    std::printf("QuantizeBench  %-26s %dx%d  %s %8.2f ms  %s %7.2f ms  ratio %6.2f%s\n", work, s_Width,
                s_Height, baselineName, pairs.BaselineMilliseconds(), oursName, pairs.OursMilliseconds(),
                pairs.Speedup(), note);
    std::fflush(stdout);
}

// Times both sides `rounds` times on a fresh picture, after one run to warm up. The row's ratio is the
// baseline's time divided by ours.
template <class Baseline, class Ours>
Pairs TimePairs(Bench& bench, int rounds, Clock clock, Baseline baseline, Ours ours) {
    Pairs pairs(clock);
    bench.Restore();
    ours();
    for (int i = 0; i < rounds; ++i)
        pairs.Run(ours, baseline, [&] { bench.Restore(); });
    return pairs;
}

// Compares the reference implementation with ours on one core, and reports when the pictures differ.
template <class Baseline, class Ours>
void CompareWithReference(Bench& bench, const char* work, int rounds, Baseline reference, Ours ours) {
    const Pairs pairs = TimePairs(bench, rounds, Clock::Thread, reference, ours);
    bench.Restore();
    reference();
    ours();
    Print(work, "reference", "ours", pairs, bench.IsEqual() ? "" : "  DIFFERENT RESULTS");
}
