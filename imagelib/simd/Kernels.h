#pragma once

#include "imagelib/Surface.h"
#include "imagelib/simd/CellGrid.h"

// The inner loops, one set of them for each instruction set. A job is plain memory that the caller owns, so
// that the sources built for newer processors instantiate nothing that the rest of the program could link to.
namespace ImageLib::Simd {

inline constexpr unsigned s_MaxColours = 256;
inline constexpr unsigned s_MaxLanes = 16;      // floats in the widest vector
inline constexpr unsigned s_MaxBruteForce = 16; // longer palettes are searched with a candidate grid
inline constexpr unsigned s_MaxTaps = 64;       // weights of a diffusion kernel that the SIMD paths accept
inline constexpr float s_StartDistance =
    1000000.0f; // squared distance at which the search of a palette starts

// A palette stored channel by channel. Lanes from `count` on hold s_FarAway.
struct alignas(64) PaletteTable {
    float alpha[s_MaxColours];
    float red[s_MaxColours];
    float green[s_MaxColours];
    float blue[s_MaxColours];
    Pixel32 entries[s_MaxColours];
    unsigned count; // 1..256
    bool opaque;    // all alphas are 1
};

// Replaces pixels by their nearest palette entries.
struct MapJob {
    const PaletteTable* palette;
    CellGrid* grid;       // null: compare with every entry
    const float* offsets; // offsets[x] is added to all channels of pixel x before the search; may be null
};

// One weight of a diffusion kernel, seen from the pixel (x, y) that receives: it adds `weight` times the
// error of the pixel at (x + dx, y - row), where x counts in the direction of the scan.
struct DiffusionTap {
    float weight;
    int dx;
    unsigned row;
};

// How the palette entry of a pixel is found.
enum class Search {
    Threshold,  // entry 0 where red is above the threshold, else entry 1
    BruteForce, // comparison with every entry
    Grid,       // comparison with the candidates of the pixel's cell
};

inline constexpr unsigned s_ErrorRows =
    8; // rows that are diffused together, each a few pixels behind the row above

// The ring buffer of the wavefront: the errors of all lanes at the latest steps. One slot holds four channels
// of SlotLanes floats each: first the lanes of the rows above the current ones, then one lane a
// row.
struct WavefrontRing {
    static constexpr int LanesAbove = s_MaxLanes;
    static constexpr int SlotLanes = LanesAbove + static_cast<int>(s_MaxLanes);
    static constexpr std::size_t SlotFloats = std::size_t{4} * SlotLanes;

    float* slots;      // null: the job cannot be run as a wavefront; else aligned to 64 bytes
    std::size_t count; // slots, a power of two: more than any tap reaches back
    int lag; // pixels by which a row follows the row above; a few more than DiffusionJob::lag, so that
             // what a tap reads has left the processor's store queue
};

// Diffuses errors over a surface.
struct DiffusionJob {
    Search search;
    float threshold;
    const PaletteTable* palette;
    CellGrid* grid; // for Search::Grid
    bool serpentine;

    unsigned char* pixels; // first pixel of the top row
    std::size_t stride;    // bytes from row to row
    std::uint32_t width;   // pixels
    std::uint32_t height;

    const DiffusionTap* taps; // in the order of the sum: rows above first, the pixel's own row last
    unsigned tapCount;
    unsigned firstOwnTap; // index of the first tap with row 0
    unsigned rowsAbove;   // the largest `row` of a tap
    int lag;              // the fewest pixels by which a row has to follow the row above

    // The errors of the last rowsAbove rows and of s_ErrorRows rows, with margins of zeros for what taps read
    // beyond the sides; all zero at the start. Points at the first pixel of the first row.
    Pixel32* errors;
    std::size_t errorStride; // pixels from row to row
    WavefrontRing ring;
};

// The functions of one instruction set.
struct Kernels {
    // Replaces each of `count` pixels by its nearest palette entry.
    void (*map)(Pixel32* pixels, std::uint32_t count, const MapJob& job);
    // Replaces the pixels of a surface by palette entries and diffuses the errors.
    void (*diffuse)(const DiffusionJob& job);
    // Longest palette for which `map` is faster without a grid.
    unsigned maxBruteForceMap;
};

extern const Kernels ScalarKernels;
extern const Kernels Sse2Kernels;
extern const Kernels Avx2Kernels;
extern const Kernels Avx512Kernels;
extern const Kernels NeonKernels;

// The search that defines all others: entries in ascending order, a strictly smaller squared distance over
// all four channels wins, and entry 0 is the answer where no entry is nearer than s_StartDistance.
unsigned NearestEntry(const Pixel32& pixel, const PaletteTable& palette);

// The kernels of the path that Settings.h selects. Thread-safe.
const Kernels& CurrentKernels();

} // namespace ImageLib::Simd
