#pragma once

#include <stdexcept>

namespace fxhost {

// What the tool's process ends with.
enum ExitStatus : int {
    ExitOk = 0,
    ExitEffectFailed = 1, // script or shader error, file that the effect lacks, no GL, picture not written
    ExitWrongUse = 2,     // options or input files that make no sense
    ExitRunaway = 4,      // the effect crashed or did not come to an end
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
    using std::runtime_error::runtime_error;
};

} // namespace fxhost
