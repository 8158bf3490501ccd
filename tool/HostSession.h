#pragma once

#include <optional>

#include "drivers/HostDriver.h"
#include "tool/EffectReporter.h"

namespace fxhost {

// One effect in the emulated host. Errors of an effect folder or package are printed to standard error when
// they occur. A bundle contains the module that is shipped, which does not report errors.
class HostSession {
public:
    // Throws WrongUse or EffectFailure when there is nothing to run.
    HostSession(const HostSettings& settings, const std::string& effect);

    HostDriver& driver() { return *m_Driver; }
    // Prints the script errors of a frame. Returns true when the frame is wrong because of an error. Errors
    // in a bundle are not known.
    bool reportFrame();
    // Prints the remaining errors, shuts down the plug-in and prints its violations of the protocol. Returns
    // the exit status. Call it once, after the last frame.
    int finish();

private:
    std::optional<EffectReporter> m_Reporter;
    std::optional<HostDriver> m_Driver;
};

} // namespace fxhost
