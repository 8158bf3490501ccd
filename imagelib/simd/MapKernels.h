#pragma once

#include "imagelib/simd/Kernels.h"

// Maps pixels to their nearest palette entries, one vector of pixels at a time. V is one of the vector types.
namespace ImageLib::Simd {
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

// The squared distance of each lane to entry i. alpha: the part of the alpha channel when all entries are
// opaque.
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
    typename V::Float best = V::Splat(s_StartDistance);
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

// Finds the cells of the lanes' pixels. Returns false when one of them is outside the grid.
template <class V>
bool FindCells(const Channels<V>& pixels, const CellGrid& grid, std::uint32_t* cells) {
    using Int = typename V::Int;
    const typename V::Float low = V::Splat(grid.low), scale = V::Splat(grid.scale);
    const Int alpha = V::Truncate((pixels.alpha - low) * scale),
              red = V::Truncate((pixels.red - low) * scale);
    const Int green = V::Truncate((pixels.green - low) * scale),
              blue = V::Truncate((pixels.blue - low) * scale);
    if (V::AnyBits(V::Or(V::Or(alpha, red), V::Or(green, blue)), V::SplatInt(grid.OutsideMask())))
        return false;
    V::StoreInt(cells, V::Or(red, V::Or(V::ShiftLeft(green, grid.bits), V::ShiftLeft(blue, 2 * grid.bits))));
    return true;
}

// The squared distances of a pixel to the candidates from..from + Lanes - 1 of a block.
template <class V>
typename V::Float Distances(const Channels<V>& pixel, typename V::Float alpha, const CandidateBlock& block,
                            unsigned from) {
    const typename V::Float red = pixel.red - V::Load(block.red + from);
    const typename V::Float green = pixel.green - V::Load(block.green + from);
    const typename V::Float blue = pixel.blue - V::Load(block.blue + from);
    return alpha + red * red + green * green + blue * blue;
}

// The nearest entry among the candidates of a cell. All lanes of `pixel` hold the same pixel. Candidates have
// the order of the palette, so the first lane with the smallest distance has the lowest index.
template <class V>
unsigned NearestCandidate(const Channels<V>& pixel, const CellGrid& grid, CellCode code) {
    using Float = typename V::Float;
    constexpr unsigned partsPerBlock = s_BlockEntries / V::Lanes;
    const CandidateBlock* const blocks = grid.blocks + code.FirstBlock();
    const unsigned parts = code.BlockCount() * partsPerBlock;
    Float distance[s_MaxColours / V::Lanes];
    const Float alpha = SquaredTo<V>(pixel.alpha, 1.0f);
    Float smallest = distance[0] = Distances<V>(pixel, alpha, blocks[0], 0);
    for (unsigned i = 1; i < parts; ++i) {
        distance[i] = Distances<V>(pixel, alpha, blocks[i / partsPerBlock], i % partsPerBlock * V::Lanes);
        smallest = V::Min(distance[i], smallest);
    }
    smallest = V::Smallest(smallest);
    if (grid.emptySlot >= 0) {
        const Float empty = pixel.alpha * pixel.alpha + pixel.red * pixel.red + pixel.green * pixel.green +
                            pixel.blue * pixel.blue;
        if (V::EqualLanes(V::Min(smallest, empty), smallest) == 0)
            return static_cast<unsigned>(grid.emptySlot);
    }
    for (unsigned i = 0; i < parts; ++i)
        if (const unsigned equal = V::EqualLanes(distance[i], smallest))
            return blocks[i / partsPerBlock].index[i % partsPerBlock * V::Lanes + __builtin_ctz(equal)];
    return 0; // the pixel holds a NaN
}

template <class V>
void StoreEntries(Pixel32* pixels, const PaletteTable& palette, const std::uint32_t* index) {
    for (unsigned lane = 0; lane < V::Lanes; ++lane)
        V::StorePixel(pixels + lane, V::LoadPixel(palette.entries + index[lane]));
}

template <class V>
void MapLanesByBruteForce(Pixel32* pixels, const float* offsets, const MapJob& job) {
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
            const CellCode code = job.grid->CodeOf(index[lane]);
            if (code.IsSingle()) {
                index[lane] = code.Entry();
                continue;
            }
            const float offset = offsets ? offsets[lane] : 0.0f;
            const Pixel32& pixel = pixels[lane];
            const Channels<V> all{V::Splat(pixel.alpha + offset), V::Splat(pixel.red + offset),
                                  V::Splat(pixel.green + offset), V::Splat(pixel.blue + offset)};
            index[lane] = NearestCandidate<V>(all, *job.grid, code);
        }
    }
    StoreEntries<V>(pixels, *job.palette, index);
}

// Calls map(pixels, offsets, job) for whole vectors in place and for a padded copy of the remaining pixels.
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

template <class V>
void MapByBruteForce(Pixel32* pixels, std::uint32_t count, const MapJob& job) {
    MapPixels<V>(pixels, count, job, MapLanesByBruteForce<V>);
}

template <class V>
void Map(Pixel32* pixels, std::uint32_t count, const MapJob& job) {
    if (job.grid)
        MapPixels<V>(pixels, count, job, MapLanesByGrid<V>);
    else
        MapByBruteForce<V>(pixels, count, job);
}

} // namespace
} // namespace ImageLib::Simd
