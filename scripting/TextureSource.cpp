#include "scripting/TextureSource.h"

#include "context/Context.h"

namespace {

constexpr std::uint32_t s_UnusedTag = 0x05000000u; // accepted for samplers as a texture's

} // namespace

Texture& ResolveTexture(std::uint32_t handle) {
    Context& context = Context::Current();
    const std::uint32_t tag = handle & Context::TagMask;
    if (tag == Parameter::Tag)
        return context.GetResource<Texture>(context.GetResource<Parameter>(handle).texture);
    if (tag == RenderTarget::Tag)
        return context.GetResource<RenderTarget>(handle);
    return context.GetResource<Texture>(handle);
}

std::uint32_t TextureNameOf(std::uint32_t handle) {
    const std::uint32_t tag = handle & Context::TagMask;
    const bool known =
        tag == Parameter::Tag || tag == RenderTarget::Tag || tag == Texture::Tag || tag == s_UnusedTag;
    return known ? ResolveTexture(handle).id() : 0;
}
