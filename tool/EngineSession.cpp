#include "tool/EngineSession.h"

namespace fxhost {

EngineSession::EngineSession(const std::string& effect) : EffectReporter(effect), m_Driver(source()) {
    reportScript();
}

} // namespace fxhost
