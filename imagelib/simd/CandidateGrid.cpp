#include "imagelib/simd/CandidateGrid.h"

#include <algorithm>
#include <cmath>
#include <type_traits>

namespace ImageLib::Simd {
namespace {

constexpr unsigned s_CubeBits = 2; // a coarse cube has 2^2 cells along each side
constexpr unsigned s_CellsPerCube = 1u << s_CubeBits;

constexpr float s_MarginShare =
    1.0f / 256;                      // of the range: added at both ends, so that the ends are inside the grid
constexpr float s_CellSlack = 1e-3f; // of a cell's side: bounds the rounding when a pixel's cell is found
// Relative bound of the rounding in a squared distance over four channels: a few units in the last place.
constexpr float s_DistanceSlack = 4e-6f;

} // namespace

CandidateGrid::CandidateGrid(const PaletteTable& palette, float low, float high, unsigned bits)
    : m_Palette(palette), m_Cells(std::size_t{1} << 3 * bits),
      m_Coarse(std::size_t{1} << 3 * (bits - s_CubeBits)) {
    static_assert(std::is_standard_layout_v<Shared>);
    const bool hasEmptySlot = !palette.opaque;
    for (unsigned i = 0; i + hasEmptySlot < palette.count; ++i)
        m_All.push_back(static_cast<std::uint16_t>(i));

    const float margin = (high - low) * s_MarginShare;
    CellGrid& grid = m_Shared.grid;
    grid.low = low - margin;
    grid.scale = static_cast<float>(1u << bits) / (high - low + 2 * margin);
    grid.bits = bits;
    grid.emptySlot = hasEmptySlot ? static_cast<int>(palette.count) - 1 : -1;
    grid.cells = m_Cells.data();
    grid.blocks = m_Blocks.data();
    grid.fill = &CandidateGrid::Fill;
    m_Shared.owner = this;

    // A squared distance is at most four times reach^2.
    const float reach = std::max(std::abs(low), std::abs(high)) + 1.0f;
    m_Slack = 4.0f * reach * reach * s_DistanceSlack;
}

bool CandidateGrid::Accepts(const PaletteTable& palette) {
    const auto isUnit = [](float value) { return value >= 0.0f && value <= 1.0f; };
    const unsigned opaque = palette.opaque ? palette.count : palette.count - 1;
    for (unsigned i = 0; i < opaque; ++i) {
        const Pixel32& colour = palette.entries[i];
        if (colour.alpha != 1.0f || !isUnit(colour.red) || !isUnit(colour.green) || !isUnit(colour.blue))
            return false;
    }
    return opaque > 0 && (palette.opaque || palette.entries[opaque] == Pixel32{});
}

CellCode CandidateGrid::Fill(CellGrid& grid, std::uint32_t cell) {
    return reinterpret_cast<Shared&>(grid).owner->Fill(cell);
}

CellCode CandidateGrid::Fill(std::uint32_t cell) {
    const unsigned bits = m_Shared.grid.bits;
    const std::uint32_t mask = (1u << bits) - 1;
    const std::uint32_t position[3] = {cell & mask, cell >> bits & mask, cell >> 2 * bits};
    Filter(BoxOf(position, 1), CoarseList(position), m_List);
    if (m_List.size() == 1 && m_Shared.grid.emptySlot < 0)
        return m_Cells[cell] = CellCode::Single(m_List[0]);
    const auto first = static_cast<std::uint32_t>(m_Blocks.size());
    Append(m_List);
    m_Shared.grid.blocks = m_Blocks.data();
    const auto count = static_cast<std::uint32_t>(m_Blocks.size()) - first;
    return m_Cells[cell] = CellCode::Blocks(first, count);
}

const std::vector<std::uint16_t>& CandidateGrid::CoarseList(const std::uint32_t position[3]) {
    std::uint32_t corner[3], index = 0;
    for (int channel = 2; channel >= 0; --channel) {
        const std::uint32_t cube = position[channel] / s_CellsPerCube;
        corner[channel] = cube * s_CellsPerCube;
        index = index << (m_Shared.grid.bits - s_CubeBits) | cube;
    }
    std::vector<std::uint16_t>& list = m_Coarse[index];
    if (list.empty())
        Filter(BoxOf(corner, s_CellsPerCube), m_All, list);
    return list;
}

// The box of colours whose pixels may be found in a cube of cells; slightly larger than the cube, as finding
// a pixel's cell rounds.
CandidateGrid::Box CandidateGrid::BoxOf(const std::uint32_t position[3], unsigned cells) const {
    const CellGrid& grid = m_Shared.grid;
    const float side = 1.0f / grid.scale;
    Box box;
    for (int channel = 0; channel < 3; ++channel) {
        // Truncation assigns values up to one cell below the grid to the first cell too.
        const float from = position[channel] == 0 ? -1.0f : static_cast<float>(position[channel]);
        const float to = static_cast<float>(position[channel] + cells);
        box.center[channel] = grid.low + (from + to) * 0.5f * side;
        box.half[channel] = (to - from) * 0.5f * side + s_CellSlack * side;
    }
    return box;
}

// Keeps, in order, every entry that may be nearest to some colour in the box. The difference between an
// entry's squared distance and that of the entry nearest to the centre is linear over the box, so it is
// smallest at a corner.
void CandidateGrid::Filter(const Box& box, const std::vector<std::uint16_t>& from,
                           std::vector<std::uint16_t>& to) {
    const float* const channels[3] = {m_Palette.red, m_Palette.green, m_Palette.blue};
    const auto distance = [&](unsigned entry) {
        float sum = 0;
        for (int channel = 0; channel < 3; ++channel) {
            const float difference = channels[channel][entry] - box.center[channel];
            sum += difference * difference;
        }
        return sum;
    };
    unsigned nearest = from[0];
    float smallest = distance(nearest);
    for (const unsigned entry : from) {
        if (const float d = distance(entry); d < smallest) {
            smallest = d;
            nearest = entry;
        }
    }
    to.clear();
    for (const std::uint16_t entry : from) {
        float farther = distance(entry) - smallest;
        for (int channel = 0; channel < 3; ++channel)
            farther -=
                2 * std::abs(channels[channel][entry] - channels[channel][nearest]) * box.half[channel];
        if (farther <= m_Slack)
            to.push_back(entry);
    }
}

void CandidateGrid::Append(const std::vector<std::uint16_t>& list) {
    for (std::size_t i = 0; i < list.size(); i += s_BlockEntries) {
        CandidateBlock& block = m_Blocks.emplace_back();
        for (std::size_t lane = 0; lane < s_BlockEntries; ++lane) {
            const bool used = i + lane < list.size();
            const unsigned entry = used ? list[i + lane] : list[i];
            block.red[lane] = used ? m_Palette.red[entry] : s_FarAway;
            block.green[lane] = used ? m_Palette.green[entry] : s_FarAway;
            block.blue[lane] = used ? m_Palette.blue[entry] : s_FarAway;
            block.index[lane] = entry;
        }
    }
}

} // namespace ImageLib::Simd
