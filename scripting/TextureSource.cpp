#include "scripting/TextureSource.h"

#include "context/Context.h"
#include "scripting/Scripting.h"

namespace {

constexpr std::uint32_t s_UnusedTag = 0x05000000u; // samplers accept it like the tag of a texture

} // namespace

Texture* ResolveTexture(std::uint32_t handle) {
    Context& context = Context::Current();
    const std::uint32_t tag = handle & Context::TagMask;
    if (tag == Parameter::Tag)
        return context.Find<Texture>(context.GetResource<Parameter>(handle).texture);
    if (tag == RenderTarget::Tag)
        return context.Find<RenderTarget>(handle);
    return context.Find<Texture>(handle);
}

std::uint32_t TextureNameOf(std::uint32_t handle) {
    const std::uint32_t tag = handle & Context::TagMask;
    const bool isTextureTag =
        tag == Parameter::Tag || tag == RenderTarget::Tag || tag == Texture::Tag || tag == s_UnusedTag;
    const Texture* const texture = isTextureTag ? ResolveTexture(handle) : nullptr;
    return texture ? texture->id() : 0;
}

void ReportProblem(const char* function, const Texture& texture) {
    if (!texture.errorText().empty())
        Scripting::Instance().Report(std::string(function) + ": " + texture.errorText());
}
