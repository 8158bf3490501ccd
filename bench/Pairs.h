#pragma once

#include <algorithm>
#include <chrono>
#include <vector>

// Two sides timed in turn within one process, so that a machine whose speed drifts drifts for both.
class Pairs {
public:
    // Runs both once, in alternating order, and keeps the times in seconds.
    template <class Ours, class Baseline>
    void Run(Ours ours, Baseline baseline) {
        if (m_Ours.size() % 2 == 0) {
            m_Ours.push_back(Time(ours));
            m_Baseline.push_back(Time(baseline));
        } else {
            m_Baseline.push_back(Time(baseline));
            m_Ours.push_back(Time(ours));
        }
    }

    double OursMilliseconds() const { return 1e3 * Median(m_Ours); }
    double BaselineMilliseconds() const { return 1e3 * Median(m_Baseline); }
    // The median of the ratios pair by pair, ours to the baseline.
    double Ratio() const {
        std::vector<double> ratios;
        for (std::size_t i = 0; i < m_Ours.size(); ++i)
            ratios.push_back(m_Ours[i] / m_Baseline[i]);
        return Median(ratios);
    }

    static double Median(std::vector<double> values) {
        if (values.empty())
            return 0.0;
        const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
        std::nth_element(values.begin(), middle, values.end());
        return *middle;
    }

    template <class Work>
    static double Time(Work work) {
        const auto start = std::chrono::steady_clock::now();
        work();
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    }

private:
    std::vector<double> m_Ours;
    std::vector<double> m_Baseline;
};
