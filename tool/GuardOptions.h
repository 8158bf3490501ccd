#pragma once

#include <CLI/CLI.hpp>

#include "guard/Guard.h"

namespace fxhost {

// Adds --frame-timeout, --memory-limit and --no-fork to a command.
void AddGuardOptions(CLI::App& command, GuardLimits& limits);

} // namespace fxhost
