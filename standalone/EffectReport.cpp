#include "standalone/EffectReport.h"

#include <algorithm>

#include "gpu/ShaderPitcher.h"
#include "standalone/diagnostics/ShaderErrors.h"
#include "standalone/effects/ScriptScan.h"

namespace fxhost {

namespace {

int CountLines(const std::string& text) {
    return static_cast<int>(std::count(text.begin(), text.end(), '\n')) + (text.ends_with('\n') ? 0 : 1);
}

ShaderOrigin OriginOf(const std::string& name, const EffectSource& source) {
    const std::string file = name + ".frag";
    if (const auto text = source.ReadText(file))
        return {source.Shown(file), false, CountLines(*text),
                static_cast<int>(ShaderPitcher::AddedLines(*text))};
    // A shader whose text the script holds has no file; nothing tells the two apart once the file is missing.
    const auto script = source.ReadText("fx.js").value_or("");
    const auto references = FindFileReferences(script);
    const bool asked = std::any_of(references.begin(), references.end(),
                                   [&](const FileReference& reference) { return reference.file == file; });
    const auto missing = EffectSource::MissingFiles();
    const bool looked = std::find(missing.begin(), missing.end(), file) != missing.end();
    if (asked || looked)
        return {source.Shown(file), true, 0, 0};
    return {source.Shown("fx.js") + " (text of shader \"" + name + "\")", false, 0, 0};
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
            found.push_back({source.Shown("fx.js"),
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

} // namespace fxhost
