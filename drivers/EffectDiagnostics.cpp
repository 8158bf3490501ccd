#include "drivers/EffectDiagnostics.h"

#include <algorithm>

#include "context/Context.h"
#include "gpu/ShaderPitcher.h"
#include "packaging/ScriptScan.h"
#include "packaging/ShaderDiagnostics.h"
#include "utils/Utils.h"

namespace fxhost {

namespace {

int CountLines(const std::string& text) {
    return static_cast<int>(std::count(text.begin(), text.end(), '\n')) + (text.ends_with('\n') ? 0 : 1);
}

// The source text of a shader that the script created from a string.
std::string InlineText(const std::string& name) {
    for (const Shader* shader : Context::Current().LiveEntities<Shader>())
        if (shader->filePath().empty() && Utils::ToNarrow(shader->name()) == name)
            return shader->source();
    return "";
}

// The engine names shaders "/file.frag", or by their bare name when the script contains the source text.
ShaderOrigin OriginOf(const std::string& name, const EffectSource& source) {
    const auto describe = [](const std::string& file, const std::string& text) {
        ShaderOrigin origin;
        origin.file = file;
        origin.lines = CountLines(text);
        origin.linesInFront = static_cast<int>(ShaderPitcher::addedLines(text));
        origin.source = text;
        return origin;
    };
    if (!name.starts_with('/')) {
        ShaderOrigin origin = describe(source.DisplayPath("fx.js"), InlineText(name));
        origin.inScript = true;
        origin.scriptLine = LineOfInlineShader(source.ReadText("fx.js").value_or(""), name);
        return origin;
    }
    if (const auto text = source.ReadText(name))
        return describe(source.DisplayPath(name), *text);
    ShaderOrigin origin;
    origin.file = source.DisplayPath(name);
    origin.missing = true;
    return origin;
}

} // namespace

std::vector<Diagnostic> ShaderFindings(const std::string& errorText, const EffectSource& source) {
    return ShaderDiagnostics(errorText, [&](const std::string& name) { return OriginOf(name, source); });
}

std::vector<Diagnostic> MissingFileFindings(const EffectSource& source) {
    std::vector<Diagnostic> found;
    const auto add = [&](const std::string& file, int line) {
        const bool known = std::any_of(found.begin(), found.end(), [&](const Diagnostic& other) {
            return other.text.ends_with("\"" + file + "\"");
        });
        if (!known && !file.ends_with(".frag"))
            found.push_back({source.DisplayPath("fx.js"),
                             line,
                             Severity::Error,
                             "the effect has no file \"" + file + "\"",
                             {}});
    };
    for (const auto& reference : FindFileReferences(source.ReadText("fx.js").value_or("")))
        if (!source.Has(reference.file))
            add(reference.file, reference.line);
    for (const auto& file : EffectSource::MissingFiles())
        add(file, 0);
    return found;
}

std::string FrameProblem() {
    Context& context = Context::Current();
    const Sequence* const sequence = context.CurrentSequence();
    if (!sequence)
        return {};
    const auto* const target = context.Find<RenderTarget>(sequence->RenderTargetHandle());
    if (target && !target->errorText().empty())
        return "the frame cannot be rendered: " + target->errorText();
    const auto* const input = context.Find<Texture>(sequence->InputTextureHandle());
    if (input && !input->errorText().empty())
        return "the input layer cannot be used: " + input->errorText();
    return {};
}

} // namespace fxhost
