#pragma once

#include <stdexcept>
#include <string>

namespace fxhost {

// Exit status of the tool's process. ExitStatusTable() describes each one for the user.
enum ExitStatus : int {
    ExitOk = 0,
    ExitEffectFailed = 1,
    ExitWrongUse = 2,
    ExitHostRules = 3,
    ExitRanAway = 4,
    ExitHungUp = 129,
    ExitStopped = 130,
    ExitTerminated = 143,
};

struct ExitStatusDescription {
    ExitStatus status;
    const char* meaning; // continues the sentence "Exit status N: ..."
};
inline constexpr ExitStatusDescription ExitStatusTable[] = {
    {ExitOk, "success"},
    {ExitEffectFailed,
     "the effect failed: script or shader error, missing file, no OpenGL, output not written"},
    {ExitWrongUse, "wrong use: invalid options or unreadable input files"},
    {ExitHostRules, "the plug-in broke a rule of the host's protocol"},
    {ExitRanAway, "the effect exceeded its time or memory limit, or crashed"},
    {ExitHungUp, "stopped by SIGHUP: the terminal was closed"},
    {ExitStopped, "interrupted by the user"},
    {ExitTerminated, "stopped by SIGTERM"},
};

// True when a signal that asks the tool to stop ended the work. The status is 128 plus its number.
constexpr bool IsStopStatus(int status) {
    return status == ExitHungUp || status == ExitStopped || status == ExitTerminated;
}

// A mistake in the command line or in an input file. The text names the option and what was expected. The
// process ends with ExitWrongUse.
class WrongUse : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// A failure of the effect or of its environment. The process ends with ExitEffectFailed.
class EffectFailure : public std::runtime_error {
public:
    explicit EffectFailure(const std::string& text) : std::runtime_error(text), m_Text(text) {}
    EffectFailure(const std::string& file, const std::string& text)
        : std::runtime_error(file + ": error: " + text), m_File(file), m_Text(text) {}
    EffectFailure(const std::string& file, int line, const std::string& text)
        : std::runtime_error(file + ":" + std::to_string(line) + ": error: " + text), m_File(file),
          m_Text(text), m_Line(line) {}

    const std::string& file() const { return m_File; } // the file that caused it; may be empty
    const std::string& text() const { return m_Text; }
    int line() const { return m_Line; } // from 1; 0 when unknown

private:
    std::string m_File, m_Text;
    int m_Line = 0;
};

} // namespace fxhost
