#pragma once

#include <filesystem>
#include <string>

namespace fxhost {

// What a plug-in bundle is made of.
struct BundleParts {
    std::string effect; // a folder that holds fx.js
    std::string bundle; // the folder to make, NAME.plugin
    std::string module; // the built plug-in module; empty takes the one that came with this tool
    bool replace = false;
};

// Makes the bundle NAME.plugin/Contents: the module under the system's folder, Info.plist, PkgInfo and
// Resources/blob.dat. It appears under its name only when it is whole. Gives its path without a trailing
// slash. Throws WrongUse or EffectFailure.
std::filesystem::path WriteBundle(const BundleParts& parts);

// The folder inside Contents that holds the module on this system: "Linux" or "MacOS".
const char* ModuleFolder();

} // namespace fxhost
