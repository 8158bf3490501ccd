#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace fxhost {

// The manual page of the tool in roff, generated from the definitions of the commands and options and from
// the table of exit statuses.
std::string ManPage(const CLI::App& tool);

} // namespace fxhost
