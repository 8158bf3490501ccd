#pragma once

#include <filesystem>
#include <string>

namespace fxhost {

// Input and output of WriteBundle.
struct BundleParts {
    std::string effect;   // a folder that holds fx.js
    std::string bundle;   // the folder to make, NAME.plugin
    std::string module;   // plug-in module; empty selects the one that is installed with this tool
    bool replace = false; // delete an existing bundle first
};

// Writes the bundle NAME.plugin/Contents: the module in the folder of the platform, Info.plist, PkgInfo and
// Resources/blob.dat. The bundle appears under its name only when it is complete. Returns its path without a
// trailing slash. Throws WrongUse or EffectFailure.
std::filesystem::path WriteBundle(const BundleParts& parts);

// The folder inside Contents that holds the module on this system: "Linux" or "MacOS".
const char* ModuleFolder();

} // namespace fxhost
