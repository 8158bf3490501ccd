#include <cstring>
#include <vector>

#include "context/Context.h"
#include "gpu/PixelDepth.h"
#include "imagelib/Convert.h"
#include "imagelib/Quantize.h"
#include "scripting/Bindings.h"
#include "scripting/TextureSource.h"

namespace {

constexpr unsigned s_PlaceholderSize = 2; // new surfaces and textures, until they are filled
constexpr unsigned s_PlaceholderDepth = 8;

ScriptResult InitSurface(ScriptCall& call) {
    const auto width = static_cast<unsigned>(call.Int(0));
    const auto height = static_cast<unsigned>(call.Int(1));
    const auto depth = static_cast<unsigned>(call.Int(2));
    return ScriptResult::Number(Context::Current().InitResource<Surface>(width, height, depth));
}

// A surface with pixels, or null.
Surface* FilledSurface(std::uint32_t handle) {
    if ((handle & Context::TagMask) != Surface::Tag)
        return nullptr;
    Surface& surface = Context::Current().GetResource<Surface>(handle);
    return surface.width() != 0 && surface.height() != 0 && surface.pixels() ? &surface : nullptr;
}

// The rows are GL's: the one at t = 0 comes first, as in a texture's own pixels.
void FillFromTarget(Surface& surface, RenderTarget& target) {
    if (const void* const pixels = target.grabBegin()) {
        const auto rowBytes = static_cast<long>(PixelDepth::RowBytes(target.width(), target.depth()));
        surface.grabPixels(pixels, target.width(), target.height(), target.depth(), rowBytes, true, true);
        target.grabEnd(const_cast<void*>(pixels));
    }
}

// Tightly packed rows of red, green, blue, alpha to alpha, red, green, blue.
void PutAlphaFirst(std::vector<unsigned char>& pixels, std::size_t channelBytes) {
    unsigned char alpha[4];
    for (std::size_t at = 0; at + 4 * channelBytes <= pixels.size(); at += 4 * channelBytes) {
        unsigned char* const pixel = &pixels[at];
        std::memcpy(alpha, pixel + 3 * channelBytes, channelBytes);
        std::memmove(pixel + channelBytes, pixel, 3 * channelBytes);
        std::memcpy(pixel, alpha, channelBytes);
    }
}

// The surface gets a copy: the texture may be released or filled anew while the script holds the surface.
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
    std::vector<unsigned char> reordered = kept; // a decoded image, whose rows are tightly packed
    PutAlphaFirst(reordered, PixelDepth::BytesPerChannel(texture.depth()));
    grab(reordered.data());
}

ScriptResult TextureToSurface(ScriptCall& call) {
    const std::uint32_t handle = call.Handle(0);
    if (handle == 0)
        return ScriptResult::Number(0);
    Context& context = Context::Current();
    const unsigned created =
        context.InitResource<Surface>(s_PlaceholderSize, s_PlaceholderSize, s_PlaceholderDepth);
    Surface& surface = context.GetResource<Surface>(created);
    if ((handle & Context::TagMask) != RenderTarget::Tag)
        FillFromTexture(surface, ResolveTexture(handle));
    else if (RenderTarget& target = context.GetResource<RenderTarget>(handle); target.usable())
        FillFromTarget(surface, target);
    return ScriptResult::Number(created);
}

ScriptResult SurfaceToTexture(ScriptCall& call) {
    const std::uint32_t handle = call.Handle(0);
    if ((handle & Context::TagMask) != Surface::Tag)
        return ScriptResult::Bool(false);
    Context& context = Context::Current();
    const unsigned created =
        context.InitResource<Texture>(s_PlaceholderSize, s_PlaceholderSize, s_PlaceholderDepth);
    const Surface& surface = context.GetResource<Surface>(handle);
    if (Texture& texture = context.GetResource<Texture>(created); texture.id() != 0)
        texture.grabPixels(surface.pixels(), surface.width(), surface.height(), surface.depth(),
                           static_cast<long>(surface.stride()), true, false);
    return ScriptResult::Number(created);
}

// The numbers of a script's modes start one higher than the dithering modes.
ImageLib::DitheringMode ModeOf(int scriptMode) {
    return static_cast<ImageLib::DitheringMode>(static_cast<std::int64_t>(scriptMode) - 1);
}

ScriptResult SurfaceQuantize(ScriptCall& call) {
    const std::uint32_t handle = call.Handle(0); // the flag, argument 1, has no meaning
    const auto selector = static_cast<unsigned>(call.Int(2));
    const int scriptMode = call.Int(3);
    const float threshold = call.Float(4);
    const bool serpentine = call.Bool(5);
    Surface* const surface = FilledSurface(handle);
    if (!surface)
        return ScriptResult::Bool(false);
    if (!ImageLib::IsConvertibleDepth(surface->depth()))
        return ScriptResult::Bool(true);
    const std::size_t bytes = surface->height() * surface->stride();
    ImageLib::Surface<ImageLib::Pixel32> pixels;
    if (!ImageLib::LoadSurface(surface->pixels(), bytes, surface->width(), surface->height(),
                               surface->depth(), surface->stride(), pixels))
        return ScriptResult::Bool(false);
    ImageLib::Quantize(pixels, selector, ModeOf(scriptMode), threshold, serpentine);
    return ScriptResult::Bool(
        ImageLib::StoreSurface(pixels, surface->pixels(), bytes, surface->depth(), surface->stride()));
}

ScriptResult SurfaceCopyTo(ScriptCall& call) {
    const std::uint32_t handle = call.Handle(0);
    const std::uint32_t targetHandle = call.Handle(1);
    const bool flip = call.Bool(2);
    const Surface* const surface = FilledSurface(handle);
    const std::uint32_t tag = targetHandle & Context::TagMask;
    if (!surface || (tag != Texture::Tag && tag != RenderTarget::Tag))
        return ScriptResult::Bool(false);
    Texture& target = ResolveTexture(targetHandle);
    if (target.id() == 0 || (tag == RenderTarget::Tag && !static_cast<RenderTarget&>(target).usable()))
        return ScriptResult::Bool(false);
    target.grabSurface(*surface, flip);
    return ScriptResult::Bool(true);
}

constexpr NativeFunction s_Functions[] = {
    {"SV_initSurface", Trampoline<InitSurface>, DUK_VARARGS},
    {"SV_textureToSurface", Trampoline<TextureToSurface>, 1},
    {"SV_surfaceToTexture", Trampoline<SurfaceToTexture>, 1},
    {"SV_surfaceQuantize", Trampoline<SurfaceQuantize>, 6},
    {"SV_surfaceCopyTo", Trampoline<SurfaceCopyTo>, 3},
};

} // namespace

std::span<const NativeFunction> SurfaceBindings() {
    return s_Functions;
}
