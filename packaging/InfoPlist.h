#pragma once

#include <string>

namespace fxhost {

// What Info.plist tells about a bundle.
struct BundleInfo {
    std::string executable; // the module's file name
    std::string name;       // shown
    std::string identifier; // reverse domain name
    std::string version;    // "1.2.3"
};

// The text of Info.plist for a plug-in of the editing programs.
std::string InfoPlist(const BundleInfo& info);

// A bundle identifier made from a name: letters, digits and hyphens.
std::string IdentifierOf(const std::string& name);

} // namespace fxhost
