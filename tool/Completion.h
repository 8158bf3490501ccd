#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace fxhost {

// The completion script for bash, generated from the definitions of the commands and options.
std::string BashCompletion(const CLI::App& tool);

} // namespace fxhost
