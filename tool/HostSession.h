#pragma once

#include <optional>

#include "check/RenderInspection.h"
#include "drivers/HostDriver.h"
#include "tool/EffectReporter.h"

namespace fxhost {

// One effect in the emulated host. Errors, warnings and printed text of an effect folder or package go to
// standard error when they occur. A bundle contains the module that is shipped, which does not report errors;
// they are found at the end by running the package of the bundle once more.
class HostSession final : public FrameRenderer {
public:
    // Throws WrongUse or EffectFailure when there is nothing to run.
    HostSession(const HostSettings& settings, const std::string& effect, const ReportOptions& options = {});

    std::vector<Parameter> parameters() override { return m_Driver->parameters(); }
    Picture render(const FrameInputs& inputs) override;
    // Prints the script errors and warnings of a frame. Returns true when the frame is wrong because of an
    // error. Errors in a bundle are not known yet.
    bool reportFrame();
    // Prints the remaining errors and warnings, shuts down the plug-in and prints its violations of the
    // protocol. Returns the exit status. Call it once, after the last frame.
    int finish();

private:
    bool inspectBundle();

    const std::string m_Bundle; // empty for a folder or a package
    std::optional<EffectReporter> m_Reporter;
    std::optional<RenderInspection> m_Inspection;
    std::optional<HostDriver> m_Driver;
    bool m_PassesThrough = false; // frames come without instance data, so the script does not draw them
};

} // namespace fxhost
