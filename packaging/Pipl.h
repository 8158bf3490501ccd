#pragma once

#include <cstdint>
#include <string>

#include "packaging/Archive.h"

namespace fxhost {

// What an effect declares to After Effects on macOS before its module is loaded. Version and flags must equal
// what the module answers at global set-up, bit for bit.
struct PiplInfo {
    std::string name;      // in the menu; at most 255 bytes, like the two below
    std::string category;  // of the menu
    std::string matchName; // unique, stored in projects
    std::string entry;     // exported symbol
    std::uint32_t version = 0;
    std::uint32_t outFlags = 0;
    std::uint32_t outFlags2 = 0;
};

// The property list: big-endian, version 0, then one record a property.
Bytes PiplProperties(const PiplInfo& info);

// A resource file (data fork, as in "Name.rsrc") that holds one resource of type PiPL with number 16000. The
// layout is that of the classic resource manager: header, data, map.
Bytes PiplResourceFile(const PiplInfo& info);

} // namespace fxhost
