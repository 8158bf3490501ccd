#include "host/CopyOut.h"

#include <cstring>

#include "host/WorldPixels.h"

namespace Adapter {

void ConvertRow16(const std::byte* __restrict source, std::byte* __restrict target, std::size_t channels) {
    for (std::size_t i = 0; i < channels; ++i) {
        std::uint16_t value;
        std::memcpy(&value, source + 2 * i, sizeof value);
        value = static_cast<std::uint16_t>((value >> 1) + (value > 32768 ? 1 : 0));
        std::memcpy(target + 2 * i, &value, sizeof value);
    }
}

void CopyFrame(const EngineFrame& frame, PF_LayerDef& world) {
    const auto margin = [](A_long outer, std::uint32_t inner) {
        return (static_cast<std::int64_t>(outer) - static_cast<std::int64_t>(inner)) / 2;
    };
    const Overlap across(frame.width, margin(world.width, frame.width), world.width);
    const Overlap down(frame.height, margin(world.height, frame.height), world.height);
    const std::size_t sourceRowBytes = PackedRowBytes(frame.width, frame.bits);
    const std::size_t copiedBytes = PackedRowBytes(static_cast<std::size_t>(across.count), frame.bits);
    const auto pixelBytes = static_cast<std::int64_t>(PackedRowBytes(1, frame.bits));
    const auto* source = static_cast<const std::byte*>(frame.pixels) + across.source * pixelBytes;
    auto* target = reinterpret_cast<std::byte*>(world.data) + across.target * pixelBytes;

    for (std::int64_t y = 0; y < down.count; ++y) {
        const std::int64_t fromBottom = frame.height - 1 - (down.source + y);
        const std::byte* from = source + fromBottom * static_cast<std::int64_t>(sourceRowBytes);
        std::byte* to = target + (down.target + y) * world.rowbytes;
        if (frame.bits == 16)
            ConvertRow16(from, to, copiedBytes / 2);
        else
            std::memcpy(to, from, copiedBytes);
    }
}

} // namespace Adapter
