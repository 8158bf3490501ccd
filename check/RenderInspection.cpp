#include "check/RenderInspection.h"

#include <iterator>
#include <regex>
#include <utility>

#include "check/PictureChecks.h"
#include "check/ScriptChecks.h"
#include "packaging/ScriptScan.h"

namespace fxhost {

namespace {

constexpr unsigned s_RecordedCalls = 2000;
constexpr unsigned long s_GrowFlag = 0x200; // in FLAGS of config.xml

} // namespace

bool MayGrow(const EffectSource& source) {
    static const std::regex s_Flags(R"(<FLAGS>\s*(\d{1,18}))");
    const std::string config = source.ReadText("config.xml").value_or("");
    std::smatch match;
    return std::regex_search(config, match, s_Flags) && (std::stoul(match[1]) & s_GrowFlag);
}

RenderInspection::RenderInspection(const EffectSource& source, ScriptMessageListener::Handler onPrint)
    : m_Source(source), m_Script(source.ReadText("fx.js").value_or("")),
      m_Calls(source.DisplayPath("fx.js"), MayGrow(source)),
      m_Recorder([this](const ScriptCall& call) { m_Calls.onCall(call); }, std::move(onPrint)),
      m_Found(CheckScript(source.DisplayPath("fx.js"), m_Script)) {
    for (const Diagnostic& found : m_Found)
        m_Calls.ignoreLine(found.line);
}

std::string RenderInspection::Transform(const std::string& script) {
    return RecordCalls(script, s_RecordedCalls);
}

void RenderInspection::beginFrame(const Picture& input) {
    m_Calls.beginFrame(input.width, input.height, true);
}

void RenderInspection::endFrame(const Picture& input, const Picture& result) {
    const FrameCalls calls = m_Calls.endFrame();
    if (!std::exchange(m_IsFirstFrame, false))
        return;
    const int line = LineOfWord(m_Script, "function draw");
    const auto warn = [&](const std::string& text) {
        m_Found.push_back({m_Source.DisplayPath("fx.js"), line, Severity::Warning, text, {}});
    };
    if (!calls.reachesFrame)
        warn("draw() draws nothing into SV_getSequenceRT(), so the frame stays transparent");
    else if (IsTransparent(result) && !IsTransparent(input))
        warn("the frame is fully transparent, although the layer is not");
}

std::vector<Diagnostic> RenderInspection::take() {
    auto found = std::exchange(m_Found, {});
    auto calls = m_Calls.take();
    found.insert(found.end(), std::make_move_iterator(calls.begin()), std::make_move_iterator(calls.end()));
    return found;
}

} // namespace fxhost
