#include "utils/BlobScrambling.h"

namespace BlobScrambling {

namespace {

std::uint32_t LoadWord(const unsigned char* bytes) {
    return static_cast<std::uint32_t>(bytes[0]) | static_cast<std::uint32_t>(bytes[1]) << 8 |
           static_cast<std::uint32_t>(bytes[2]) << 16 | static_cast<std::uint32_t>(bytes[3]) << 24;
}

void StoreWord(unsigned char* bytes, std::uint32_t word) {
    for (unsigned i = 0; i < 4; ++i)
        bytes[i] = static_cast<unsigned char>(word >> 8 * i);
}

// Converts in either direction. `plainOf` returns which of its arguments, the word read or the word with the
// key applied, is the plain word.
template <class PlainOf>
void Process(std::vector<unsigned char>& buffer, std::size_t length, PlainOf plainOf) {
    std::uint32_t key = PackageKey;
    for (std::size_t word = 0; word <= (length + 4) / 4; ++word) {
        unsigned char* const at = buffer.data() + 4 * word;
        const std::uint32_t read = LoadWord(at);
        const std::uint32_t keyed = read ^ key;
        const std::uint32_t plain = plainOf(read, keyed);
        StoreWord(at, keyed);
        key = (key + plain) * plain;
    }
}

} // namespace

void Unscramble(std::vector<unsigned char>& buffer, std::size_t length) {
    Process(buffer, length, [](std::uint32_t, std::uint32_t keyed) { return keyed; });
}

std::vector<unsigned char> Scramble(const std::vector<unsigned char>& plain) {
    std::vector<unsigned char> buffer = plain;
    buffer.resize(plain.size() + Padding);
    Process(buffer, plain.size(), [](std::uint32_t read, std::uint32_t) { return read; });
    buffer.resize(plain.size());
    return buffer;
}

} // namespace BlobScrambling
