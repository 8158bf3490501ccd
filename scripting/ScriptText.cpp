#include "scripting/ScriptText.h"

namespace {

constexpr std::size_t s_HalfLength = 3; // bytes of an encoded half of a surrogate pair
constexpr char s_Replacement[] = "\xEF\xBF\xBD";
constexpr char s_FirstByte = '\xED'; // of each half

// The 16-bit code of the half that begins there, or 0 when none does.
unsigned HalfAt(std::string_view text, std::size_t at) {
    if (at + s_HalfLength > text.size() || text[at] != s_FirstByte)
        return 0;
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[at + i]) & 0x3Fu; };
    const unsigned code = 0xD000u | byte(1) << 6 | byte(2);
    return code >= 0xD800u ? code : 0;
}

bool IsHigh(unsigned half) {
    return half >= 0xD800u && half < 0xDC00u;
}

bool IsLow(unsigned half) {
    return half >= 0xDC00u;
}

void AppendPair(std::string& text, unsigned high, unsigned low) {
    const unsigned code = 0x10000u + ((high - 0xD800u) << 10) + (low - 0xDC00u);
    for (const unsigned byte :
         {0xF0u | code >> 18, 0x80u | (code >> 12 & 0x3F), 0x80u | (code >> 6 & 0x3F), 0x80u | (code & 0x3F)})
        text += static_cast<char>(byte);
}

} // namespace

std::string Utf8FromScript(std::string_view text) {
    std::string utf8;
    std::size_t done = 0;
    for (auto at = text.find(s_FirstByte); at != std::string_view::npos; at = text.find(s_FirstByte, at)) {
        const unsigned half = HalfAt(text, at);
        if (half == 0) {
            ++at;
            continue;
        }
        utf8 += text.substr(done, at - done);
        at += s_HalfLength;
        if (const unsigned next = HalfAt(text, at); IsHigh(half) && IsLow(next)) {
            AppendPair(utf8, half, next);
            at += s_HalfLength;
        } else {
            utf8 += s_Replacement;
        }
        done = at;
    }
    return utf8 += text.substr(done);
}
