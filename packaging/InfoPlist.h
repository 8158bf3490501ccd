#pragma once

#include <string>

namespace fxhost {

// The entries of Info.plist that differ between bundles.
struct BundleInfo {
    std::string executable; // the module's file name
    std::string name;       // display name
    std::string identifier; // reverse domain name
    std::string version;    // "1.2.3"
    std::string effectId;   // unique name of the effect, from which the identifier is derived
};

// The text of Info.plist for a plug-in.
std::string InfoPlist(const BundleInfo& info);

// Derives a bundle identifier from a name; it consists of letters, digits and hyphens.
std::string IdentifierOf(const std::string& name);

} // namespace fxhost
