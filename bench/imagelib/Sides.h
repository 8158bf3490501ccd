#pragma once

#include <algorithm>
#include <chrono>
#include <ctime>
#include <vector>

// Two pieces of work timed in turn within one process, so that a machine whose speed drifts drifts for both.
enum class Clock {
    Thread, // processor time of this thread: what others do on the machine counts little
    Wall,   // for work on several threads
};

inline double Now(Clock clock) {
    if (clock == Clock::Wall)
        return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

inline double Median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

struct Sides {
    double first; // seconds, medians
    double second;
    double ratio; // first / second, median of the pairs
    double fastestFirst;
    double fastestSecond;

    // Calls each side's `prepare` untimed before its timed call.
    template <class FirstWork, class SecondWork, class Prepare>
    static Sides Time(int rounds, Clock clock, Prepare prepare, FirstWork first, SecondWork second) {
        std::vector<double> firsts, seconds, ratios;
        const auto run = [&](auto& work) {
            prepare();
            const double start = Now(clock);
            work();
            return Now(clock) - start;
        };
        run(second); // warm
        for (int i = 0; i < rounds; ++i) {
            firsts.push_back(run(first));
            seconds.push_back(run(second));
            ratios.push_back(firsts.back() / seconds.back());
        }
        return {Median(firsts), Median(seconds), Median(ratios),
                *std::min_element(firsts.begin(), firsts.end()),
                *std::min_element(seconds.begin(), seconds.end())};
    }
};
