#pragma once

#include <cstdint>
#include <string>

#include "packaging/Archive.h"

namespace fxhost {

// Property list that After Effects on macOS reads before it loads the module. Version and flags must be equal
// to those that the module returns from the global setup command.
struct PiplInfo {
    std::string name;      // shown in the menu; at most 255 bytes, like the two below
    std::string category;  // submenu
    std::string matchName; // unique identifier that is stored in projects
    std::string entry;     // exported symbol
    std::uint32_t version = 0;
    std::uint32_t outFlags = 0;
    std::uint32_t outFlags2 = 0;
};

// Serialises the property list: big-endian, version 0, then one record for each property.
Bytes PiplProperties(const PiplInfo& info);

// A resource file (data fork, as in "Name.rsrc") that holds one resource of type PiPL with number 16000. The
// layout is that of the classic resource manager: header, data, map.
Bytes PiplResourceFile(const PiplInfo& info);

} // namespace fxhost
