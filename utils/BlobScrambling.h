#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

// The reversible scrambling of "blob.dat": 32-bit little-endian words, each XORed with a running key that
// depends on every earlier plain word.
namespace BlobScrambling {

constexpr std::uint32_t PackageKey = 0x5E1F0C37u;
// A buffer to unscramble is this much longer than the package, zero filled: the last words reach past it.
constexpr std::size_t Padding = 8;

// In place; `buffer` holds a package of `length` bytes and Padding zero bytes.
void Unscramble(std::vector<unsigned char>& buffer, std::size_t length);

// The package for these plain bytes, of the same length.
std::vector<unsigned char> Scramble(const std::vector<unsigned char>& plain);

} // namespace BlobScrambling
