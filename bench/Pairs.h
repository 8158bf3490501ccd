#pragma once

#include <algorithm>
#include <chrono>
#include <ctime>
#include <vector>

// The clock that a benchmark reads.
enum class Clock {
    Wall,   // elapsed time; for work on several threads or on the GPU
    Thread, // processor time of the calling thread, which other programs on the machine hardly disturb
};

// Times our code and its baseline alternately within one process, so that a change of the machine's speed
// affects both in the same way.
class Pairs {
public:
    explicit Pairs(Clock clock = Clock::Wall) : m_Clock(clock) {}

    // Runs both sides once, in alternating order, and keeps their times. `prepare` runs untimed before each
    // side.
    template <class Ours, class Baseline, class Prepare>
    void Run(Ours ours, Baseline baseline, Prepare prepare) {
        const bool oursFirst = m_Ours.size() % 2 == 0;
        for (const bool isOurs : {oursFirst, !oursFirst}) {
            prepare();
            if (isOurs)
                m_Ours.push_back(Time(ours, m_Clock));
            else
                m_Baseline.push_back(Time(baseline, m_Clock));
        }
    }
    template <class Ours, class Baseline>
    void Run(Ours ours, Baseline baseline) {
        Run(ours, baseline, [] {});
    }

    // Keeps a pair of times, in seconds, that the caller measured.
    void Add(double ours, double baseline) {
        m_Ours.push_back(ours);
        m_Baseline.push_back(baseline);
    }

    // Medians over all pairs; 0 when there is none.
    double OursMilliseconds() const { return 1e3 * Median(m_Ours); }
    double BaselineMilliseconds() const { return 1e3 * Median(m_Baseline); }

    // The median, pair by pair, of our time divided by the baseline's: below 1 when ours is faster.
    double Ratio() const { return MedianRatio(m_Ours, m_Baseline); }
    // The inverse: above 1 when ours is faster.
    double Speedup() const { return MedianRatio(m_Baseline, m_Ours); }

    // The shortest times. On a busy machine they say more about work on several threads than the medians do.
    double FastestOursMilliseconds() const { return 1e3 * Fastest(m_Ours); }
    double FastestBaselineMilliseconds() const { return 1e3 * Fastest(m_Baseline); }

    static double Median(std::vector<double> values) {
        if (values.empty())
            return 0.0;
        const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
        std::nth_element(values.begin(), middle, values.end());
        return *middle;
    }

    // The seconds that one call of `work` takes.
    template <class Work>
    static double Time(Work work, Clock clock = Clock::Wall) {
        const double start = Now(clock);
        work();
        return Now(clock) - start;
    }

private:
    static double Now(Clock clock) {
        if (clock == Clock::Wall)
            return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
        timespec time{};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
    }

    static double MedianRatio(const std::vector<double>& numerators,
                              const std::vector<double>& denominators) {
        std::vector<double> ratios;
        for (std::size_t i = 0; i < numerators.size(); ++i)
            ratios.push_back(numerators[i] / denominators[i]);
        return Median(ratios);
    }

    static double Fastest(const std::vector<double>& times) {
        return times.empty() ? 0.0 : *std::min_element(times.begin(), times.end());
    }

    Clock m_Clock;
    std::vector<double> m_Ours;
    std::vector<double> m_Baseline;
};
