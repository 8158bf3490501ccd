#pragma once

#include <cstddef>

// Turns pixels of red, green, blue, alpha into alpha, red, green, blue, in place. `channelBytes` is the size
// of one channel: 1, 2 or 4.
void PutAlphaFirst(unsigned char* pixels, std::size_t pixelCount, std::size_t channelBytes);
