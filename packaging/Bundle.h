#pragma once

#include <filesystem>
#include <string>

#include "packaging/InfoPlist.h"

namespace fxhost {

// Input of WriteBundle.
struct BundleParts {
    std::string effect; // a folder that holds fx.js
    std::string
        bundle; // the bundle to make, NAME.plugin, or a folder in which it gets the name of the effect
    std::string module;   // plug-in module; empty selects the one that was installed or built with this tool
    std::string target;   // "linux" or "macos"; empty selects the system that this tool runs on
    bool replace = false; // delete an existing bundle first
};

struct WrittenBundle {
    std::filesystem::path path; // without a trailing slash
    BundleInfo info;
};

// Writes the bundle NAME.plugin/Contents: the module in the folder of the target system, Info.plist, PkgInfo
// and Resources/blob.dat. Name, identifier and version come from config.xml. The bundle appears under its
// name only when it is complete. Throws WrongUse or EffectFailure.
WrittenBundle WriteBundle(const BundleParts& parts);

} // namespace fxhost
