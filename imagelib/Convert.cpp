#include "imagelib/Convert.h"

#include <bit>
#include <cstring>

namespace ImageLib {
namespace {

// Adding 2^23 leaves an integer in the low bits of a float; the addition itself rounds to nearest even.
// Clamping first gives the same integer as clamping last.
constexpr float s_RoundToInteger = 8388608.0f;

inline std::uint32_t RoundClamped(float value, float scale) {
    const float scaled = value * scale;
    const float positive = scaled > 0.0f ? scaled : 0.0f;
    const float clamped = positive < scale ? positive : scale;
    return std::bit_cast<std::uint32_t>(clamped + s_RoundToInteger) & 0xFFFF;
}

template <class Channel>
constexpr float s_Scale = sizeof(Channel) == 1 ? 255.0f : 65535.0f;

// Host rows have any alignment, so each channel is copied; this compiles to unaligned SIMD loads and stores.
template <class Channel>
void LoadRow(const unsigned char* from, float* to, std::size_t channels) {
    for (std::size_t i = 0; i < channels; ++i) {
        Channel channel;
        std::memcpy(&channel, from + i * sizeof(Channel), sizeof(Channel));
        to[i] = static_cast<float>(channel) / s_Scale<Channel>;
    }
}

template <class Channel>
void StoreRow(const float* from, unsigned char* to, std::size_t channels) {
    for (std::size_t i = 0; i < channels; ++i) {
        const auto channel = static_cast<Channel>(RoundClamped(from[i], s_Scale<Channel>));
        std::memcpy(to + i * sizeof(Channel), &channel, sizeof(Channel));
    }
}

void LoadFloatRow(const unsigned char* from, float* to, std::size_t channels) {
    std::memcpy(to, from, channels * sizeof(float));
}

void StoreFloatRow(const float* from, unsigned char* to, std::size_t channels) {
    std::memcpy(to, from, channels * sizeof(float));
}

struct DepthRow {
    unsigned depth;
    void (*load)(const unsigned char* from, float* to, std::size_t channels);
    void (*store)(const float* from, unsigned char* to, std::size_t channels);
};

constexpr DepthRow s_Depths[] = {
    {8, LoadRow<std::uint8_t>, StoreRow<std::uint8_t>},
    {16, LoadRow<std::uint16_t>, StoreRow<std::uint16_t>},
    {32, LoadFloatRow, StoreFloatRow},
};

const DepthRow* FindDepth(unsigned depth) {
    for (const DepthRow& row : s_Depths)
        if (row.depth == depth)
            return &row;
    return nullptr;
}

bool Fits(const void* pixels, std::size_t bytes, std::uint32_t width, std::uint32_t height, unsigned depth,
          std::size_t stride) {
    const std::size_t rowBytes = std::size_t{width} * 4 * (depth / 8);
    return pixels && width && height && stride >= rowBytes && height <= bytes / stride;
}

} // namespace

bool IsConvertibleDepth(unsigned depth) {
    return FindDepth(depth) != nullptr;
}

bool LoadSurface(const void* pixels, std::size_t bytes, std::uint32_t width, std::uint32_t height,
                 unsigned depth, std::size_t stride, Surface<Pixel32>& surface) {
    const DepthRow* const row = FindDepth(depth);
    if (!row || !Fits(pixels, bytes, width, height, depth, stride))
        return false;
    Surface<Pixel32> loaded(width, height);
    for (std::uint32_t y = 0; y < height; ++y)
        row->load(static_cast<const unsigned char*>(pixels) + y * stride, &loaded.Row(y)->alpha,
                  std::size_t{width} * 4);
    surface = std::move(loaded);
    return true;
}

bool StoreSurface(const Surface<Pixel32>& surface, void* pixels, std::size_t bytes, unsigned depth,
                  std::size_t stride) {
    const DepthRow* const row = FindDepth(depth);
    if (!row || surface.IsEmpty() || !Fits(pixels, bytes, surface.Width(), surface.Height(), depth, stride))
        return false;
    for (std::uint32_t y = 0; y < surface.Height(); ++y)
        row->store(&surface.Row(y)->alpha, static_cast<unsigned char*>(pixels) + y * stride,
                   std::size_t{surface.Width()} * 4);
    return true;
}

void StoreRGBA8(const Surface<Pixel32>& surface, std::uint8_t* bytes) {
    for (std::uint32_t y = 0; y < surface.Height(); ++y) {
        const Pixel32* const row = surface.Row(y);
        for (std::uint32_t x = 0; x < surface.Width(); ++x) {
            const std::uint32_t packed =
                RoundClamped(row[x].red, 255.0f) | RoundClamped(row[x].green, 255.0f) << 8 |
                RoundClamped(row[x].blue, 255.0f) << 16 | RoundClamped(row[x].alpha, 255.0f) << 24;
            std::memcpy(bytes, &packed, 4); // both processor families are little-endian
            bytes += 4;
        }
    }
}

} // namespace ImageLib
