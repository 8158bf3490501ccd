#include <vector>

#include "gpu/ChannelOrder.h"
#include "gpu/PixelDepth.h"
#include "gpu/TargetReadback.h"
#include "imagelib/Convert.h"
#include "imagelib/Quantize.h"
#include "scripting/Bindings.h"

namespace {

constexpr unsigned s_PlaceholderSize = 2; // of new surfaces and textures until they are filled
constexpr unsigned s_PlaceholderDepth = 8;

ScriptResult InitSurface(std::int32_t width, std::int32_t height, std::int32_t depth) {
    return ScriptResult::Number(Context::Current().InitResource<Surface>(
        static_cast<unsigned>(width), static_cast<unsigned>(height), static_cast<unsigned>(depth)));
}

// The row at t = 0 comes first, as in the pixel copy of a texture.
void FillFromTarget(Surface& surface, RenderTarget& target) {
    const TargetReadback readback(target);
    if (readback.pixels())
        surface.grabPixels(readback.pixels(), target.width(), target.height(), target.depth(),
                           static_cast<long>(PixelDepth::RowBytes(target.width(), target.depth())), true,
                           true);
}

// The surface gets a copy, as the script may release or refill the texture while it uses the surface.
void FillFromTexture(Surface& surface, const Texture& texture) {
    const auto stride = static_cast<std::size_t>(texture.stride());
    const std::vector<unsigned char>& kept = texture.pixelCopy();
    if (stride == 0 || kept.size() < texture.height() * stride)
        return;
    const auto grab = [&](const unsigned char* pixels) {
        surface.grabPixels(pixels, texture.width(), texture.height(), texture.depth(),
                           static_cast<long>(stride), true, true);
    };
    if (texture.argbOrder()) {
        grab(kept.data());
        return;
    }
    std::vector<unsigned char> reordered = kept; // of a decoded image, whose rows are tightly packed
    PutAlphaFirst(reordered.data(), reordered.size() / PixelDepth::BytesPerPixel(texture.depth()),
                  PixelDepth::BytesPerChannel(texture.depth()));
    grab(reordered.data());
}

ScriptResult TextureToSurface(std::uint32_t handle) {
    if (handle == 0)
        return ScriptResult::Number(0);
    Context& context = Context::Current();
    const unsigned created =
        context.InitResource<Surface>(s_PlaceholderSize, s_PlaceholderSize, s_PlaceholderDepth);
    Surface& surface = context.GetResource<Surface>(created);
    if (Arg::HasTag(handle, RenderTarget::Tag)) {
        if (RenderTarget* const target = Arg::Live<RenderTarget>::Resolve(handle))
            FillFromTarget(surface, *target);
    } else if (const Texture* const texture = ResolveTexture(handle)) {
        FillFromTexture(surface, *texture);
    }
    return ScriptResult::Number(created);
}

// A released surface counts as an empty one.
ScriptResult SurfaceToTexture(const Surface* found) {
    const Surface& surface = found ? *found : Surface::invalid;
    Context& context = Context::Current();
    const unsigned created =
        context.InitResource<Texture>(s_PlaceholderSize, s_PlaceholderSize, s_PlaceholderDepth);
    if (Texture& texture = context.GetResource<Texture>(created); texture.id() != 0)
        texture.grabPixels(surface.pixels(), surface.width(), surface.height(), surface.depth(),
                           static_cast<long>(surface.stride()), true, false);
    ReportProblem("SV_surfaceToTexture", context.GetResource<Texture>(created));
    return ScriptResult::Number(created);
}

// The dithering modes of scripts count from 1, those of the image library from 0.
ImageLib::DitheringMode ModeOf(std::int32_t scriptMode) {
    return static_cast<ImageLib::DitheringMode>(std::int64_t{scriptMode} - 1);
}

ScriptResult SurfaceQuantize(Surface& surface, std::nullptr_t, std::int32_t selector, std::int32_t scriptMode,
                             float threshold, bool serpentine) {
    if (!ImageLib::IsConvertibleDepth(surface.depth()))
        return ScriptResult::Bool(true);
    const std::size_t bytes = surface.height() * surface.stride();
    ImageLib::Surface<ImageLib::Pixel32> pixels;
    if (!ImageLib::LoadSurface(surface.pixels(), bytes, surface.width(), surface.height(), surface.depth(),
                               surface.stride(), pixels))
        return ScriptResult::Bool(false);
    ImageLib::Quantize(pixels, static_cast<unsigned>(selector), ModeOf(scriptMode), threshold, serpentine);
    return ScriptResult::Bool(
        ImageLib::StoreSurface(pixels, surface.pixels(), bytes, surface.depth(), surface.stride()));
}

ScriptResult SurfaceCopyTo(const Surface& surface, Texture& target, bool flip) {
    target.grabSurface(surface, flip);
    ReportProblem("SV_surfaceCopyTo", target);
    return ScriptResult::Bool(true);
}

using Live = Arg::Live<Surface>;
using OptionalInt = Arg::Optional<Arg::Int>;

constexpr NativeFunction s_Functions[] = {
    Native<InitSurface, Refusal::False, OptionalInt, OptionalInt, OptionalInt>("SV_initSurface"),
    Native<TextureToSurface, Refusal::False, Arg::Handle>("SV_textureToSurface"),
    Native<SurfaceToTexture, Refusal::False, Arg::Tagged<Surface>>("SV_surfaceToTexture"),
    Native<SurfaceQuantize, Refusal::False, Live, Arg::Ignored, Arg::Int, Arg::Int, Arg::Float, Arg::Bool>(
        "SV_surfaceQuantize"),
    Native<SurfaceCopyTo, Refusal::False, Live, Arg::Image, Arg::Bool>("SV_surfaceCopyTo"),
};

} // namespace

std::span<const NativeFunction> SurfaceBindings() {
    return s_Functions;
}
