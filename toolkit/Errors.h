#pragma once

#include <stdexcept>
#include <string>

namespace fxhost {

// What the tool's process ends with.
enum ExitStatus : int {
    ExitOk = 0,
    ExitEffectFailed = 1, // script or shader error, file that the effect lacks, no GL, picture not written
    ExitWrongUse = 2,     // options or input files that make no sense
    ExitHostRules = 3,    // the plug-in broke the rules of its host
    ExitRanAway = 4,      // out of time or memory, or crashed, in a guarded process
    ExitStopped = 130,    // the user stopped it
};

// Thrown for what the user got wrong; the text names the option and what was expected. Ends in ExitWrongUse.
class WrongUse : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Thrown when the effect or its surroundings fail. Ends in ExitEffectFailed.
class EffectFailure : public std::runtime_error {
public:
    explicit EffectFailure(const std::string& text) : std::runtime_error(text), m_Text(text) {}
    EffectFailure(const std::string& file, const std::string& text)
        : std::runtime_error(file + ": error: " + text), m_File(file), m_Text(text) {}

    const std::string& file() const { return m_File; } // that is to blame; may be empty
    const std::string& text() const { return m_Text; }

private:
    std::string m_File, m_Text;
};

} // namespace fxhost
