#pragma once

#include <CLI/CLI.hpp>

#include "guard/Guard.h"

namespace fxhost {

// Adds --frame-timeout and --memory-limit to a command.
void AddGuardOptions(CLI::App& command, GuardLimits& limits);

} // namespace fxhost
