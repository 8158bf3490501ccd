#include "tool/HostSession.h"

#include <cstdio>

#include "toolkit/Errors.h"

namespace fxhost {

HostSession::HostSession(const HostSettings& settings, const std::string& effect) {
    if (settings.bundle.empty())
        m_Reporter.emplace(effect);
    m_Driver.emplace(settings, m_Reporter ? &m_Reporter->source() : nullptr);
    if (m_Reporter)
        m_Reporter->reportScript();
}

bool HostSession::reportFrame() {
    return m_Reporter && m_Reporter->reportFrame();
}

int HostSession::finish() {
    if (m_Reporter)
        m_Reporter->reportAll();
    const auto& violations = m_Driver->finish();
    for (const std::string& violation : violations)
        std::fprintf(stderr, "host: %s\n", violation.c_str());
    if (!violations.empty())
        return ExitHostRules;
    return m_Reporter && m_Reporter->failed() ? ExitEffectFailed : ExitOk;
}

} // namespace fxhost
