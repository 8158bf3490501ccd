#pragma once

#include "imagelib/vector/MapKernels.h"

// Error diffusion of wide pictures with short palettes: a band of as many rows as a vector has lanes, each
// lane one row, `bandLag` pixels behind the lane above it. At step s lane j is at x = s - j * bandLag, so the
// errors of all lanes at one step make up a slot of the history, and a tap reads an earlier slot, shifted by
// as many lanes as its source lies rows above. The lanes before lane 0 are the last rows of the band above.
namespace ImageLib::Vector {
namespace {

inline constexpr int SlotLanes = 2 * HistoryMargin; // lanes of one channel in a slot: margin, then the band

struct BandTap {
    std::ptrdiff_t back; // steps
    unsigned row;
    float weight;
};

template <class V, bool Opaque>
class BandDiffuser {
    using Float = typename V::Float;
    static constexpr unsigned Rows = V::Lanes;

public:
    explicit BandDiffuser(const DiffusionJob& job)
        : m_Job(job), m_Palette(*job.palette), m_Width(job.width), m_Lag(job.bandLag),
          m_LaneStep(static_cast<std::ptrdiff_t>(job.stride) - m_Lag * static_cast<int>(sizeof(Pixel32))) {
        for (unsigned i = 0; i < job.tapCount; ++i) {
            const DiffusionTap& tap = job.taps[i];
            m_Taps[i] = {m_Lag * tap.row - tap.dx, tap.row, tap.weight};
        }
        const BandTap& last = m_Taps[job.tapCount - 1];
        m_NeighbourLast = last.row == 0 && last.back == 1;
        m_Others = job.tapCount - m_NeighbourLast;
    }

    void Run() {
        for (std::uint32_t y = 0; y < m_Job.height; y += Rows)
            RunBand(y);
    }

private:
    void RunBand(std::uint32_t y) {
        m_Pixels = m_Job.pixels + y * m_Job.stride;
        const std::uint32_t left = m_Job.height - y;
        m_Rows = left < Rows ? static_cast<int>(left) : static_cast<int>(Rows);
        m_Last = {V::Splat(0), V::Splat(0), V::Splat(0), V::Splat(0)};
        __builtin_memset(m_Job.history, 0, m_Job.historySlots * 4 * SlotLanes * sizeof(float));
        std::ptrdiff_t step = -m_Lag * static_cast<std::ptrdiff_t>(m_Job.rowsAbove);
        for (; step < 0; ++step)
            FillMargin(step);
        const std::ptrdiff_t full = m_Lag * static_cast<std::ptrdiff_t>(Rows - 1);
        const std::ptrdiff_t end = m_Width + m_Lag * (m_Rows - 1);
        for (; step < (m_Rows == Rows ? full : end); ++step)
            Step<true>(step);
        for (; step < m_Width; ++step)
            Step<false>(step);
        for (; step < end; ++step)
            Step<true>(step);
    }

    float* Slot(std::ptrdiff_t step) const {
        return m_Job.history + (static_cast<std::size_t>(step) & (m_Job.historySlots - 1)) * 4 * SlotLanes +
               HistoryMargin;
    }

    bool IsInside(std::ptrdiff_t x) const { return x >= 0 && x < m_Width; }

    // The lanes before lane 0, from the rows that the band above left.
    void FillMargin(std::ptrdiff_t step) {
        float* const slot = Slot(step);
        for (unsigned row = 1; row <= m_Job.rowsAbove; ++row) {
            const std::ptrdiff_t x = step + m_Lag * static_cast<std::ptrdiff_t>(row);
            const Pixel32 error = IsInside(x) ? Previous(row)[x] : Pixel32{};
            float* const lane = slot - row;
            lane[0] = error.alpha;
            lane[SlotLanes] = error.red;
            lane[2 * SlotLanes] = error.green;
            lane[3 * SlotLanes] = error.blue;
        }
    }

