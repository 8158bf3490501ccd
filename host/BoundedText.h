#pragma once

#include <cstddef>
#include <string>

namespace Adapter {

// The text's first `limit` bytes at most, without a UTF-8 character cut in two. The host's fields are fixed.
inline std::string Bounded(const std::string& text, std::size_t limit) {
    if (text.size() <= limit)
        return text;
    const auto continues = [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0u) == 0x80u; };
    while (limit > 0 && continues(text[limit]))
        --limit;
    return text.substr(0, limit);
}

} // namespace Adapter
