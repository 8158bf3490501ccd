#include "check/HangDiagnosis.h"

#include <regex>

#include "check/CallRecorder.h"
#include "check/LoopGuard.h"
#include "check/PictureChecks.h"
#include "drivers/EngineDriver.h"
#include "drivers/ScriptErrorCollector.h"
#include "packaging/EffectSource.h"
#include "packaging/ScriptScan.h"
#include "toolkit/TextParsing.h"

namespace fxhost {

namespace {

constexpr double s_LoopSeconds = 0.5;
constexpr char s_LoopError[] = "this loop does not end";

int LineOfFirstLoop(const std::string& shader) {
    static const std::regex loop(R"(\b(for|while|do)\b)");
    const std::string code = WithoutComments(shader);
    std::smatch found;
    return std::regex_search(code, found, loop) ? LineAt(code, static_cast<std::size_t>(found.position()))
                                                : 0;
}

Diagnostic EndlessPass(const EffectSource& source, const std::string& shader) {
    const std::string file = shader + ".frag";
    const std::string advice =
        "the pass of this shader does not end; give its loops a constant number of steps";
    if (source.Has(file)) {
        const int line = LineOfFirstLoop(source.ReadText(file).value_or(""));
        return {source.DisplayPath(file), line, Severity::Error, advice, {}};
    }
    const int line = LineOfInlineShader(source.ReadText("fx.js").value_or(""), shader);
    return {source.DisplayPath("fx.js"), line, Severity::Error, "shader \"" + shader + "\": " + advice, {}};
}

} // namespace

void DiagnoseHang(const std::string& effect, const std::function<void(const Diagnostic&)>& report,
                  const std::function<void(const std::optional<Diagnostic>&)>& suspect) {
    const EffectSource source = EffectSource::Open(effect);
    ScriptErrorCollector errors(source);
    const ScriptMessageListener listener([&](const ScriptMessage& message) {
        if (message.text.starts_with(PassBegins))
            suspect(EndlessPass(source, message.text.substr(1)));
        else if (message.text.starts_with(PassEnds))
            suspect(std::nullopt);
    });
    const auto reportLoops = [&] {
        for (const Diagnostic& error : errors.take())
            if (error.text.find(s_LoopError) != std::string::npos)
                report(error);
    };
    EngineDriver driver(
        source, [](const std::string& script) { return TracePasses(LimitLoops(script, s_LoopSeconds)); });
    reportLoops();
    driver.updateUI();
    FrameInputs inputs;
    inputs.input = MakeTestScene(1024, 1024, 8); // large, because some drivers end loops after many steps
    driver.render(inputs);
    reportLoops();
}

} // namespace fxhost
