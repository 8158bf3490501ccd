#pragma once

#include <chrono>
#include <cstddef>
#include <cstdio>
#include <string>

namespace fxhost {

// Shows the progress of a clip: as a bar on a terminal, otherwise as a line every few seconds. One thread at
// a time.
class Progress {
public:
    enum class Style { None, Lines, Bar };
    // Bar for a terminal, otherwise Lines.
    static Style StyleFor(std::FILE* file);

    // total: number of frames, or 0 when it is unknown. `file` must outlive this object.
    Progress(std::FILE* file, Style style, std::size_t total);
    // Ends the line of the bar.
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    // Counts the frame with this number, and shows it when enough time has passed. written: false for a
    // failed frame.
    void advance(long number, bool written = true);
    // Frames that are written.
    std::size_t written() const { return m_Written; }
    // Seconds since the construction.
    double seconds() const;

private:
    using Clock = std::chrono::steady_clock;
    void show(long number);

    std::FILE* m_File;
    const Style m_Style;
    const std::size_t m_Total;
    std::size_t m_Done = 0, m_Written = 0;
    bool m_BarShown = false;
    const Clock::time_point m_Begin = Clock::now();
    Clock::time_point m_Shown = m_Begin;
};

// "120 of 240 frames, 24.1 frames/s, 0:05 left". With total 0 neither the total nor the time left is shown.
std::string ProgressText(std::size_t done, std::size_t total, double seconds);

} // namespace fxhost
