#include "imagelib/Dither.h"

#include "imagelib/MapSurface.h"
#include "imagelib/simd/CandidateGrid.h"

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <memory>
#include <optional>
#include <vector>

namespace ImageLib {
namespace {

// Error diffusion moves values a little beyond 0..1. The few pixels outside this range are compared with all
// entries.
constexpr float s_GridLow = -0.5f, s_GridHigh = 1.5f;
constexpr unsigned s_GridBits = 6; // cells along one side of the grid: 2^6

// Additional pixels by which a row follows the row above in a wavefront. With this distance, every value that
// a tap reads has already left the processor's store queue.
constexpr int s_StoreQueuePixels = 3;
constexpr std::size_t s_RingAlignment = 64; // bytes: one cache line, and the widest vector

using Taps = std::vector<Simd::DiffusionTap>;

// Column of the kernel's entry for the current pixel: the first positive one in row 0. The width if there is
// none.
int OriginOf(const Surface<Pixel32>& kernel) {
    const int width = static_cast<int>(kernel.Width());
    int origin = 0;
    while (origin < width && !(kernel.Row(0)[origin].alpha > 0.0f))
        ++origin;
    return origin;
}

// The kernel's weights in the order in which a pixel receives them: the topmost source row first, and within
// a row the source scanned first, which is the one with the rightmost weight. Empty for a kernel that changes
// nothing.
Taps TapsOf(const Surface<Pixel32>& kernel) {
    Taps taps;
    const int width = static_cast<int>(kernel.Width()), origin = OriginOf(kernel);
    if (origin == width)
        return taps;
    for (unsigned row = kernel.Height(); row-- > 0;) {
        const int first = row == 0 ? origin + 1 : 0;
        for (int column = width - 1; column >= first; --column)
            if (const float weight = kernel.Row(row)[column].alpha; weight > 0.0f)
                taps.push_back({weight, origin - column, row});
    }
    return taps;
}

// Owns the memory of one error diffusion and describes it as a job for the inner loops.
class Diffusion {
public:
    Diffusion(Surface<Pixel32>& surface, const Taps& taps, const ColourSet& colours, bool serpentine)
        : m_Palette(MakeTable(colours)) {
        m_Job.palette = m_Palette.get();
        m_Job.threshold = colours.threshold;
        m_Job.serpentine = serpentine;
        ChooseSearch(colours.byThreshold);
        DescribeSurface(surface);
        DescribeTaps(taps);
        AllocateErrors();
        if (m_Job.search == Simd::Search::BruteForce && !serpentine)
            AllocateRing();
    }

    void Run() const { (IsFitForSimd() ? Simd::CurrentKernels() : Simd::ScalarKernels).diffuse(m_Job); }

private:
    void ChooseSearch(bool byThreshold) {
        m_Job.search = byThreshold ? Simd::Search::Threshold : Simd::Search::BruteForce;
        if (byThreshold || m_Palette->count <= Simd::s_MaxBruteForce ||
            !Simd::CandidateGrid::Accepts(*m_Palette))
            return;
        m_Grid.emplace(*m_Palette, s_GridLow, s_GridHigh, s_GridBits);
        m_Job.search = Simd::Search::Grid;
        m_Job.grid = &m_Grid->Grid();
    }

    void DescribeSurface(Surface<Pixel32>& surface) {
        m_Job.pixels = reinterpret_cast<unsigned char*>(surface.Row(0));
        m_Job.stride = surface.Stride();
        m_Job.width = surface.Width();
        m_Job.height = surface.Height();
    }

    void DescribeTaps(const Taps& taps) {
        m_Job.taps = taps.data();
        m_Job.tapCount = static_cast<unsigned>(taps.size());
        int right = 0; // the farthest source in a row above that is scanned after the target's column
        for (const Simd::DiffusionTap& tap : taps) {
            m_Job.rowsAbove = std::max(m_Job.rowsAbove, tap.row);
            m_Side = std::max(m_Side, static_cast<unsigned>(std::abs(tap.dx)));
            m_Job.firstOwnTap += tap.row > 0;
            if (tap.row > 0)
                right = std::max(right, tap.dx);
        }
        m_Job.lag = right + 1;
    }

    void AllocateErrors() {
        m_Job.errorStride = std::size_t{m_Job.width} + 2 * m_Side;
        m_Errors.resize(m_Job.errorStride * (m_Job.rowsAbove + Simd::s_ErrorRows));
        m_Job.errors = m_Errors.data() + m_Side;
    }

    void AllocateRing() {
        Simd::WavefrontRing& ring = m_Job.ring;
        ring.lag = m_Job.lag + s_StoreQueuePixels;
        ring.count = std::bit_ceil(std::size_t{1} + ring.lag * m_Job.rowsAbove + m_Side);
        m_Ring.resize(ring.count * Simd::WavefrontRing::SlotFloats + s_RingAlignment / sizeof(float));
        void* slots = m_Ring.data();
        std::size_t bytes = m_Ring.size() * sizeof(float);
        ring.slots = static_cast<float*>(std::align(s_RingAlignment, s_RingAlignment, slots, bytes));
    }

    bool IsFitForSimd() const {
        const bool isTooLong =
            m_Job.search == Simd::Search::BruteForce && m_Palette->count > Simd::s_MaxBruteForce;
        return !isTooLong && m_Job.tapCount <= Simd::s_MaxTaps;
    }

    std::unique_ptr<Simd::PaletteTable> m_Palette;
    std::optional<Simd::CandidateGrid> m_Grid;
    std::vector<Pixel32> m_Errors;
    std::vector<float> m_Ring;
    unsigned m_Side = 0; // pixels to the farthest source to the left or right
    Simd::DiffusionJob m_Job{};
};

} // namespace

void Dither::ErrorDiffusion(Surface<Pixel32>& surface, const Surface<Pixel32>& kernel,
                            const ColourSet& colours, bool serpentine) {
    if (const Taps taps = TapsOf(kernel); !taps.empty() && !surface.IsEmpty())
        Diffusion(surface, taps, colours, serpentine).Run();
}

void Dither::Ordered(Surface<Pixel32>& surface, const Surface<Pixel32>& kernel, const ColourSet& colours,
                     float strength) {
    if (surface.IsEmpty() || kernel.IsEmpty())
        return;
    Offsets offsets;
    offsets.rowMask = kernel.Height() - 1;
    for (unsigned y = 0; y < kernel.Height(); ++y) {
        std::vector<float>& row = offsets.rows.emplace_back(surface.Width());
        for (std::uint32_t x = 0; x < surface.Width(); ++x)
            row[x] = strength * kernel.Row(y)[x & (kernel.Width() - 1)].alpha;
    }
    MapSurface(surface, colours, &offsets);
}

} // namespace ImageLib
