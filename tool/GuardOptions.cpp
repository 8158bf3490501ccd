#include "tool/GuardOptions.h"

namespace fxhost {

void AddGuardOptions(CLI::App& command, GuardLimits& limits) {
    command
        .add_option("--frame-timeout", limits.frameSeconds,
                    "Seconds that the script's setup and each frame may take; 0 for no limit")
        ->check(CLI::NonNegativeNumber)
        ->capture_default_str()
        ->type_name("SECONDS")
        ->group("Limits");
    command
        .add_option("--memory-limit", limits.memoryBytes,
                    "Memory that the work may take, such as 800M or 4G; three quarters of the machine's "
                    "otherwise")
        ->transform(CLI::AsSizeValue(false))
        ->type_name("SIZE")
        ->group("Limits");
}

} // namespace fxhost
