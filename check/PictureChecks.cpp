#include "check/PictureChecks.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "toolkit/Downsampling.h"

namespace fxhost {

namespace {

constexpr unsigned s_Columns = 8, s_Rows = 6;

double FullScale(unsigned depth) {
    return depth == 8 ? 255 : depth == 16 ? 32768 : 1;
}

// Alpha, red, green, blue, from 0 to 1, colours multiplied by alpha.
std::array<double, 4> Premultiplied(const Picture& picture, const PixelBox& box) {
    auto mean = BoxMean(picture, box);
    const double scale = FullScale(picture.depth);
    for (double& channel : mean)
        channel = std::isfinite(channel) ? std::clamp(channel / scale, 0.0, 1.0) : 0.0;
    for (unsigned i = 1; i < 4; ++i)
        mean[i] *= mean[0];
    return mean;
}

// Limits the channels of a float picture to 0..1, as integer depths do, so that means can be compared.
Picture Clamped(Picture picture) {
    if (picture.depth != 32)
        return picture;
    auto* const values = reinterpret_cast<float*>(picture.bytes.data());
    for (std::size_t i = 0; i < picture.bytes.size() / sizeof(float); ++i)
        values[i] = values[i] > 0 ? std::min(values[i], 1.0f) : 0.0f; // also NaN
    return picture;
}

double Distance(const std::array<double, 4>& a, const std::array<double, 4>& b) {
    double most = 0;
    for (unsigned i = 0; i < 4; ++i)
        most = std::max(most, std::abs(a[i] - b[i]));
    return most;
}

// One box of a grid that covers the picture; at least one pixel.
PixelBox GridBox(const Picture& picture, unsigned column, unsigned row) {
    PixelBox box{picture.width * column / s_Columns, picture.height * row / s_Rows,
                 picture.width * (column + 1) / s_Columns, picture.height * (row + 1) / s_Rows};
    box.right = std::max(box.right, box.left + 1);
    box.bottom = std::max(box.bottom, box.top + 1);
    return box;
}

std::array<double, 4> PixelAt(const Picture& picture, unsigned x, unsigned y) {
    return BoxMean(picture, {x, y, x + 1, y + 1});
}

// The marked rectangle, as half-open fractions of width and height in eighths.
constexpr unsigned s_MarkTop = 1, s_MarkBottom = 3;

template <class Channel>
void Put(Picture& picture, unsigned x, unsigned y, const std::array<double, 4>& argb) {
    auto* pixel = reinterpret_cast<Channel*>(picture.Row(y)) + std::size_t{x} * 4;
    for (unsigned i = 0; i < 4; ++i)
        pixel[i] = static_cast<Channel>(argb[i] * FullScale(picture.depth));
}

void PutPixel(Picture& picture, unsigned x, unsigned y, const std::array<double, 4>& argb) {
    const auto put = picture.depth == 8    ? Put<std::uint8_t>
                     : picture.depth == 16 ? Put<std::uint16_t>
                                           : Put<float>;
    put(picture, x, y, argb);
}

} // namespace

bool IsTransparent(const Picture& picture) {
    for (unsigned y = 0; y < picture.height; ++y)
        for (unsigned x = 0; x < picture.width; ++x)
            if (PixelAt(picture, x, y)[0] != 0)
                return false;
    return true;
}

bool HasNonFiniteValue(const Picture& picture) {
    if (picture.depth != 32)
        return false;
    const auto* const values = reinterpret_cast<const float*>(picture.bytes.data());
    return !std::all_of(values, values + picture.bytes.size() / sizeof(float),
                        [](float value) { return std::isfinite(value); });
}

double CoarseDifference(const Picture& first, const Picture& second) {
    const Picture a = Clamped(first), b = Clamped(second);
    double most = 0;
    for (unsigned row = 0; row < s_Rows; ++row)
        for (unsigned column = 0; column < s_Columns; ++column)
            most = std::max(most, Distance(Premultiplied(a, GridBox(a, column, row)),
                                           Premultiplied(b, GridBox(b, column, row))));
    return most;
}

double FineDifference(const Picture& first, const Picture& second) {
    if (first.width != second.width || first.height != second.height)
        return 1;
    double most = 0;
    for (unsigned y = 0; y < first.height; ++y)
        for (unsigned x = 0; x < first.width; ++x)
            most = std::max(most, Distance(Premultiplied(first, {x, y, x + 1, y + 1}),
                                           Premultiplied(second, {x, y, x + 1, y + 1})));
    return most;
}

Picture MakeTestScene(unsigned width, unsigned height, unsigned depth) {
    Picture picture(width, height, depth);
    for (unsigned y = 0; y < height; ++y)
        for (unsigned x = 0; x < width; ++x) {
            const double u = (x + 0.5) / width, v = (y + 0.5) / height;
            const bool isClear = u > 0.7 && v > 0.7;
            const bool isBright = std::hypot(u - 0.35, v - 0.4) < 0.2;
            PutPixel(picture, x, y,
                     {isClear ? 0.0 : 1.0, isBright ? 0.9 : 0.2 + 0.6 * u, 0.2 + 0.5 * v,
                      isBright ? 0.2 : 0.8 - 0.6 * u * v});
        }
    return picture;
}

void Mark(Picture& picture) {
    const double scale = FullScale(picture.depth);
    for (unsigned y = picture.height * s_MarkTop / 8; y < picture.height * s_MarkBottom / 8; ++y)
        for (unsigned x = 0; x < picture.width / 2; ++x) {
            auto argb = PixelAt(picture, x, y);
            for (unsigned i = 1; i < 4; ++i)
                argb[i] = scale - argb[i];
            for (double& channel : argb)
                channel /= scale;
            PutPixel(picture, x, y, argb);
        }
}

bool IsMarkUpsideDown(const Picture& frame, const Picture& markedFrame) {
    if (frame.width != markedFrame.width || frame.height != markedFrame.height)
        return false;
    double upper = 0, lower = 0;
    for (unsigned y = 0; y < frame.height; ++y)
        for (unsigned x = 0; x < frame.width; ++x)
            (y < frame.height / 2 ? upper : lower) += Distance(
                Premultiplied(frame, {x, y, x + 1, y + 1}), Premultiplied(markedFrame, {x, y, x + 1, y + 1}));
    return lower > 1 && lower > 10 * upper;
}

} // namespace fxhost
