#pragma once

#include "imagelib/Surface.h"

// The inner loops, one set of them for each kind of processor. These structures are plain memory, so that the
// sources built for newer processors instantiate nothing that the rest of the program could pick up.
namespace ImageLib::Vector {

inline constexpr unsigned MaxColours = 256;
inline constexpr unsigned Padding = 16;       // the widest vector, in floats
inline constexpr unsigned MaxBruteForce = 16; // longer palettes are searched through candidate lists
inline constexpr float StartDistance = 1000000.0f;

// A palette by channel. Lanes from `count` up to a multiple of 16 lie so far away that no pixel is near them.
struct alignas(64) PaletteTable {
    float alpha[MaxColours];
    float red[MaxColours];
    float green[MaxColours];
    float blue[MaxColours];
    Pixel32 entries[MaxColours];
    unsigned count;
    bool opaque; // all alphas are 1
};

// Up to eight palette entries by channel; unused lanes lie far away.
struct alignas(128) CandidateBlock {
    float red[8];
    float green[8];
    float blue[8];
    std::uint32_t index[8];
};

// A cube of 2^bits cells a side over [low, low + 2^bits / scale) in red, green and blue, alpha in the same
// range. A cell's code is 0 while unknown, entry + 1 << 6 where it has only that candidate and there
// is no empty slot, else its first block << 6 | its number of blocks.
struct CellGrid {
    float low;
    float scale;
    unsigned bits;
    int emptySlot; // an entry of four zeros behind all the opaque ones, or -1
    const std::uint32_t* cells;
    const CandidateBlock* blocks;
    std::uint32_t (*fill)(CellGrid& grid, std::uint32_t cell); // computes and stores the code of a cell
};

inline bool IsSingle(std::uint32_t code) {
    return (code & 63) == 0;
}
inline unsigned SingleOf(std::uint32_t code) {
    return (code >> 6) - 1;
}

struct MapJob {
    const PaletteTable* palette;
    CellGrid* grid;       // null: try every entry
    const float* offsets; // added to all channels of pixel x, or null
};

// A weight of the error of the pixel at (x + dx, y - row), in scan coordinates, in the sum of pixel (x, y).
struct DiffusionTap {
    float weight;
    int dx;
    unsigned row;
};

enum class Search { Threshold, BruteForce, Grid };

inline constexpr unsigned BandRows = 8; // rows that advance together
inline constexpr int HistoryMargin = 16;
inline constexpr unsigned MaxTaps = 64; // of the vector paths

struct DiffusionJob {
    Search search;
    float threshold; // entry 0 above it, else entry 1
    const PaletteTable* palette;
    CellGrid* grid;
    unsigned char* pixels;
    std::size_t stride;
    std::uint32_t width;
    std::uint32_t height;
    const DiffusionTap* taps; // in the order of the sum, those of the pixel's own row last
    unsigned tapCount;
    unsigned ownTap; // the first tap of the own row
    unsigned rowsAbove;
    int lag; // pixels that a row stays behind the one above it
    bool serpentine;
    // The errors of rowsAbove + BandRows rows, with margins of zeros: all zero at the start. Points at the
    // first pixel of the first row.
    Pixel32* errors;
    std::size_t errorStride; // in pixels
    // For a lane per row: errors by step and channel, 2 * HistoryMargin floats each; null where not wanted.
    float* history;
    std::size_t
        historySlots; // a power of two, more than bandLag * rowsAbove and the farthest tap to the left
    int bandLag;      // a few more than lag, so that what a tap reads has left the store queue
};

struct Kernels {
    // Replaces each of `count` pixels by its nearest palette entry.
    void (*map)(Pixel32* pixels, std::uint32_t count, const MapJob& job);
    // Diffuses errors over a surface.
    void (*diffuse)(const DiffusionJob& job);
};

extern const Kernels PlainKernels;
extern const Kernels Sse2Kernels;
extern const Kernels Avx2Kernels;
extern const Kernels Avx512Kernels;
extern const Kernels NeonKernels;

// The plain search: entries in order, only a strictly smaller distance wins, entry 0 where none is nearer
// than StartDistance.
unsigned NearestEntry(const Pixel32& pixel, const PaletteTable& palette);

const Kernels& CurrentKernels();

} // namespace ImageLib::Vector
