#pragma once

#include <cstddef>
#include <string>

namespace Adapter {

// Returns the first `limit` bytes of a UTF-8 text, or fewer where the cut would split a character. The host's
// text fields have fixed sizes.
inline std::string BoundedText(const std::string& text, std::size_t limit) {
    if (text.size() <= limit)
        return text;
    const auto continues = [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0u) == 0x80u; };
    while (limit > 0 && continues(text[limit]))
        --limit;
    return text.substr(0, limit);
}

} // namespace Adapter
