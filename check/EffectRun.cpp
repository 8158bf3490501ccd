#include "check/EffectRun.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include "check/PictureChecks.h"
#include "check/RenderInspection.h"
#include "check/ScriptChecks.h"
#include "drivers/EffectDiagnostics.h"
#include "guard/Stage.h"
#include "parameters/ParameterTraits.h"
#include "toolkit/ParameterValues.h"

namespace fxhost {

namespace {

using Control = ParameterTraits::Control;

constexpr std::size_t s_MostPrinted = 100; // texts
constexpr unsigned s_RecordedCalls = 1500;

void SetFloats(Parameter::Value& value, std::initializer_list<double> numbers) {
    unsigned index = 0;
    for (const double number : numbers)
        value.SetFloat(index++, static_cast<float>(number));
}

// The value that a host passes for a parameter that the user has not changed; points are in the middle.
Parameter::Value HostValue(const Parameter& parameter, const CheckFrame& frame) {
    Parameter::Value value = parameter.value;
    const bool scales = parameter.flags & (Parameter::ScaleByWidth | Parameter::ScaleByHeight);
    const double point = parameter.flags & Parameter::RemoveScale ? 1 / frame.reduction : 1;
    switch (TraitsOf(parameter.type).control) {
    case Control::Slider:
        SetFloats(value, {static_cast<double>(value.Float(0)) * (scales ? frame.reduction : 1)});
        break;
    case Control::Point2D:
    case Control::Point3D:
        SetFloats(value, {frame.width / 2.0 * point, frame.height / 2.0 * point});
        break;
    case Control::Color: {
        const auto colour = HostDefault(parameter);
        SetFloats(value, {colour[0], colour[1], colour[2], colour[3]});
        break;
    }
    default:
        break;
    }
    return value;
}

} // namespace

EffectRun::EffectRun(const std::string& effect, Listener listener)
    : m_Listener(std::move(listener)), m_Source(EffectSource::Open(effect)),
      m_Script(m_Source.ReadText("fx.js").value_or("")), m_ScriptErrors(m_Source),
      m_CallChecks(m_Source.DisplayPath("fx.js"), MayGrow(m_Source)),
      m_Recorder([this](const ScriptCall& call) { m_CallChecks.onCall(call); },
                 [this](const ScriptMessage& message) { print(message); }),
      m_Uniforms(m_Source) {
    const auto found = CheckScript(m_Source.DisplayPath("fx.js"), m_Script);
    for (const Diagnostic& diagnostic : found)
        m_CallChecks.ignoreLine(diagnostic.line);
    report(found);
    m_Driver.emplace(m_Source,
                     [](const std::string& script) { return RecordCalls(script, s_RecordedCalls); });
    m_Driver->onStage([this](Stage stage) { m_CallChecks.enter(stage); });
    m_Parameters = m_Driver->parameters();
    m_FrameNumber = 0;
    reportScript();
}

FrameInputs EffectRun::inputs(const CheckFrame& frame, const std::vector<ParameterSetting>& settings) const {
    FrameInputs inputs;
    inputs.input = MakeTestScene(frame.width, frame.height, frame.depth);
    if (frame.isMarked)
        Mark(inputs.input);
    inputs.time = frame.time;
    for (unsigned i = 0; i < m_Parameters.size(); ++i) {
        if (TraitsOf(m_Parameters[i].type).content != ParameterTraits::Content::None &&
            !TraitsOf(m_Parameters[i].type).isTexture())
            inputs.settings.push_back({i, HostValue(m_Parameters[i], frame)});
        if (frame.withLayers && m_Parameters[i].type == Parameter::LAYER)
            inputs.layers.push_back({i, MakeTestScene(frame.width, frame.height, frame.depth)});
    }
    inputs.settings.insert(inputs.settings.end(), settings.begin(), settings.end());
    return inputs;
}

Picture EffectRun::render(const CheckFrame& frame, const std::vector<ParameterSetting>& settings) {
    ReportFrame(m_FrameNumber);
    m_CallChecks.beginFrame(frame.width, frame.height, frame.reduction < 1);
    m_CallChecks.enter(Stage::UpdateUI);
    m_Driver->updateUI();
    if (frame.findsUnsetUniforms)
        m_Driver->whileLocked([&] { m_Uniforms.beforeFrame(); });
    Picture picture = m_Driver->render(inputs(frame, settings));
    if (frame.findsUnsetUniforms)
        m_Driver->whileLocked([&] { m_Uniforms.afterFrame(); });
    m_Calls = m_CallChecks.endFrame();
    ++m_FrameNumber;
    reportScript();
    return picture;
}

Picture EffectRun::renderAfterPreparing(const CheckFrame& frame, const CheckFrame& other) {
    ReportFrame(m_FrameNumber);
    m_CallChecks.beginFrame(frame.width, frame.height, true); // sizes of the other frame are no mistakes here
    Picture picture = m_Driver->renderAfterPreparing(inputs(frame, {}), inputs(other, {}));
    m_CallChecks.endFrame();
    ++m_FrameNumber;
    reportScript();
    return picture;
}

// The same text is printed once, because a check renders many frames.
void EffectRun::print(const ScriptMessage& message) {
    const std::string text = m_Source.DisplayPath("fx.js") + ":" + std::to_string(message.line) + ": print";
    const std::string frame = m_FrameNumber >= 0 ? " (frame " + std::to_string(m_FrameNumber) + ")" : "";
    if (m_Printed.size() < s_MostPrinted && m_Printed.insert(text + message.text).second)
        std::fprintf(stderr, "%s%s: %s\n", text.c_str(), frame.c_str(), message.text.c_str());
}

void EffectRun::reportScript() {
    report(m_ScriptErrors.take());
    report(m_CallChecks.take());
}

void EffectRun::reportFiles() {
    report(ShaderFindings(m_Driver->shaderErrors(), m_Source));
    report(MissingFileFindings(m_Source));
}

void EffectRun::reportUniforms() {
    m_Driver->whileLocked([&] { report(m_Uniforms.findings(m_Parameters)); });
}

void EffectRun::warnScript(int line, const std::string& text) {
    report({{m_Source.DisplayPath("fx.js"), line, Severity::Warning, text, {}}});
}

void EffectRun::report(const std::vector<Diagnostic>& diagnostics) {
    for (const Diagnostic& diagnostic : diagnostics) {
        if (std::find(m_Reported.begin(), m_Reported.end(), diagnostic) != m_Reported.end())
            continue;
        m_Reported.push_back(diagnostic);
        m_Failed |= diagnostic.severity == Severity::Error;
        m_Listener(diagnostic);
    }
}

} // namespace fxhost
