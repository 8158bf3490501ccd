#include "clips/Progress.h"

#include <cmath>
#include <unistd.h>

namespace fxhost {

namespace {

constexpr std::size_t s_BarWidth = 30;
constexpr double s_BarPeriod = 0.2, s_LinePeriod = 5; // seconds

std::string Countdown(double seconds) {
    const long all = std::lround(std::ceil(seconds));
    char text[32];
    if (all >= 3600)
        std::snprintf(text, sizeof text, "%ld:%02ld:%02ld", all / 3600, all / 60 % 60, all % 60);
    else
        std::snprintf(text, sizeof text, "%ld:%02ld", all / 60, all % 60);
    return text;
}

} // namespace

std::string ProgressText(std::size_t done, std::size_t total, double seconds) {
    std::string text = std::to_string(done) + (total ? " of " + std::to_string(total) : "") + " frames";
    if (done == 0 || seconds <= 0)
        return text;
    const double rate = static_cast<double>(done) / seconds;
    char number[32];
    std::snprintf(number, sizeof number, rate < 10 ? "%.2f" : "%.1f", rate);
    text += std::string(", ") + number + " frames/s";
    if (done < total)
        text += ", " + Countdown(static_cast<double>(total - done) / rate) + " left";
    return text;
}

Progress::Style Progress::StyleFor(std::FILE* file) {
    return isatty(fileno(file)) ? Style::Bar : Style::Lines;
}

Progress::Progress(std::FILE* file, Style style, std::size_t total)
    : m_File(file), m_Style(style), m_Total(total) {}

Progress::~Progress() {
    if (m_BarShown)
        std::fputc('\n', m_File);
}

double Progress::seconds() const {
    return std::chrono::duration<double>(Clock::now() - m_Begin).count();
}

void Progress::advance(long number, bool written) {
    ++m_Done;
    m_Written += written ? 1 : 0;
    const auto now = Clock::now();
    const double period = m_Style == Style::Bar ? s_BarPeriod : s_LinePeriod;
    const bool isLast = m_Done == m_Total;
    if (m_Style == Style::None || (!isLast && std::chrono::duration<double>(now - m_Shown).count() < period))
        return;
    m_Shown = now;
    show(number);
}

void Progress::show(long number) {
    const std::string text = ProgressText(m_Done, m_Total, seconds());
    if (m_Style == Style::Lines) {
        std::fprintf(m_File, "frame %ld: %s\n", number, text.c_str());
        return;
    }
    std::string bar;
    if (m_Total) {
        const std::size_t filled = m_Done * s_BarWidth / m_Total;
        bar = "[" + std::string(filled, '#') + std::string(s_BarWidth - filled, '.') + "] ";
    }
    std::fprintf(m_File, "\r%s%s\033[K", bar.c_str(), text.c_str());
    std::fflush(m_File);
    m_BarShown = true;
}

} // namespace fxhost
