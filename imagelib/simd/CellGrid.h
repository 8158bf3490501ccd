#pragma once

#include <cstdint>

// The data of a candidate grid (see CandidateGrid.h) as the inner loops read it: plain memory and inline
// functions that are always inlined, so that a source built for a newer processor leaves no shared copy
// behind.
namespace ImageLib::Simd {

#define FX_ALWAYS_INLINE [[gnu::always_inline]] inline

inline constexpr unsigned s_BlockEntries = 8; // palette entries in one CandidateBlock
inline constexpr float s_FarAway = 1e30f;     // a channel of an unused lane: no pixel is near it

// Up to eight palette entries, stored channel by channel. Unused lanes hold s_FarAway.
struct alignas(128) CandidateBlock {
    float red[s_BlockEntries];
    float green[s_BlockEntries];
    float blue[s_BlockEntries];
    std::uint32_t index[s_BlockEntries]; // in the palette, ascending
};

// What is known about one cell, packed into 32 bits. All bits are zero while nothing is known. The upper 26
// bits hold a number and the lower six bits a count of blocks: a count of 0 means that the only candidate is
// palette entry (number - 1), any other count that the candidates are in `count` blocks from block `number`
// on.
struct CellCode {
    std::uint32_t packed = 0;

    static constexpr unsigned CountBits = 6;
    static constexpr std::uint32_t CountMask = (1u << CountBits) - 1;

    FX_ALWAYS_INLINE static CellCode Single(std::uint32_t entry) { return {(entry + 1) << CountBits}; }
    // count: 1..63.
    FX_ALWAYS_INLINE static CellCode Blocks(std::uint32_t first, std::uint32_t count) {
        return {first << CountBits | count};
    }

    FX_ALWAYS_INLINE bool IsKnown() const { return packed != 0; }
    FX_ALWAYS_INLINE bool IsSingle() const { return BlockCount() == 0; }
    FX_ALWAYS_INLINE std::uint32_t Entry() const { return (packed >> CountBits) - 1; }
    FX_ALWAYS_INLINE std::uint32_t FirstBlock() const { return packed >> CountBits; }
    FX_ALWAYS_INLINE std::uint32_t BlockCount() const { return packed & CountMask; }
};

// A cube of 2^bits cells a side over [low, low + 2^bits / scale) in red, green and blue. A pixel belongs to a
// cell only when its alpha is within the same range.
struct CellGrid {
    float low;
    float scale; // cells per unit
    unsigned bits;
    int emptySlot;         // index of a palette entry of four zeros after all opaque entries, or -1
    const CellCode* cells; // red in the lowest `bits` bits of the index, then green, then blue
    const CandidateBlock* blocks;
    CellCode (*fill)(CellGrid& grid, std::uint32_t cell); // computes and stores the code of a cell

    FX_ALWAYS_INLINE CellCode CodeOf(std::uint32_t cell) {
        const CellCode code = cells[cell];
        return code.IsKnown() ? code : fill(*this, cell);
    }
    // The bits that are set in a cell coordinate outside 0..2^bits - 1, negative ones included.
    FX_ALWAYS_INLINE int OutsideMask() const { return ~((1 << bits) - 1); }
};

#undef FX_ALWAYS_INLINE

} // namespace ImageLib::Simd
