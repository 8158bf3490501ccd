#include "context/Context.h"
#include "scripting/Bindings.h"
#include "scripting/TextureSource.h"

namespace {

ScriptResult InitTexture(ScriptCall& call) {
    if (call.Count() < 1)
        return ScriptResult::Number(0);
    const char* const file = call.Text(0);
    if (call.Count() > 1)
        call.Text(1); // converted, not used
    return ScriptResult::Number(Context::Current().InitResource<Texture>(file));
}

ScriptResult SetTextureParam(ScriptCall& call) {
    if (!call.IsGiven(2))
        return ScriptResult::Bool(false);
    const std::uint32_t handle = call.Handle(0);
    const auto name = static_cast<unsigned>(call.Int(1));
    const auto value = static_cast<unsigned>(call.Int(2));
    Texture& texture = ResolveTexture(handle);
    if (texture.id() == 0)
        return ScriptResult::Bool(false);
    texture.setParameter(name, value);
    return ScriptResult::Bool(true);
}

constexpr NativeFunction s_Functions[] = {
    {"SV_initTexture", Trampoline<InitTexture>, DUK_VARARGS},
    {"SV_setTextureParam", Trampoline<SetTextureParam>, 3},
};

} // namespace

std::span<const NativeFunction> TextureBindings() {
    return s_Functions;
}
