#pragma once

#include <chrono>
#include <cstddef>
#include <cstdio>
#include <string>

namespace fxhost {

// Tells how far a clip is, on standard error: on a terminal a bar that moves, else a line now and then.
// Used by one thread at a time.
class Progress {
public:
    enum class Style { None, Lines, Bar };
    // Bar on a terminal, else lines.
    static Style StyleFor(std::FILE* file);

    // total: frames to do, 0 when unknown.
    Progress(std::FILE* file, Style style, std::size_t total);
    // Leaves the bar's line.
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void advance();
    std::size_t done() const { return m_Done; }
    // Seconds since the beginning.
    double seconds() const;

private:
    using Clock = std::chrono::steady_clock;
    void show();

    std::FILE* m_File;
    const Style m_Style;
    const std::size_t m_Total;
    std::size_t m_Done = 0;
    bool m_BarShown = false;
    const Clock::time_point m_Begin = Clock::now();
    Clock::time_point m_Shown = m_Begin;
};

// "120 of 240 frames, 24.1 frames/s, 0:05 left"; without the end when it is not known.
std::string ProgressText(std::size_t done, std::size_t total, double seconds);

} // namespace fxhost
