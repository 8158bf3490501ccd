#pragma once

#include "drivers/EngineDriver.h"
#include "tool/EffectReporter.h"

namespace fxhost {

// An effect that the engine runs directly, without an emulated host.
class EngineSession : public EffectReporter {
public:
    // Sets up the engine and prints the script errors of setup(). Throws WrongUse or EffectFailure.
    explicit EngineSession(const std::string& effect);
    EngineDriver& driver() { return m_Driver; }

private:
    EngineDriver m_Driver;
};

} // namespace fxhost
