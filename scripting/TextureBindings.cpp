#include "scripting/Bindings.h"

namespace {

ScriptResult InitTexture(const std::string& file, const std::string&) {
    const unsigned created = Context::Current().InitResource<Texture>(file);
    const Texture& texture = Context::Current().GetResource<Texture>(created);
    if (!texture.fileName().empty()) // tools find missing files without the script
        ReportProblem("SV_initTexture", texture);
    return ScriptResult::Number(created);
}

ScriptResult SetTextureParam(Texture& texture, std::int32_t name, std::int32_t value) {
    texture.setParameter(static_cast<unsigned>(name), static_cast<unsigned>(value));
    return ScriptResult::Bool(true);
}

constexpr NativeFunction s_Functions[] = {
    Native<InitTexture, Refusal::Zero, Arg::Passed<Arg::Text>, Arg::Optional<Arg::Text>>("SV_initTexture"),
    Native<SetTextureParam, Refusal::False, Arg::TextureSource, Arg::Int, Arg::Given<Arg::Int>>(
        "SV_setTextureParam"),
};

} // namespace

std::span<const NativeFunction> TextureBindings() {
    return s_Functions;
}
