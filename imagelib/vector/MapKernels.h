#pragma once

#include "imagelib/vector/Kernels.h"

// Nearest-colour mapping, a vector of pixels at a time. V is one of the vector types.
namespace ImageLib::Vector {
namespace {

template <class V>
struct Channels {
    typename V::Float alpha, red, green, blue;
};

template <class V>
typename V::Float SquaredTo(typename V::Float value, float target) {
    const typename V::Float difference = value - V::Splat(target);
    return difference * difference;
}

// The distance of each lane to entry i; `alpha`: that part of it when all entries are opaque.
template <class V, bool Opaque>
typename V::Float DistanceTo(const Channels<V>& pixels, typename V::Float alpha, const PaletteTable& palette,
                             unsigned i) {
    if constexpr (!Opaque)
        alpha = SquaredTo<V>(pixels.alpha, palette.alpha[i]);
    return alpha + SquaredTo<V>(pixels.red, palette.red[i]) + SquaredTo<V>(pixels.green, palette.green[i]) +
           SquaredTo<V>(pixels.blue, palette.blue[i]);
}

// The index of the nearest entry for each lane.
template <class V, bool Opaque>
typename V::Int NearestLanes(const Channels<V>& pixels, const PaletteTable& palette) {
    typename V::Float best = V::Splat(StartDistance);
    typename V::Int bestIndex = V::ZeroInt();
    const typename V::Float alpha = SquaredTo<V>(pixels.alpha, 1.0f);
    for (unsigned i = 0; i < palette.count; ++i)
        V::KeepCloser(DistanceTo<V, Opaque>(pixels, alpha, palette, i), static_cast<int>(i), best, bestIndex);
    return bestIndex;
}

template <class V>
Channels<V> LoadLanes(const Pixel32* pixels, const float* offsets) {
    Channels<V> lanes;
    V::LoadChannels(pixels, sizeof(Pixel32), lanes.alpha, lanes.red, lanes.green, lanes.blue);
    if (offsets) {
        const typename V::Float offset = V::Load(offsets);
        lanes.alpha = lanes.alpha + offset;
        lanes.red = lanes.red + offset;
        lanes.green = lanes.green + offset;
        lanes.blue = lanes.blue + offset;
    }
    return lanes;
}

// The cells of the lanes' pixels; false when one of them lies outside the grid.
template <class V>
bool FindCells(const Channels<V>& pixels, const CellGrid& grid, std::uint32_t* cells) {
    using Int = typename V::Int;
    const typename V::Float low = V::Splat(grid.low), scale = V::Splat(grid.scale);
    const Int alpha = V::Truncate((pixels.alpha - low) * scale),
              red = V::Truncate((pixels.red - low) * scale);
    const Int green = V::Truncate((pixels.green - low) * scale),
              blue = V::Truncate((pixels.blue - low) * scale);
    if (V::AnyBits(V::Or(V::Or(alpha, red), V::Or(green, blue)), V::SplatInt(~((1 << grid.bits) - 1))))
        return false;
    V::StoreInt(cells, V::Or(red, V::Or(V::ShiftLeft(green, grid.bits), V::ShiftLeft(blue, 2 * grid.bits))));
    return true;
}

// The distances of a pixel to half a block or a block of candidates.
template <class V>
typename V::Float Distances(const Channels<V>& pixel, typename V::Float alpha, const CandidateBlock& block,
                            unsigned from) {
    const typename V::Float red = pixel.red - V::Load(block.red + from);
    const typename V::Float green = pixel.green - V::Load(block.green + from);
    const typename V::Float blue = pixel.blue - V::Load(block.blue + from);
    return alpha + red * red + green * green + blue * blue;
}

// The nearest entry of a list. All lanes of `pixel` hold the same pixel. Candidates stand in the order of the
// palette, so the first lane that equals the smallest distance is the lowest index.
template <class V>
unsigned NearestCandidate(const Channels<V>& pixel, const CandidateBlock* blocks, unsigned count,
                          int emptySlot) {
    using Float = typename V::Float;
    constexpr unsigned Parts = 8 / V::Lanes;
    Float distance[32 * Parts];
    const Float alpha = SquaredTo<V>(pixel.alpha, 1.0f);
    Float smallest = distance[0] = Distances<V>(pixel, alpha, blocks[0], 0);
    for (unsigned i = 1; i < count * Parts; ++i) {
        distance[i] = Distances<V>(pixel, alpha, blocks[i / Parts], i % Parts * V::Lanes);
        smallest = V::Min(distance[i], smallest);
    }
    smallest = V::Smallest(smallest);
    if (emptySlot >= 0) {
        const Float empty = pixel.alpha * pixel.alpha + pixel.red * pixel.red + pixel.green * pixel.green +
                            pixel.blue * pixel.blue;
        if (V::EqualLanes(V::Min(smallest, empty), smallest) == 0)
            return static_cast<unsigned>(emptySlot);
    }
    for (unsigned i = 0; i < count * Parts; ++i)
        if (const unsigned equal = V::EqualLanes(distance[i], smallest))
            return blocks[i / Parts].index[i % Parts * V::Lanes + __builtin_ctz(equal)];
    return 0; // NaN
}

inline std::uint32_t CodeOf(CellGrid& grid, std::uint32_t cell) {
    const std::uint32_t code = grid.cells[cell];
    return code ? code : grid.fill(grid, cell);
}

template <class V>
void StoreEntries(Pixel32* pixels, const PaletteTable& palette, const std::uint32_t* index) {
    for (unsigned lane = 0; lane < V::Lanes; ++lane)
        V::StorePixel(pixels + lane, V::LoadPixel(palette.entries + index[lane]));
}

template <class V>
void MapLanesByForce(Pixel32* pixels, const float* offsets, const MapJob& job) {
    alignas(64) std::uint32_t index[V::Lanes];
    const Channels<V> lanes = LoadLanes<V>(pixels, offsets);
    if (job.palette->opaque)
        V::StoreInt(index, NearestLanes<V, true>(lanes, *job.palette));
    else
        V::StoreInt(index, NearestLanes<V, false>(lanes, *job.palette));
    StoreEntries<V>(pixels, *job.palette, index);
}

template <class V>
void MapLanesByGrid(Pixel32* pixels, const float* offsets, const MapJob& job) {
    alignas(64) std::uint32_t index[V::Lanes];
    const Channels<V> lanes = LoadLanes<V>(pixels, offsets);
    if (!FindCells<V>(lanes, *job.grid, index)) {
        V::StoreInt(index, NearestLanes<V, false>(lanes, *job.palette));
    } else {
        for (unsigned lane = 0; lane < V::Lanes; ++lane) {
            const std::uint32_t code = CodeOf(*job.grid, index[lane]);
            if (IsSingle(code)) {
                index[lane] = SingleOf(code);
                continue;
            }
            const float offset = offsets ? offsets[lane] : 0.0f;
            const Pixel32& pixel = pixels[lane];
            const Channels<V> all{V::Splat(pixel.alpha + offset), V::Splat(pixel.red + offset),
                                  V::Splat(pixel.green + offset), V::Splat(pixel.blue + offset)};
            index[lane] =
                NearestCandidate<V>(all, job.grid->blocks + (code >> 6), code & 63, job.grid->emptySlot);
        }
    }
    StoreEntries<V>(pixels, *job.palette, index);
}

// Whole vectors in place, the rest by way of a padded copy.
template <class V, class MapLanes>
void MapPixels(Pixel32* pixels, std::uint32_t count, const MapJob& job, MapLanes map) {
    std::uint32_t x = 0;
    for (; count - x >= V::Lanes; x += V::Lanes)
        map(pixels + x, job.offsets ? job.offsets + x : nullptr, job);
    if (x == count)
        return;
    Pixel32 rest[V::Lanes] = {};
    float offsets[V::Lanes] = {};
    for (std::uint32_t i = x; i < count; ++i) {
        rest[i - x] = pixels[i];
        offsets[i - x] = job.offsets ? job.offsets[i] : 0.0f;
    }
    map(rest, job.offsets ? offsets : nullptr, job);
    for (std::uint32_t i = x; i < count; ++i)
        pixels[i] = rest[i - x];
}

// V for trying every entry, G (of four or eight lanes) for candidate lists.
template <class V, class G>
void Map(Pixel32* pixels, std::uint32_t count, const MapJob& job) {
    if (job.grid)
        MapPixels<G>(pixels, count, job, MapLanesByGrid<G>);
    else
        MapPixels<V>(pixels, count, job, MapLanesByForce<V>);
}

} // namespace
} // namespace ImageLib::Vector
