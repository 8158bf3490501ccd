#include "gpu/ChannelOrder.h"

#include <cstring>

void PutAlphaFirst(unsigned char* pixels, std::size_t pixelCount, std::size_t channelBytes) {
    unsigned char alpha[4];
    for (std::size_t i = 0; i < pixelCount; ++i) {
        unsigned char* const pixel = pixels + i * 4 * channelBytes;
        std::memcpy(alpha, pixel + 3 * channelBytes, channelBytes);
        std::memmove(pixel + channelBytes, pixel, 3 * channelBytes);
        std::memcpy(pixel, alpha, channelBytes);
    }
}
