#pragma once

#include "imagelib/simd/MapKernels.h"

// Error diffusion as a wavefront, for wide pictures with short palettes: as many rows at a time as a vector
// has lanes. Lane j processes row j and follows the lane above it by `lag` pixels, so that at step s it is at
// x = s - j * lag. All errors of one step form a slot of a ring buffer, and a tap reads an earlier slot,
// shifted by as many lanes as its source is rows above. The lanes before lane 0 hold the last rows of the
// previous group. README.md has a drawing.
namespace ImageLib::Simd {
namespace {

template <class V, bool Opaque>
class Wavefront {
    using Float = typename V::Float;
    using Int = typename V::Int;
    static constexpr unsigned Rows = V::Lanes;
    static constexpr int SlotLanes = WavefrontRing::SlotLanes;

public:
    explicit Wavefront(const DiffusionJob& job)
        : m_Job(job), m_Palette(*job.palette), m_Width(job.width), m_Lag(job.ring.lag),
          m_LaneStep(static_cast<std::ptrdiff_t>(job.stride) - m_Lag * static_cast<int>(sizeof(Pixel32))) {
        for (unsigned i = 0; i < job.tapCount; ++i) {
            const DiffusionTap& tap = job.taps[i];
            m_Taps[i] = {m_Lag * tap.row - tap.dx, tap.row, tap.weight};
        }
        const Tap& last = m_Taps[job.tapCount - 1];
        m_NeighbourIsLast = last.row == 0 && last.stepsBack == 1;
        m_RingTaps = job.tapCount - m_NeighbourIsLast;
    }

    void Run() {
        for (std::uint32_t y = 0; y < m_Job.height; y += Rows)
            RunGroup(y);
    }

private:
    struct Tap {
        std::ptrdiff_t stepsBack;
        unsigned row;
        float weight;
    };

    // Processes the rows from y on. While lanes enter and leave the picture at the sides, each lane is
    // checked.
    void RunGroup(std::uint32_t y) {
        m_Pixels = m_Job.pixels + y * m_Job.stride;
        const std::uint32_t left = m_Job.height - y;
        m_RowCount = left < Rows ? static_cast<int>(left) : static_cast<int>(Rows);
        m_Neighbour = {V::Splat(0), V::Splat(0), V::Splat(0), V::Splat(0)};
        __builtin_memset(m_Job.ring.slots, 0, m_Job.ring.count * WavefrontRing::SlotFloats * sizeof(float));
        std::ptrdiff_t step = -m_Lag * static_cast<std::ptrdiff_t>(m_Job.rowsAbove);
        for (; step < 0; ++step)
            LoadRowsAbove(step);
        const std::ptrdiff_t allInside = m_Lag * static_cast<std::ptrdiff_t>(Rows - 1);
        const std::ptrdiff_t end = m_Width + m_Lag * (m_RowCount - 1);
        for (; step < (m_RowCount == Rows ? allInside : end); ++step)
            Step<true>(step);
        for (; step < m_Width; ++step)
            Step<false>(step);
        for (; step < end; ++step)
            Step<true>(step);
    }

    // The first channel of lane 0 in the slot of a step.
    float* Slot(std::ptrdiff_t step) const {
        const std::size_t slot = static_cast<std::size_t>(step) & (m_Job.ring.count - 1);
        return m_Job.ring.slots + slot * WavefrontRing::SlotFloats + WavefrontRing::LanesAbove;
    }

    bool IsInside(std::ptrdiff_t x) const { return x >= 0 && x < m_Width; }

    bool IsActive(std::ptrdiff_t step, int lane) const {
        return lane < m_RowCount && IsInside(step - m_Lag * lane);
    }

    // The errors of the row that is `row` rows above the current group.
    Pixel32* RowAbove(unsigned row) const { return m_Job.errors + (row - 1) * m_Job.errorStride; }

    // Fills the lanes before lane 0.
    void LoadRowsAbove(std::ptrdiff_t step) {
        float* const slot = Slot(step);
        for (unsigned row = 1; row <= m_Job.rowsAbove; ++row) {
            const std::ptrdiff_t x = step + m_Lag * static_cast<std::ptrdiff_t>(row);
            const Pixel32 error = IsInside(x) ? RowAbove(row)[x] : Pixel32{};
            float* const lane = slot - row;
            lane[0] = error.alpha;
            lane[SlotLanes] = error.red;
            lane[2 * SlotLanes] = error.green;
            lane[3 * SlotLanes] = error.blue;
        }
    }

    // Keeps the errors of the group's last rows for the next group. The position written is far behind the
    // position that LoadRowsAbove reads.
    template <bool Edge>
    void SaveLastRows(std::ptrdiff_t step) {
        for (unsigned row = 1; row <= m_Job.rowsAbove; ++row) {
            const unsigned lane = Rows - row;
            const std::ptrdiff_t x = step - m_Lag * static_cast<std::ptrdiff_t>(lane);
            const float* const error = Slot(step) + lane;
            if (!Edge || IsInside(x))
                RowAbove(row)[x] = {error[0], error[SlotLanes], error[2 * SlotLanes], error[3 * SlotLanes]};
        }
    }

    Pixel32* PixelOf(std::ptrdiff_t step, int lane) const {
        return reinterpret_cast<Pixel32*>(m_Pixels + step * static_cast<int>(sizeof(Pixel32)) +
                                          lane * m_LaneStep);
    }

