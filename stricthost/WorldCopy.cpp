#include "stricthost/WorldCopy.h"

#include <algorithm>
#include <cstring>

namespace stricthost {

namespace {

PF_Rect Clipped(const World& world, const PF_Rect* rect) {
    const PF_Rect whole = {0, 0, world.Def().width, world.Def().height};
    if (!rect)
        return whole;
    return {std::clamp(rect->left, whole.left, whole.right), std::clamp(rect->top, whole.top, whole.bottom),
            std::clamp(rect->right, whole.left, whole.right),
            std::clamp(rect->bottom, whole.top, whole.bottom)};
}

} // namespace

bool CopyWorld(const World& source, World& target, const PF_Rect* from, const PF_Rect* to) {
    if (source.Bits() != target.Bits())
        return false;
    const PF_Rect a = Clipped(source, from);
    const PF_Rect b = Clipped(target, to);
    const std::int64_t width = b.right - b.left, height = b.bottom - b.top;
    const std::int64_t sourceWidth = a.right - a.left, sourceHeight = a.bottom - a.top;
    if (sourceWidth <= 0 || sourceHeight <= 0)
        return true;
    const std::size_t pixel = source.PixelBytes();
    for (std::int64_t y = 0; y < height; ++y) {
        const std::uint8_t* fromRow = source.Row(static_cast<unsigned>(a.top + y * sourceHeight / height));
        std::uint8_t* toRow = target.Row(static_cast<unsigned>(b.top + y));
        if (width == sourceWidth) {
            std::memcpy(toRow + static_cast<std::size_t>(b.left) * pixel,
                        fromRow + static_cast<std::size_t>(a.left) * pixel,
                        static_cast<std::size_t>(width) * pixel);
            continue;
        }
        for (std::int64_t x = 0; x < width; ++x)
            std::memcpy(toRow + static_cast<std::size_t>(b.left + x) * pixel,
                        fromRow + static_cast<std::size_t>(a.left + x * sourceWidth / width) * pixel, pixel);
    }
    return true;
}

void FillWorld(World& world, const void* pixel, const PF_Rect* area) {
    const PF_Rect rect = Clipped(world, area);
    for (A_long y = rect.top; y < rect.bottom; ++y)
        for (A_long x = rect.left; x < rect.right; ++x)
            std::memcpy(world.Row(static_cast<unsigned>(y)) +
                            static_cast<std::size_t>(x) * world.PixelBytes(),
                        pixel, world.PixelBytes());
}

} // namespace stricthost
