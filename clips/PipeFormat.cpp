#include "clips/PipeFormat.h"

#include <utility>

#include "toolkit/PictureConversion.h"

namespace fxhost {

namespace {

std::size_t PixelCount(const PipeFormat& format) {
    return std::size_t{format.width} * format.height;
}

// Indices of the channels: channel c of pixel i is at c + i * step.
struct Layout {
    std::size_t red, green, blue, alpha, step;
};

constexpr Layout s_Argb{1, 2, 3, 0, 4}; // Picture
constexpr Layout s_Rgba{0, 1, 2, 3, 4}; // FilePixels

Layout LayoutOf(const PipeFormat& format) {
    const std::size_t pixels = PixelCount(format);
    if (format.isPlanar)
        return {2 * pixels, 0, pixels, 3 * pixels, 1};
    return format.isDeep ? s_Rgba : s_Argb;
}

template <class T>
void CopyChannel(const T* from, std::size_t fromStep, T* to, std::size_t toStep, std::size_t pixels) {
    for (std::size_t i = 0; i < pixels; ++i)
        to[i * toStep] = from[i * fromStep];
}

// Copies from one layout to another. withAlpha: true when both have alpha.
template <class T>
void Rearrange(const T* from, const Layout& source, T* to, const Layout& target, std::size_t pixels,
               bool withAlpha) {
    CopyChannel(from + source.red, source.step, to + target.red, target.step, pixels);
    CopyChannel(from + source.green, source.step, to + target.green, target.step, pixels);
    CopyChannel(from + source.blue, source.step, to + target.blue, target.step, pixels);
    if (withAlpha)
        CopyChannel(from + source.alpha, source.step, to + target.alpha, target.step, pixels);
}

std::uint16_t ToSixteenBits(float unit) {
    const float scaled = unit * 65535 + 0.5f;
    if (!(scaled > 0)) // also NaN
        return 0;
    return scaled >= 65535 ? 65535 : static_cast<std::uint16_t>(scaled);
}

std::vector<std::uint16_t> DeepChannels(const Picture& picture) {
    std::vector<std::uint16_t> channels(std::size_t{picture.width} * picture.height * 4);
    if (picture.depth == 16) {
        const auto* const from = reinterpret_cast<const std::uint16_t*>(picture.bytes.data());
        for (std::size_t i = 0; i < channels.size(); ++i)
            channels[i] = ToSixteenBits(static_cast<float>(from[i]) / 32768);
    } else {
        const auto* const from = reinterpret_cast<const float*>(picture.bytes.data());
        for (std::size_t i = 0; i < channels.size(); ++i)
            channels[i] = ToSixteenBits(from[i]);
    }
    return channels;
}

} // namespace

const char* PipeFormat::name() const {
    if (!isPlanar)
        return isDeep ? "rgba64" : "argb";
    if (isDeep)
        return hasAlpha ? "gbrap16" : "gbrp16";
    return hasAlpha ? "gbrap" : "gbrp";
}

std::size_t PipeFormat::bytes() const {
    return PixelCount(*this) * (isPlanar && !hasAlpha ? 3 : 4) * (isDeep ? 2 : 1);
}

Picture PictureOf(std::vector<std::uint8_t> frame, const PipeFormat& format, unsigned depth) {
    const std::size_t pixels = PixelCount(format);
    if (format.isDeep) {
        FilePixels file{format.width, format.height, 16, 4, 3, {}};
        if (!format.isPlanar) {
            file.bytes = std::move(frame);
            return ToPicture(file, depth);
        }
        file.bytes.assign(pixels * 8, 255);
        Rearrange(reinterpret_cast<const std::uint16_t*>(frame.data()), LayoutOf(format),
                  reinterpret_cast<std::uint16_t*>(file.bytes.data()), s_Rgba, pixels, format.hasAlpha);
        return ToPicture(file, depth);
    }
    Picture picture(format.width, format.height, 0); // Depth 0 allocates no bytes.
    picture.depth = 8;
    picture.bytes = std::move(frame);
    if (format.isPlanar) {
        const std::vector<std::uint8_t> planes =
            std::exchange(picture.bytes, std::vector<std::uint8_t>(pixels * 4, 255));
        Rearrange(planes.data(), LayoutOf(format), picture.bytes.data(), s_Argb, pixels, format.hasAlpha);
    }
    return picture;
}

std::vector<std::uint8_t> FrameOf(const Picture& picture, const PipeFormat& format) {
    if (!format.isDeep && !format.isPlanar)
        return picture.bytes;
    std::vector<std::uint8_t> frame(format.bytes());
    const std::size_t pixels = PixelCount(format);
    const bool withAlpha = format.hasAlpha || !format.isPlanar;
    if (format.isDeep)
        Rearrange(DeepChannels(picture).data(), s_Argb, reinterpret_cast<std::uint16_t*>(frame.data()),
                  LayoutOf(format), pixels, withAlpha);
    else
        Rearrange(picture.bytes.data(), s_Argb, frame.data(), LayoutOf(format), pixels, withAlpha);
    return frame;
}

} // namespace fxhost
