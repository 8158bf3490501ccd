#pragma once

#include <cstdint>
#include <string>

#include "packaging/Archive.h"

namespace fxhost {

// Property list that After Effects on macOS reads before it loads the module. Version and flags must be equal
// to those that the module returns from the global setup command.
struct PiplInfo {
    std::string name;      // shown in the menu; cut to 31 bytes, like the category
    std::string category;  // submenu
    std::string matchName; // unique identifier that is stored in projects; see MatchNameOf
    std::string entry;     // exported symbol
    std::uint32_t version = 0;
    std::uint32_t outFlags = 0;
    std::uint32_t outFlags2 = 0;
};

// Derives a match name of at most 47 bytes from an effect's unique name. A name that is too long or contains
// characters other than letters, digits and hyphens gets a checksum at the end, so that different effects
// have different match names.
std::string MatchNameOf(const std::string& effectId);

// Serialises the property list: big-endian, version 0, then one record for each property.
Bytes PiplProperties(const PiplInfo& info);

// A resource file (data fork, as in "Name.rsrc") that holds one resource of type PiPL with number 16000. The
// layout is that of the classic resource manager: header, data, map.
Bytes PiplResourceFile(const PiplInfo& info);

} // namespace fxhost
