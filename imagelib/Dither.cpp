#include "imagelib/Dither.h"

#include "imagelib/MapSurface.h"
#include "imagelib/vector/CandidateGrid.h"

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <memory>
#include <optional>
#include <vector>

namespace ImageLib {
namespace {

// The kernel's weights in the order in which a pixel receives them: the topmost source row first, and in a
// row the source scanned first, which is the one with the rightmost weight.
std::vector<Vector::DiffusionTap> TapsOf(const Surface<Pixel32>& kernel) {
    std::vector<Vector::DiffusionTap> taps;
    const int width = static_cast<int>(kernel.Width());
    int origin = 0;
    while (origin < width && !(kernel.Row(0)[origin].alpha > 0.0f))
        ++origin;
    if (origin == width)
        return taps;
    for (unsigned row = kernel.Height(); row-- > 0;) {
        const int first = row == 0 ? origin + 1 : 0;
        for (int column = width - 1; column >= first; --column)
            if (const float weight = kernel.Row(row)[column].alpha; weight > 0.0f)
                taps.push_back({weight, origin - column, row});
    }
    return taps;
}

struct Reach {
    unsigned rowsAbove = 0;
    unsigned side = 0; // the farthest source to the left or right
    int right = 0;     // the farthest source in a row above that is still to come
};

Reach ReachOf(const std::vector<Vector::DiffusionTap>& taps) {
    Reach reach;
    for (const Vector::DiffusionTap& tap : taps) {
        reach.rowsAbove = std::max(reach.rowsAbove, tap.row);
        reach.side = std::max(reach.side, static_cast<unsigned>(std::abs(tap.dx)));
        if (tap.row > 0)
            reach.right = std::max(reach.right, tap.dx);
    }
    return reach;
}

} // namespace

void Dither::ErrorDiffusion(Surface<Pixel32>& surface, const Surface<Pixel32>& kernel,
                            const ColourSet& colours, bool serpentine) {
    const std::vector<Vector::DiffusionTap> taps = TapsOf(kernel);
    if (taps.empty() || surface.IsEmpty())
        return;
    const Reach reach = ReachOf(taps);
    const auto palette = MakeTable(colours);
    std::optional<Vector::CandidateGrid> grid;
    Vector::DiffusionJob job{};
    job.search = colours.byThreshold ? Vector::Search::Threshold : Vector::Search::BruteForce;
    if (!colours.byThreshold && palette->count > Vector::MaxBruteForce &&
        Vector::CandidateGrid::Serves(*palette)) {
        // Errors carry values a little beyond 0..1; the few beyond this range take the plain search.
        grid.emplace(*palette, -0.5f, 1.5f, 6);
        job.search = Vector::Search::Grid;
        job.grid = &grid->Grid();
    }
    job.threshold = colours.threshold;
    job.palette = palette.get();
    job.pixels = reinterpret_cast<unsigned char*>(surface.Row(0));
    job.stride = surface.Stride();
    job.width = surface.Width();
    job.height = surface.Height();
    job.taps = taps.data();
    job.tapCount = static_cast<unsigned>(taps.size());
    job.ownTap = static_cast<unsigned>(
        std::count_if(taps.begin(), taps.end(), [](const Vector::DiffusionTap& tap) { return tap.row > 0; }));
    job.rowsAbove = reach.rowsAbove;
    job.lag = reach.right + 1;
    job.serpentine = serpentine;
    job.errorStride = std::size_t{surface.Width()} + 2 * reach.side;
    std::vector<Pixel32> errors(job.errorStride * (reach.rowsAbove + Vector::BandRows));
    job.errors = errors.data() + reach.side;
    job.bandLag = job.lag + 3;
    job.historySlots = std::bit_ceil(std::size_t{1} + job.bandLag * reach.rowsAbove + reach.side);
    std::vector<float> history;
    if (job.search == Vector::Search::BruteForce) {
        history.resize(job.historySlots * 4 * 2 * Vector::HistoryMargin + Vector::Padding);
        void* aligned = history.data();
        std::size_t space = history.size() * sizeof(float);
        job.history = static_cast<float*>(std::align(64, 64, aligned, space));
    }
    const bool isSearchable =
        job.search != Vector::Search::BruteForce || palette->count <= Vector::MaxBruteForce;
    const bool fits = isSearchable && job.tapCount <= Vector::MaxTaps;
    (fits ? Vector::CurrentKernels() : Vector::PlainKernels).diffuse(job);
}

void Dither::Ordered(Surface<Pixel32>& surface, const Surface<Pixel32>& kernel, const ColourSet& colours,
                     float strength) {
    if (surface.IsEmpty() || kernel.IsEmpty())
        return;
    Offsets offsets;
    offsets.rowMask = kernel.Height() - 1;
    for (unsigned y = 0; y < kernel.Height(); ++y) {
        std::vector<float>& row = offsets.rows.emplace_back(surface.Width());
        for (std::uint32_t x = 0; x < surface.Width(); ++x)
            row[x] = strength * kernel.Row(y)[x & (kernel.Width() - 1)].alpha;
    }
    MapSurface(surface, colours, &offsets);
}

} // namespace ImageLib
