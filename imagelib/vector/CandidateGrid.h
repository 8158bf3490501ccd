#pragma once

#include "imagelib/vector/Kernels.h"

#include <vector>

namespace ImageLib::Vector {

// For each cell of colour space the palette entries that can be nearest to a pixel in it, found when a pixel
// first falls there. Exact: an entry is left out only where another is nearer by more than all rounding.
// Serves one thread at a time. The palette must outlive the grid.
class CandidateGrid {
public:
    // Covers low..high in every channel with 2^bits cells a side, bits 4 to 6.
    CandidateGrid(const PaletteTable& palette, float low, float high, unsigned bits);
    CandidateGrid(const CandidateGrid&) = delete;
    CandidateGrid& operator=(const CandidateGrid&) = delete;

    // What a palette must be: opaque entries between 0 and 1, then at most one of four zeros.
    static bool Serves(const PaletteTable& palette);

    // Whether rounding stays within bounds over that range, so that a grid may be made.
    static bool Covers(float low, float high) { return low >= -4.0f && high <= 5.0f; }

    CellGrid& Grid() { return m_Shared.grid; }

private:
    struct Box {
        float center[3];
        float half[3];
    };
    // The grid comes first, which is how Fill gets from it to its owner.
    struct Shared {
        CellGrid grid;
        CandidateGrid* owner;
    };

    static std::uint32_t Fill(CellGrid& grid, std::uint32_t cell);
    std::uint32_t Fill(std::uint32_t cell);
    Box BoxOf(const std::uint32_t position[3], unsigned cells) const;
    const std::vector<std::uint16_t>& CoarseList(const std::uint32_t position[3]);
    void Filter(const Box& box, const std::vector<std::uint16_t>& from, std::vector<std::uint16_t>& to);
    void Append(const std::vector<std::uint16_t>& list);

    const PaletteTable& m_Palette;
    float m_Slack;
    Shared m_Shared;
    std::vector<std::uint32_t> m_Cells;
    std::vector<CandidateBlock> m_Blocks;
    std::vector<std::uint16_t> m_All;
    std::vector<std::vector<std::uint16_t>> m_Coarse; // one list for each cube of cells; empty while unknown
    std::vector<std::uint16_t> m_List;                // of the cell being filled
};

} // namespace ImageLib::Vector
