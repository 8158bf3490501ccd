#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace fxhost {

// The manual page of the tool in man's own markup, and what makes bash complete its command lines; both from
// the definitions of its commands and options.
std::string ManPage(const CLI::App& tool);
std::string BashCompletion(const CLI::App& tool);

} // namespace fxhost
