#pragma once

#include <filesystem>
#include <string>

namespace fxhost {

// An operating system that bundles are made for.
struct TargetSystem {
    const char* name;         // as in --target and in the folder names of an installation: "linux", "macos"
    const char* moduleFolder; // the folder inside Contents that holds the module
    bool needsPropertyList;   // hosts on this system read a PiPL before they load the module
};

// The system of this name; an empty name means the one that this program runs on. Throws WrongUse for other
// names.
const TargetSystem& FindTargetSystem(const std::string& name);

// The plug-in module for this system that was installed with this program, or built beside it. Throws
// EffectFailure, with the places that were searched, when there is none.
std::filesystem::path FindModule(const TargetSystem& system);

} // namespace fxhost
