#pragma once

#include <optional>

#include "drivers/HostDriver.h"
#include "tool/Session.h"

namespace fxhost {

// One effect in the tool's host. The errors of an effect that runs in the tool's own plug-in go to standard
// error as they come; a bundle keeps its own to itself, as it ships.
class HostSession {
public:
    // Throws WrongUse or EffectFailure when there is nothing to run.
    HostSession(const HostSettings& settings, const std::string& effect);

    HostDriver& driver() { return *m_Driver; }
    // Prints what the script did wrong since the last call.
    void reportScript();
    // Prints all that is left to say of the effect, ends the plug-in and prints what it did against the
    // host's rules. Once, at the end. Gives the exit status.
    int finish();

private:
    std::optional<EffectReporter> m_Reporter;
    std::optional<HostDriver> m_Driver;
};

} // namespace fxhost
