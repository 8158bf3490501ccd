#pragma once

#include "imagelib/simd/Kernels.h"

#include <vector>

namespace ImageLib::Simd {

// Accelerates the search of a palette: for each cell of colour space, the palette entries that can be nearest
// to a pixel in this cell. A cell is computed when a pixel first belongs to it. The result is exact: an entry
// is left out only where another entry is nearer by more than all rounding errors. For one thread at a time.
// The palette must outlive the grid.
class CandidateGrid {
public:
    // Covers low..high in every channel with 2^bits cells along each side. bits: 4..6. Throws std::bad_alloc,
    // and so do the inner loops when they compute a cell.
    CandidateGrid(const PaletteTable& palette, float low, float high, unsigned bits);
    CandidateGrid(const CandidateGrid&) = delete;
    CandidateGrid& operator=(const CandidateGrid&) = delete;

    // True when a grid can be made for the palette: opaque entries with channels in 0..1, then at most one
    // entry of four zeros.
    static bool Accepts(const PaletteTable& palette);

    // True when a grid can be made for this range: rounding errors stay within their bounds.
    static bool Covers(float low, float high) { return low >= -4.0f && high <= 5.0f; }

    CellGrid& Grid() { return m_Shared.grid; }

private:
    struct Box {
        float center[3];
        float half[3];
    };
    // The grid is the first member, so that Fill can get from the grid to its owner.
    struct Shared {
        CellGrid grid;
        CandidateGrid* owner;
    };

    static CellCode Fill(CellGrid& grid, std::uint32_t cell);
    CellCode Fill(std::uint32_t cell);
    Box BoxOf(const std::uint32_t position[3], unsigned cells) const;
    const std::vector<std::uint16_t>& CoarseList(const std::uint32_t position[3]);
    void Filter(const Box& box, const std::vector<std::uint16_t>& from, std::vector<std::uint16_t>& to);
    void Append(const std::vector<std::uint16_t>& list);

    const PaletteTable& m_Palette;
    float m_Slack;
    Shared m_Shared;
    std::vector<CellCode> m_Cells;
    std::vector<CandidateBlock> m_Blocks;
    std::vector<std::uint16_t> m_All;
    std::vector<std::vector<std::uint16_t>> m_Coarse; // one list a coarse cube; empty while unknown
    std::vector<std::uint16_t> m_List;                // candidates of the cell being computed
};

} // namespace ImageLib::Simd
