#include "imagelib/vector/CandidateGrid.h"

#include <algorithm>
#include <cmath>
#include <type_traits>

namespace ImageLib::Vector {
namespace {

constexpr unsigned kCubeBits = 2; // coarse cubes of four cells a side
constexpr unsigned kCellsPerCube = 1u << kCubeBits;

} // namespace

CandidateGrid::CandidateGrid(const PaletteTable& palette, float low, float high, unsigned bits)
    : m_Palette(palette), m_Cells(std::size_t{1} << 3 * bits),
      m_Coarse(std::size_t{1} << 3 * (bits - kCubeBits)) {
    static_assert(std::is_standard_layout_v<Shared>);
    const bool hasEmptySlot = !palette.opaque;
    for (unsigned i = 0; i + hasEmptySlot < palette.count; ++i)
        m_All.push_back(static_cast<std::uint16_t>(i));

    // A margin beyond both ends, so that the ends themselves lie within.
    const float margin = (high - low) / 256.0f;
    CellGrid& grid = m_Shared.grid;
    grid.low = low - margin;
    grid.scale = static_cast<float>(1u << bits) / (high - low + 2 * margin);
    grid.bits = bits;
    grid.emptySlot = hasEmptySlot ? static_cast<int>(palette.count) - 1 : -1;
    grid.cells = m_Cells.data();
    grid.blocks = m_Blocks.data();
    grid.fill = &CandidateGrid::Fill;
    m_Shared.owner = this;

    // A squared distance is at most four times reach^2, and its sum is off by a few of its last bits.
    const float reach = std::max(std::abs(low), std::abs(high)) + 1.0f;
    m_Slack = 4.0f * reach * reach * 4e-6f;
}

bool CandidateGrid::Serves(const PaletteTable& palette) {
    const auto isUnit = [](float value) { return value >= 0.0f && value <= 1.0f; };
    const unsigned opaque = palette.opaque ? palette.count : palette.count - 1;
    for (unsigned i = 0; i < opaque; ++i) {
        const Pixel32& colour = palette.entries[i];
        if (colour.alpha != 1.0f || !isUnit(colour.red) || !isUnit(colour.green) || !isUnit(colour.blue))
            return false;
    }
    return opaque > 0 && (palette.opaque || palette.entries[opaque] == Pixel32{});
}

std::uint32_t CandidateGrid::Fill(CellGrid& grid, std::uint32_t cell) {
    return reinterpret_cast<Shared&>(grid).owner->Fill(cell);
}

std::uint32_t CandidateGrid::Fill(std::uint32_t cell) {
    const unsigned bits = m_Shared.grid.bits;
    const std::uint32_t mask = (1u << bits) - 1;
    const std::uint32_t position[3] = {cell & mask, cell >> bits & mask, cell >> 2 * bits};
    Filter(BoxOf(position, 1), CoarseList(position), m_List);
    if (m_List.size() == 1 && m_Shared.grid.emptySlot < 0)
        return m_Cells[cell] = (m_List[0] + 1u) << 6;
    const std::size_t first = m_Blocks.size();
    Append(m_List);
    m_Shared.grid.blocks = m_Blocks.data();
    const auto code = static_cast<std::uint32_t>(first << 6 | (m_Blocks.size() - first));
    return m_Cells[cell] = code;
}

const std::vector<std::uint16_t>& CandidateGrid::CoarseList(const std::uint32_t position[3]) {
    std::uint32_t corner[3], index = 0;
    for (int channel = 2; channel >= 0; --channel) {
        const std::uint32_t cube = position[channel] / kCellsPerCube;
        corner[channel] = cube * kCellsPerCube;
        index = index << (m_Shared.grid.bits - kCubeBits) | cube;
    }
    std::vector<std::uint16_t>& list = m_Coarse[index];
    if (list.empty())
        Filter(BoxOf(corner, kCellsPerCube), m_All, list);
    return list;
}

// The colours of a cube of cells, a little larger than it is, as finding a pixel's cell rounds as well.
CandidateGrid::Box CandidateGrid::BoxOf(const std::uint32_t position[3], unsigned cells) const {
    const CellGrid& grid = m_Shared.grid;
    const float side = 1.0f / grid.scale;
    Box box;
    for (int channel = 0; channel < 3; ++channel) {
        // Truncation sends what lies up to a cell below the grid to the first cell too.
        const float from = position[channel] == 0 ? -1.0f : static_cast<float>(position[channel]);
        const float to = static_cast<float>(position[channel] + cells);
        box.center[channel] = grid.low + (from + to) * 0.5f * side;
        box.half[channel] = (to - from) * 0.5f * side + 1e-3f * side;
    }
    return box;
}

// Keeps, in order, every entry that may be nearest somewhere in the box. How much farther away an entry is
// than the one nearest to the centre changes linearly over the box, so its least value is at a corner.
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
    for (std::size_t i = 0; i < list.size(); i += 8) {
        CandidateBlock& block = m_Blocks.emplace_back();
        for (std::size_t lane = 0; lane < 8; ++lane) {
            const bool used = i + lane < list.size();
            const unsigned entry = used ? list[i + lane] : list[i];
            block.red[lane] = used ? m_Palette.red[entry] : 1e30f;
            block.green[lane] = used ? m_Palette.green[entry] : 1e30f;
            block.blue[lane] = used ? m_Palette.blue[entry] : 1e30f;
            block.index[lane] = entry;
        }
    }
}

} // namespace ImageLib::Vector
