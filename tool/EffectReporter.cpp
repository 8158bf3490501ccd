#include "tool/EffectReporter.h"

#include <algorithm>

#include "drivers/EffectDiagnostics.h"
#include "engine/IPlugin.h"
#include "guard/Stage.h"
#include "toolkit/Messages.h"

namespace fxhost {

namespace {

// Clips count frames; single pictures do not.
std::string FrameText() {
    const long frame = ReportedFrame();
    return frame < 0 ? "" : " (frame " + std::to_string(frame) + ")";
}

} // namespace

EffectReporter::EffectReporter(const std::string& effect, const ReportOptions& options)
    : m_Options(options), m_Source(EffectSource::Open(effect)), m_ScriptErrors(m_Source) {}

void EffectReporter::reportScript() {
    print(m_ScriptErrors.take());
    m_CountedErrors = m_ScriptErrors.count();
}

bool EffectReporter::reportFrame() {
    const bool hasNewErrors = m_ScriptErrors.count() != m_CountedErrors;
    reportScript();
    return hasNewErrors || m_ScriptErrors.hasSetupFailed() || !GetPlugin()->getErrorText().empty();
}

bool EffectReporter::hasErrors() const {
    return m_HasErrors || m_ScriptErrors.count() != m_CountedErrors || !GetPlugin()->getErrorText().empty();
}

void EffectReporter::reportAll() {
    reportScript();
    print(ShaderFindings(GetPlugin()->getErrorText(), m_Source));
    print(MissingFileFindings(m_Source));
}

void EffectReporter::print(const std::vector<Diagnostic>& diagnostics) {
    for (const Diagnostic& diagnostic : diagnostics) {
        if (std::find(m_Printed.begin(), m_Printed.end(), diagnostic) != m_Printed.end())
            continue;
        m_Printed.push_back(diagnostic);
        const bool isError = diagnostic.severity == Severity::Error;
        m_HasErrors |= isError;
        m_Failed |= isError || m_Options.strict;
        if (isError || !m_Options.quiet)
            PrintMessage(isError ? MessageKind::Error : MessageKind::Warning,
                         ToText(diagnostic) + FrameText(), ReportedFrame(), false);
    }
}

} // namespace fxhost
