#include "imagelib/MapSurface.h"

#include "imagelib/Settings.h"
#include "imagelib/simd/CandidateGrid.h"

#include <algorithm>
#include <exception>
#include <optional>
#include <system_error>
#include <thread>

namespace ImageLib {
namespace {

constexpr std::size_t s_PixelsPerThread =
    1 << 15;                       // with fewer pixels, starting a thread costs more than it gains
constexpr unsigned s_GridBits = 5; // cells along one side of a candidate grid: 2^5

struct Mapping {
    Surface<Pixel32>& surface;
    const ColourSet& colours;
    const Simd::PaletteTable& palette;
    const Offsets* offsets;
    bool useGrid;
    float low, high; // range of channel values that the grid covers
};

const float* OffsetsOf(const Mapping& mapping, std::uint32_t y) {
    return mapping.offsets ? mapping.offsets->rows[y & mapping.offsets->rowMask].data() : nullptr;
}

void ThresholdRow(Pixel32* pixels, std::uint32_t width, const ColourSet& colours, const float* offsets) {
    for (std::uint32_t x = 0; x < width; ++x) {
        const float red = offsets ? pixels[x].red + offsets[x] : pixels[x].red;
        pixels[x] = colours.colours[red > colours.threshold ? 0 : 1];
    }
}

void MapRows(const Mapping& mapping, std::uint32_t from, std::uint32_t to) {
    const std::uint32_t width = mapping.surface.Width();
    if (mapping.colours.byThreshold) {
        for (std::uint32_t y = from; y < to; ++y)
            ThresholdRow(mapping.surface.Row(y), width, mapping.colours, OffsetsOf(mapping, y));
        return;
    }
    std::optional<Simd::CandidateGrid> grid;
    if (mapping.useGrid)
        grid.emplace(mapping.palette, mapping.low, mapping.high, s_GridBits);
    const Simd::Kernels& kernels = Simd::CurrentKernels();
    for (std::uint32_t y = from; y < to; ++y) {
        const Simd::MapJob job{&mapping.palette, grid ? &grid->Grid() : nullptr, OffsetsOf(mapping, y)};
        kernels.map(mapping.surface.Row(y), width, job);
    }
}

// Maps the surface in `parts` ranges of rows, each on a separate thread; the calling thread takes the
// first range.
void RunParts(const Mapping& mapping, unsigned parts) {
    const auto firstRow = [&](unsigned part) {
        return static_cast<std::uint32_t>(std::uint64_t{mapping.surface.Height()} * part / parts);
    };
    std::vector<std::exception_ptr> failures(parts);
    const auto run = [&](unsigned part) noexcept {
        try {
            MapRows(mapping, firstRow(part), firstRow(part + 1));
        } catch (...) {
            failures[part] = std::current_exception();
        }
    };
    std::vector<std::thread> workers;
    workers.reserve(parts);
    for (unsigned part = 1; part < parts; ++part) {
        try {
            workers.emplace_back(run, part);
        } catch (const std::system_error&) {
            run(part); // the system has no thread left
        }
    }
    run(0);
    for (std::thread& worker : workers)
        worker.join();
    for (const std::exception_ptr& failure : failures)
        if (failure)
            std::rethrow_exception(failure);
}

// Finds the range of pixels between 0 and 1 after their offsets are added. Returns false when no grid covers
// it.
bool FindRange(const Offsets* offsets, float& low, float& high) {
    low = 0.0f;
    high = 1.0f;
    if (!offsets)
        return true;
    for (const std::vector<float>& row : offsets->rows) {
        const std::size_t period = std::min<std::size_t>(row.size(), 8);
        for (std::size_t x = 0; x < period; ++x) {
            low = std::min(low, row[x]);
            high = std::max(high, 1.0f + row[x]);
        }
    }
    return Simd::CandidateGrid::Covers(low, high);
}

} // namespace

std::unique_ptr<Simd::PaletteTable> MakeTable(const ColourSet& colours) {
    auto table = std::make_unique<Simd::PaletteTable>();
    unsigned count = std::min(colours.count, Simd::s_MaxColours);
    while (count > 1 && !colours.byThreshold && colours.colours[count - 1] == colours.colours[count - 2])
        --count;
    table->count = count;
    table->opaque = true;
    for (unsigned i = 0; i < Simd::s_MaxColours; ++i) {
        constexpr float unused = Simd::s_FarAway;
        const Pixel32 colour = i < count ? colours.colours[i] : Pixel32{unused, unused, unused, unused};
        table->alpha[i] = colour.alpha;
        table->red[i] = colour.red;
        table->green[i] = colour.green;
        table->blue[i] = colour.blue;
        table->entries[i] = colour;
        table->opaque &= i >= count || colour.alpha == 1.0f;
    }
    return table;
}

void MapSurface(Surface<Pixel32>& surface, const ColourSet& colours, const Offsets* offsets) {
    if (surface.IsEmpty())
        return;
    const auto palette = MakeTable(colours);
    Mapping mapping{surface, colours, *palette, offsets, false, 0.0f, 1.0f};
    mapping.useGrid = !colours.byThreshold && FindRange(offsets, mapping.low, mapping.high) &&
                      palette->count > Simd::CurrentKernels().maxBruteForceMap &&
                      Simd::CandidateGrid::Accepts(*palette);

    const std::size_t useful = std::size_t{surface.Width()} * surface.Height() / s_PixelsPerThread;
    const std::size_t most = std::min<std::size_t>(useful, surface.Height());
    RunParts(mapping, static_cast<unsigned>(std::clamp<std::size_t>(most, 1, ThreadCount())));
}

} // namespace ImageLib
