#include "toolkit/PictureConversion.h"

#include <array>
#include <cstring>

namespace fxhost {

namespace {

// Channel types: each converts a stored value to a number that is 1 at full scale, and back.
template <class T, int FullScale>
struct IntegerChannel {
    using Type = T;
    static double ToUnit(T value) { return static_cast<double>(value) / FullScale; }
    static T FromUnit(double unit) {
        const double scaled = unit * FullScale + 0.5;
        if (!(scaled > 0)) // also NaN
            return 0;
        return scaled >= FullScale ? static_cast<T>(FullScale) : static_cast<T>(scaled);
    }
};
struct FloatChannel {
    using Type = float;
    static double ToUnit(float value) { return static_cast<double>(value); }
    static float FromUnit(double unit) { return static_cast<float>(unit); }
};
using Byte = IntegerChannel<std::uint8_t, 255>;
using File16 = IntegerChannel<std::uint16_t, 65535>;
using Host16 = IntegerChannel<std::uint16_t, 32768>;

template <class From, class To>
typename To::Type Convert(typename From::Type value) {
    if constexpr (std::is_same_v<From, To>)
        return value;
    else
        return To::FromUnit(From::ToUnit(value));
}

// Index of the file channel that supplies each of A, R, G, B; -1 means opaque.
std::array<int, 4> Sources(const FilePixels& file) {
    std::array<int, 4> sources{file.alpha, -1, -1, -1};
    unsigned found = 0;
    for (int channel = 0; channel < static_cast<int>(file.channels) && found < 3; ++channel)
        if (channel != file.alpha)
            sources[++found] = channel;
    if (found < 3) // grey, or grey with one extra channel
        sources[2] = sources[3] = sources[1];
    return sources;
}

template <class From, class To>
void ToHost(const FilePixels& file, Picture& picture) {
    const auto sources = Sources(file);
    const auto opaque = To::FromUnit(1);
    const auto* in = reinterpret_cast<const typename From::Type*>(file.bytes.data());
    auto* out = reinterpret_cast<typename To::Type*>(picture.bytes.data());
    const std::size_t pixels = std::size_t{file.width} * file.height;
    for (std::size_t i = 0; i < pixels; ++i, in += file.channels)
        for (const int source : sources)
            *out++ = source < 0 ? opaque : Convert<From, To>(in[source]);
}

template <class From>
void ToHostDepth(const FilePixels& file, Picture& picture) {
    switch (picture.depth) {
    case 8:
        return ToHost<From, Byte>(file, picture);
    case 16:
        return ToHost<From, Host16>(file, picture);
    default:
        return ToHost<From, FloatChannel>(file, picture);
    }
}

template <class From, class To>
void ToFile(const Picture& picture, FilePixels& file) {
    const auto* in = reinterpret_cast<const typename From::Type*>(picture.bytes.data());
    auto* out = reinterpret_cast<typename To::Type*>(file.bytes.data());
    const std::size_t pixels = std::size_t{file.width} * file.height;
    const int lastColour = file.channels < 3 ? 1 : 3;
    for (std::size_t i = 0; i < pixels; ++i, in += 4) {
        for (int colour = 1; colour <= lastColour; ++colour)
            *out++ = Convert<From, To>(in[colour]);
        if (file.alpha >= 0)
            *out++ = Convert<From, To>(in[0]);
    }
}

template <class From>
void ToFileDepth(const Picture& picture, FilePixels& file) {
    switch (file.depth) {
    case 8:
        return ToFile<From, Byte>(picture, file);
    case 16:
        return ToFile<From, File16>(picture, file);
    default:
        return ToFile<From, FloatChannel>(picture, file);
    }
}

// True when the condition holds for every pixel, given its first channel.
template <class Condition>
bool AllPixels(const Picture& picture, const Condition& condition) {
    const std::size_t pixels = std::size_t{picture.width} * picture.height;
    const auto all = [&](const auto* pixel, auto full) {
        for (std::size_t i = 0; i < pixels; ++i, pixel += 4)
            if (!condition(pixel, full))
                return false;
        return true;
    };
    const std::uint8_t* const bytes = picture.bytes.data();
    if (picture.depth == 8)
        return all(bytes, std::uint8_t{255});
    if (picture.depth == 16)
        return all(reinterpret_cast<const std::uint16_t*>(bytes), std::uint16_t{32768});
    return all(reinterpret_cast<const float*>(bytes), 1.0f);
}

} // namespace

Picture ToPicture(const FilePixels& file, unsigned depth) {
    Picture picture(file.width, file.height, depth);
    switch (file.depth) {
    case 8:
        ToHostDepth<Byte>(file, picture);
        break;
    case 16:
        ToHostDepth<File16>(file, picture);
        break;
    default:
        ToHostDepth<FloatChannel>(file, picture);
    }
    return picture;
}

FilePixels ToFilePixels(const Picture& picture, unsigned channels, unsigned depth) {
    FilePixels file;
    file.width = picture.width;
    file.height = picture.height;
    file.depth = depth;
    file.channels = channels;
    file.alpha = channels % 2 ? -1 : static_cast<int>(channels) - 1;
    file.bytes.resize(std::size_t{file.width} * file.height * file.channels * file.depth / 8);
    switch (picture.depth) {
    case 8:
        ToFileDepth<Byte>(picture, file);
        break;
    case 16:
        ToFileDepth<Host16>(picture, file);
        break;
    default:
        ToFileDepth<FloatChannel>(picture, file);
    }
    return file;
}

FilePixels ToFilePixels(const Picture& picture, bool withAlpha) {
    return ToFilePixels(picture, withAlpha ? 4u : 3u, picture.depth);
}

Picture AtDepth(Picture picture, unsigned depth) {
    if (depth == picture.depth)
        return picture;
    return ToPicture(ToFilePixels(picture, 4u, 32u), depth);
}

bool IsOpaque(const Picture& picture) {
    return AllPixels(picture, [](const auto* pixel, auto full) { return pixel[0] == full; });
}

bool IsGrey(const Picture& picture) {
    return AllPixels(picture,
                     [](const auto* pixel, auto) { return pixel[1] == pixel[2] && pixel[2] == pixel[3]; });
}

} // namespace fxhost
