#pragma once

#include <CLI/CLI.hpp>

#include "clips/ClipOptions.h"

namespace fxhost {

// Adds --frames, --fps, --keys, --resume, ... to a command.
void AddClipOptions(CLI::App& command, ClipOptions& options);

} // namespace fxhost