    template <bool Edge>
    Channels<V> LoadPixels(std::ptrdiff_t step) const {
        Channels<V> pixels;
        if constexpr (Edge) {
            Pixel32 active[Rows] = {};
            for (int lane = 0; lane < static_cast<int>(Rows); ++lane)
                if (IsActive(step, lane))
                    active[lane] = *PixelOf(step, lane);
            V::LoadChannels(active, sizeof(Pixel32), pixels.alpha, pixels.red, pixels.green, pixels.blue);
        } else {
            V::LoadChannels(PixelOf(step, 0), m_LaneStep, pixels.alpha, pixels.red, pixels.green,
                            pixels.blue);
        }
        return pixels;
    }

    static void AddErrors(Channels<V>& sum, float weight, const Channels<V>& errors) {
        const Float w = V::Splat(weight);
        sum.alpha = sum.alpha + w * errors.alpha;
        sum.red = sum.red + w * errors.red;
        sum.green = sum.green + w * errors.green;
        sum.blue = sum.blue + w * errors.blue;
    }

    static Channels<V> LoadErrors(const float* lane) {
        return {V::Load(lane), V::Load(lane + SlotLanes), V::Load(lane + 2 * SlotLanes),
                V::Load(lane + 3 * SlotLanes)};
    }

    static void StoreErrors(float* lane, const Channels<V>& errors) {
        V::Store(lane, errors.alpha);
        V::Store(lane + SlotLanes, errors.red);
        V::Store(lane + 2 * SlotLanes, errors.green);
        V::Store(lane + 3 * SlotLanes, errors.blue);
    }

    // Searches both halves of the palette at the same time, which takes half as long as one sequence of
    // dependent comparisons. The upper half wins only where it is strictly nearer.
    Int FindNearest(const Channels<V>& sum) const {
        Float best = V::Splat(s_StartDistance), upperBest = best;
        Int index = V::ZeroInt(), upperIndex = index;
        const Float alpha = SquaredTo<V>(sum.alpha, 1.0f);
        const unsigned half = m_Palette.count / 2;
        for (unsigned i = 0; i < half; ++i) {
            V::KeepCloser(DistanceTo<V, Opaque>(sum, alpha, m_Palette, i), static_cast<int>(i), best, index);
            V::KeepCloser(DistanceTo<V, Opaque>(sum, alpha, m_Palette, half + i), static_cast<int>(half + i),
                          upperBest, upperIndex);
        }
        if (const unsigned last = 2 * half; last < m_Palette.count)
            V::KeepCloser(DistanceTo<V, Opaque>(sum, alpha, m_Palette, last), static_cast<int>(last),
                          upperBest, upperIndex);
        V::KeepCloser(upperBest, upperIndex, best, index);
        return index;
    }

    Channels<V> GatherErrors(std::ptrdiff_t step, Channels<V> sum) const {
        for (unsigned i = 0; i < m_RingTaps; ++i)
            AddErrors(sum, m_Taps[i].weight, LoadErrors(Slot(step - m_Taps[i].stepsBack) - m_Taps[i].row));
        if (m_NeighbourIsLast)
            AddErrors(sum, m_Taps[m_RingTaps].weight, m_Neighbour);
        return sum;
    }

    // Writes the chosen entries to the picture, and sets the errors of lanes outside it to zero.
    template <bool Edge>
    void StorePixels(std::ptrdiff_t step, Int index) {
        alignas(64) std::uint32_t entries[Rows];
        V::StoreInt(entries, index);
        float* const slot = Slot(step);
        for (int lane = 0; lane < static_cast<int>(Rows); ++lane) {
            if (!Edge || IsActive(step, lane))
                V::StorePixel(PixelOf(step, lane), V::LoadPixel(m_Palette.entries + entries[lane]));
            else
                slot[lane] = slot[lane + SlotLanes] = slot[lane + 2 * SlotLanes] =
                    slot[lane + 3 * SlotLanes] = 0;
        }
    }

    template <bool Edge>
    void Step(std::ptrdiff_t step) {
        LoadRowsAbove(step);
        const Channels<V> sum = GatherErrors(step, LoadPixels<Edge>(step));
        const Int index = FindNearest(sum);
        Channels<V> chosen;
        V::LookUp(m_Palette, index, chosen.alpha, chosen.red, chosen.green, chosen.blue);
        m_Neighbour = {sum.alpha - chosen.alpha, sum.red - chosen.red, sum.green - chosen.green,
                       sum.blue - chosen.blue};
        StoreErrors(Slot(step), m_Neighbour);
        StorePixels<Edge>(step, index);
        if constexpr (Edge)
            m_Neighbour = LoadErrors(Slot(step));
        SaveLastRows<Edge>(step);
    }

    const DiffusionJob& m_Job;
    const PaletteTable& m_Palette;
    const std::ptrdiff_t m_Width;
    const std::ptrdiff_t m_Lag;
    const std::ptrdiff_t m_LaneStep; // bytes from a lane's pixel to the next lane's
    Tap m_Taps[s_MaxTaps];
    unsigned m_RingTaps;    // taps that are read from the ring buffer
    bool m_NeighbourIsLast; // the last tap is the pixel just processed, whose error stays in registers
    unsigned char* m_Pixels = nullptr;
    int m_RowCount = 0;
    Channels<V> m_Neighbour{}; // errors of the pixels just processed
};

// True when the picture is so wide that all lanes work during most steps.
template <class V>
bool IsFitForWavefront(const DiffusionJob& job) {
    return job.search == Search::BruteForce && !job.serpentine && job.ring.slots &&
           job.rowsAbove <= V::Lanes && job.width >= 3u * V::Lanes * static_cast<unsigned>(job.ring.lag);
}

template <class V>
void DiffuseAsWavefront(const DiffusionJob& job) {
    if (job.palette->opaque)
        Wavefront<V, true>(job).Run();
    else
        Wavefront<V, false>(job).Run();
}

} // namespace
} // namespace ImageLib::Simd
