#pragma once

#include <string>

namespace fxhost {

// Returns the script with a time limit in each `while` and `for (;;)` loop. A loop that runs for longer
// throws an error, whose line is that of the loop. Only for scripts that do not end: it makes every loop
// slower. Lines keep their numbers.
std::string LimitLoops(const std::string& script, double seconds);

} // namespace fxhost
