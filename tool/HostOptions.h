#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "drivers/HostDriver.h"

namespace fxhost {

// The command-line options for the emulation of an editing program.
struct HostOptions {
    std::string host = "ae";
    std::string downsample = "1/1";
    double pixelAspect = 1;
    std::string plugin;
    std::vector<std::string> strictHost; // names of quirks, or "seed:N"
    bool allowParamGap = false;
};

// Adds --strict-host, and reads it. ParseQuirks throws WrongUse for an unknown name.
void AddStrictHostOption(CLI::App& command, std::vector<std::string>& names);
stricthost::Quirks ParseQuirks(const std::vector<std::string>& names);

// Adds --host, --downsample, --pixel-aspect, --plugin, --strict-host and --allow-param-gap.
void AddHostOptions(CLI::App& command, HostOptions& options);

// Converts the options for this effect, which may be a bundle itself. Throws WrongUse unless exactly one of
// EFFECT and --plugin is given.
HostSettings ToHostSettings(const HostOptions& options, const std::string& effect);

} // namespace fxhost