    // The band's last rows, for the margin of the next. Reading is far ahead of writing.
    template <bool Edge>
    void SavePrevious(std::ptrdiff_t step) {
        for (unsigned row = 1; row <= m_Job.rowsAbove; ++row) {
            const unsigned lane = Rows - row;
            const std::ptrdiff_t x = step - m_Lag * static_cast<std::ptrdiff_t>(lane);
            const float* const error = Slot(step) + lane;
            if (!Edge || IsInside(x))
                Previous(row)[x] = {error[0], error[SlotLanes], error[2 * SlotLanes], error[3 * SlotLanes]};
        }
    }

    // The errors of the row that many rows above the band.
    Pixel32* Previous(unsigned row) const { return m_Job.errors + (row - 1) * m_Job.errorStride; }

    Pixel32* PixelOf(std::ptrdiff_t step, int lane) const {
        return reinterpret_cast<Pixel32*>(m_Pixels + step * static_cast<int>(sizeof(Pixel32)) +
                                          lane * m_LaneStep);
    }

    bool IsActive(std::ptrdiff_t step, int lane) const {
        return lane < m_Rows && IsInside(step - m_Lag * lane);
    }

    template <bool Edge>
    Channels<V> LoadRows(std::ptrdiff_t step) const {
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

    // Two chains of comparisons, which take half the time of one; the later half wins where strictly nearer.
    typename V::Int Search(const Channels<V>& sum) const {
        Float best = V::Splat(StartDistance), upperBest = best;
        typename V::Int index = V::ZeroInt(), upperIndex = index;
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

    template <bool Edge>
    void Step(std::ptrdiff_t step) {
        FillMargin(step);
        Channels<V> sum = LoadRows<Edge>(step);
        for (unsigned i = 0; i < m_Others; ++i)
            AddErrors(sum, m_Taps[i].weight, LoadErrors(Slot(step - m_Taps[i].back) - m_Taps[i].row));
        if (m_NeighbourLast)
            AddErrors(sum, m_Taps[m_Others].weight, m_Last);

        const typename V::Int index = Search(sum);
        Channels<V> chosen;
        V::LookUp(m_Palette, index, chosen.alpha, chosen.red, chosen.green, chosen.blue);
        m_Last = {sum.alpha - chosen.alpha, sum.red - chosen.red, sum.green - chosen.green,
                  sum.blue - chosen.blue};
        float* const slot = Slot(step);
        V::Store(slot, m_Last.alpha);
        V::Store(slot + SlotLanes, m_Last.red);
        V::Store(slot + 2 * SlotLanes, m_Last.green);
        V::Store(slot + 3 * SlotLanes, m_Last.blue);

        alignas(64) std::uint32_t lanes[Rows];
        V::StoreInt(lanes, index);
        for (int lane = 0; lane < static_cast<int>(Rows); ++lane) {
            if (!Edge || IsActive(step, lane))
                V::StorePixel(PixelOf(step, lane), V::LoadPixel(m_Palette.entries + lanes[lane]));
            else
                slot[lane] = slot[lane + SlotLanes] = slot[lane + 2 * SlotLanes] =
                    slot[lane + 3 * SlotLanes] = 0;
        }
        if (Edge)
            m_Last = LoadErrors(slot);
        SavePrevious<Edge>(step);
    }

    const DiffusionJob& m_Job;
    const PaletteTable& m_Palette;
    const std::ptrdiff_t m_Width;
    const std::ptrdiff_t m_Lag;
    const std::ptrdiff_t m_LaneStep; // bytes from a lane's pixel to the next lane's
    BandTap m_Taps[MaxTaps];
    unsigned m_Others;    // taps that come by way of the history
    bool m_NeighbourLast; // the last tap is the pixel just done
    unsigned char* m_Pixels = nullptr;
    int m_Rows = 0;
    Channels<V> m_Last{};
};

// Wide enough that most steps have all lanes at work.
template <class V>
bool IsFitForBands(const DiffusionJob& job) {
    return !job.serpentine && job.history && job.rowsAbove <= V::Lanes &&
           job.width >= 3u * V::Lanes * static_cast<unsigned>(job.bandLag);
}

template <class V>
void DiffuseBands(const DiffusionJob& job) {
    if (job.palette->opaque)
        BandDiffuser<V, true>(job).Run();
    else
        BandDiffuser<V, false>(job).Run();
}

} // namespace
} // namespace ImageLib::Vector
