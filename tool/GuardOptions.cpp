#include "tool/GuardOptions.h"

namespace fxhost {

void AddGuardOptions(CLI::App& command, GuardLimits& limits) {
    command
        .add_option("--frame-timeout", limits.frameSeconds,
                    "Time limit for setup() and for each frame; 0 for none")
        ->check(CLI::NonNegativeNumber)
        ->capture_default_str()
        ->type_name("SECONDS")
        ->group("Limits");
    command
        .add_option("--memory-limit", limits.memoryBytes,
                    "Memory limit, such as 800M or 4G; three quarters of the machine's memory by default")
        ->transform(CLI::AsSizeValue(false))
        ->type_name("SIZE")
        ->group("Limits");
    command
        .add_flag_callback(
            "--no-fork", [&] { limits.fork = false; },
            "Run the effect in the tool's own process, for debuggers and sanitizers; a crash is not reported")
        ->group("Limits");
}

} // namespace fxhost
