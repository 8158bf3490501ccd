#include "standalone/cli/Session.h"

#include <cstdio>

#include "standalone/EffectReport.h"

namespace fxhost {

EffectSession::EffectSession(const std::string& effect)
    : m_Source(EffectSource::Open(effect)), m_Watch(m_Source), m_Driver(m_Source) {
    reportScript();
}

void EffectSession::reportScript() {
    print(m_Watch.take());
}

void EffectSession::reportAll() {
    reportScript();
    print(ShaderFindings(m_Driver.shaderErrors(), m_Source));
    print(MissingFileFindings(m_Source));
}

void EffectSession::print(const std::vector<Diagnostic>& findings) {
    for (const Diagnostic& finding : findings) {
        std::fprintf(stderr, "%s\n", ToText(finding).c_str());
        m_Failed |= finding.severity == Severity::Error;
    }
}

} // namespace fxhost
