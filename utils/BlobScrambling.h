#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

// The reversible scrambling of "blob.dat". Each 32-bit little-endian word is XORed with a running key, which
// depends on all earlier words of the plain text.
namespace BlobScrambling {

constexpr std::uint32_t PackageKey = 0x5E1F0C37u;
// Number of zero bytes that must follow the package in a buffer to unscramble, as the last words extend past
// its end.
constexpr std::size_t Padding = 8;

// Unscrambles in place. The buffer contains a package of `length` bytes and Padding zero bytes.
void Unscramble(std::vector<unsigned char>& buffer, std::size_t length);

// Returns the package for the plain bytes, which has the same length.
std::vector<unsigned char> Scramble(const std::vector<unsigned char>& plain);

} // namespace BlobScrambling
