#include "tool/HostSession.h"

#include "guard/Stage.h"
#include "tool/EngineSession.h"
#include "toolkit/Errors.h"
#include "toolkit/Messages.h"

namespace fxhost {

namespace {

// "FILE:LINE: print: text", with the number of the frame when frames are counted.
ScriptMessageListener::Handler PrintTo(const EffectSource& source, const ReportOptions& options) {
    if (options.quiet)
        return [](const ScriptMessage&) {};
    return [file = source.DisplayPath("fx.js")](const ScriptMessage& message) {
        const long frame = ReportedFrame();
        const std::string number = frame >= 0 ? " (frame " + std::to_string(frame) + ")" : "";
        PrintMessage(MessageKind::Print,
                     file + ":" + std::to_string(message.line) + ": print" + number + ": " + message.text,
                     frame, false);
    };
}

} // namespace

HostSession::HostSession(const HostSettings& settings, const std::string& effect,
                         const ReportOptions& options)
    : m_Bundle(settings.bundle) {
    if (!m_Bundle.empty()) {
        m_Driver.emplace(settings, nullptr);
        return;
    }
    m_Reporter.emplace(effect, options);
    m_Inspection.emplace(m_Reporter->source(), PrintTo(m_Reporter->source(), options));
    m_Driver.emplace(settings, &m_Reporter->source(), RenderInspection::Transform);
    reportFrame();
    m_PassesThrough = m_Driver->withholdsData();
    if (m_PassesThrough)
        m_Reporter->print({{m_Reporter->source().DisplayPath("config.xml"),
                            0,
                            Severity::Warning,
                            "FLAGS2 asks for threaded rendering, so this host sends frames without instance "
                            "data, and the layer passes through unchanged",
                            {}}});
}

Picture HostSession::render(const FrameInputs& inputs) {
    if (!m_Inspection || m_PassesThrough)
        return m_Driver->render(inputs);
    m_Inspection->beginFrame(inputs.input);
    Picture picture = m_Driver->render(inputs);
    if (!m_Reporter->hasErrors())
        m_Inspection->endFrame(inputs.input, picture);
    return picture;
}

// Runs the package of the bundle in the tool's own engine. Returns true when it has errors, whose text is
// also what the bundle shows instead of a picture.
bool HostSession::inspectBundle() {
    m_Driver.reset();
    EngineSession session(m_Bundle);
    FrameInputs inputs;
    inputs.input = Picture(64, 64, 8);
    session.driver().updateUI();
    session.driver().render(inputs);
    session.reportAll();
    return session.failed();
}

bool HostSession::reportFrame() {
    if (!m_Reporter)
        return false;
    const bool isWrong = m_Reporter->reportFrame();
    m_Reporter->print(m_Inspection->take());
    return isWrong;
}

int HostSession::finish() {
    if (m_Reporter) {
        m_Reporter->print(m_Inspection->take());
        m_Reporter->reportAll();
        if (!m_PassesThrough && !m_Reporter->hasErrors())
            m_Reporter->print(m_Inspection->unsetUniforms());
    }
    const auto violations = m_Driver->finish();
    for (const std::string& violation : violations)
        PrintMessage(MessageKind::Error, "host: " + violation, -1, false);
    if (!violations.empty())
        return ExitHostRules;
    const bool failed = m_Reporter ? m_Reporter->failed() : inspectBundle();
    return failed ? ExitEffectFailed : ExitOk;
}

} // namespace fxhost
