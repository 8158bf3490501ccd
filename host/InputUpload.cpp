#include "host/InputUpload.h"

#include <cstdlib>
#include <cstring>
#include <vector>

#include "engine/IPlugin.h"
#include "host/CopyOut.h"
#include "host/HostKind.h"
#include "host/PixelData.h"
#include "host/Scaling.h"

namespace Adapter {

namespace {

// The part that the clip shows, without padding. What lies outside the world is transparent.
std::vector<std::byte> VisiblePixels(const PF_InData& in, const PF_LayerDef& world, std::uint32_t width,
                                     std::uint32_t height, int bits) {
    const std::size_t rowBytes = PackedRowBytes(width, bits);
    const auto pixelBytes = static_cast<std::int64_t>(PackedRowBytes(1, bits));
    std::vector<std::byte> packed(rowBytes * height);
    if (packed.empty())
        return packed;
    const Overlap across(world.width, -static_cast<std::int64_t>(in.pre_effect_source_origin_x), width);
    const Overlap down(world.height, -static_cast<std::int64_t>(in.pre_effect_source_origin_y), height);
    const auto* source = reinterpret_cast<const std::byte*>(world.data) + across.source * pixelBytes;
    std::byte* target = packed.data() + across.target * pixelBytes;
    for (std::int64_t y = 0; y < down.count; ++y)
        std::memcpy(target + (down.target + y) * static_cast<std::int64_t>(rowBytes),
                    source + (down.source + y) * world.rowbytes,
                    static_cast<std::size_t>(across.count * pixelBytes));
    return packed;
}

void UploadVisible(IPlugin& engine, const PF_InData& in, const PF_LayerDef& world, int bits, unsigned index) {
    const std::uint32_t width = Scaled(Extent(in.width), in.downsample_x);
    const std::uint32_t height = Scaled(Extent(in.height), in.downsample_y);
    std::vector<std::byte> packed = VisiblePixels(in, world, width, height, bits);
    engine.grabIntoTexture(index, packed.data(), width, height, static_cast<unsigned>(bits),
                           static_cast<long>(PackedRowBytes(width, bits)));
}

// Without it the engine would show what an earlier frame left in the texture.
void UploadNothing(IPlugin& engine, int bits, unsigned index) {
    float transparent[4] = {}; // as large as a pixel gets
    engine.grabIntoTexture(index, transparent, 1, 1, static_cast<unsigned>(bits),
                           static_cast<long>(PackedRowBytes(1, bits)));
}

// A world that is less deep than told would be read past its rows.
bool RowsHold(const PF_LayerDef& world, int bits) {
    return PackedRowBytes(Extent(world.width), bits) <= static_cast<std::size_t>(std::abs(world.rowbytes)) ||
           world.height == 1;
}

} // namespace

void UploadInputSurface(PF_InData* in, PF_LayerDef* world, unsigned bits, int index) {
    IPlugin& engine = *GetPlugin();
    if (!engine.isInputRequested())
        return;
    const int depth = static_cast<int>(bits);
    const auto texture = static_cast<unsigned>(index);
    if (IsEmptyWorld(*world))
        return UploadNothing(engine, depth, texture);
    if (!RowsHold(*world, depth))
        throw static_cast<int>(PF_Err_INTERNAL_STRUCT_DAMAGED);
    if (IsPremiere(*in))
        UploadVisible(engine, *in, *world, depth, texture);
    else
        engine.grabIntoTexture(texture, world->data, Extent(world->width), Extent(world->height), bits,
                               world->rowbytes);
}

} // namespace Adapter
