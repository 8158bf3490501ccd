#pragma once

#include <CLI/CLI.hpp>
#include <vector>

namespace fxhost {

// All subcommands in the order of their definition.
inline std::vector<const CLI::App*> Subcommands(const CLI::App& tool) {
    return tool.get_subcommands([](const CLI::App*) { return true; });
}

} // namespace fxhost
