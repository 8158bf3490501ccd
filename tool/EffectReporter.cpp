#include "tool/EffectReporter.h"

#include <cstdio>

#include "drivers/EffectDiagnostics.h"
#include "engine/IPlugin.h"

namespace fxhost {

EffectReporter::EffectReporter(const std::string& effect)
    : m_Source(EffectSource::Open(effect)), m_ScriptErrors(m_Source) {}

void EffectReporter::reportScript() {
    print(m_ScriptErrors.take());
    m_CountedErrors = m_ScriptErrors.count();
}

bool EffectReporter::reportFrame() {
    const bool hasNewErrors = m_ScriptErrors.count() != m_CountedErrors;
    reportScript();
    return hasNewErrors || m_ScriptErrors.hasSetupFailed() || !GetPlugin()->getErrorText().empty();
}

void EffectReporter::reportAll() {
    reportScript();
    print(ShaderFindings(GetPlugin()->getErrorText(), m_Source));
    print(MissingFileFindings(m_Source));
}

void EffectReporter::print(const std::vector<Diagnostic>& findings) {
    for (const Diagnostic& finding : findings) {
        std::fprintf(stderr, "%s\n", ToText(finding).c_str());
        m_Failed |= finding.severity == Severity::Error;
    }
}

} // namespace fxhost
