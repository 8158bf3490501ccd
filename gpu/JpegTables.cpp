#include "gpu/JpegTables.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <span>

namespace {

using Bytes = std::span<const unsigned char>;

constexpr unsigned char s_Prefix = 0xFF; // of every marker
constexpr unsigned char s_StartOfImage = 0xD8;
constexpr unsigned char s_FirstRestart = 0xD0, s_LastRestart = 0xD7; // markers within the compressed pixels
constexpr unsigned char s_HuffmanTables = 0xC4;
constexpr std::size_t s_LengthBytes = 2; // at the start of a segment; the length includes them
constexpr std::size_t s_CountBytes = 16; // of a table, after its number: how many codes have 1 to 16 bits
constexpr unsigned s_MostCodes = 256;

// A segment may hold several tables. The decoder reads every table that begins within the segment, also
// beyond the segment's end, and takes bytes after the end of the file as 0. So `file` continues to the end of
// the file.
bool IsAnyTableOverlong(Bytes file, std::size_t segmentBytes) {
    for (std::size_t at = 0; at < std::min(segmentBytes, file.size() - 1);) {
        const Bytes rest = file.subspan(at + 1);
        const Bytes counts = rest.first(std::min(s_CountBytes, rest.size()));
        const unsigned codes = std::accumulate(counts.begin(), counts.end(), 0u);
        if (codes > s_MostCodes)
            return true;
        at += 1 + s_CountBytes + codes;
    }
    return false;
}

// Markers without a segment: bytes of 255 among the compressed pixels are followed by 0.
bool IsAlone(unsigned char marker) {
    return marker == 0 || marker == s_StartOfImage || (marker >= s_FirstRestart && marker <= s_LastRestart);
}

} // namespace

bool HasOverlongHuffmanTable(const std::vector<unsigned char>& file) {
    Bytes rest = file;
    while (rest.size() > 2 && rest[0] == s_Prefix &&
           rest[1] == s_Prefix) // a marker may have several prefixes
        rest = rest.subspan(1);
    if (rest.size() < 2 || rest[0] != s_Prefix || rest[1] != s_StartOfImage)
        return false;
    while (rest.size() > 2 + s_LengthBytes) {
        if (rest[0] != s_Prefix || rest[1] == s_Prefix || IsAlone(rest[1])) {
            rest = rest.subspan(1);
            continue;
        }
        const std::size_t length = std::size_t{rest[2]} << 8 | rest[3];
        if (rest[1] == s_HuffmanTables && length > s_LengthBytes &&
            IsAnyTableOverlong(rest.subspan(2 + s_LengthBytes), length - s_LengthBytes))
            return true;
        rest = rest.subspan(std::min(2 + length, rest.size()));
    }
    return false;
}
