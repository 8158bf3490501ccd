#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace validate {

// What a plug-in's resource announces to hosts before they load its code.
struct Pipl {
    std::uint32_t outFlags = 0;
    std::uint32_t outFlags2 = 0;
    std::uint32_t version = 0;
};

// Reads the first .rsrc file in the bundle's Contents/Resources. Nothing for a bare module, and for a bundle
// without such a file or without these properties.
std::optional<Pipl> ReadPipl(const std::string& bundle);

} // namespace validate
