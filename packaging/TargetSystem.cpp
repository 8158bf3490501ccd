#include "packaging/TargetSystem.h"

#include "platform/System.h"
#include "toolkit/Errors.h"

namespace fxhost {

namespace {

namespace fs = std::filesystem;

constexpr TargetSystem s_Systems[] = {
    {"linux", "Linux", false},
    {"macos", "MacOS", true},
};

} // namespace

const TargetSystem& FindTargetSystem(const std::string& name) {
    const std::string wanted = name.empty() ? SystemName() : name;
    for (const TargetSystem& system : s_Systems)
        if (system.name == wanted)
            return system;
    throw WrongUse("--target " + name + ": linux or macos was expected");
}

fs::path FindModule(const TargetSystem& system) {
    const fs::path folder = fs::path(ProgramPath()).parent_path();
    const fs::path installed = folder / "../lib/shaderfx" / system.name / "shaderfx.so";
    const fs::path built = system.name == std::string(SystemName())
                               ? folder / "../plugin/shaderfx.so"
                               : folder / "../.." / system.name / "plugin/shaderfx.so";
    for (const fs::path& candidate : {installed, built})
        if (fs::exists(candidate))
            return candidate.lexically_normal();
    throw EffectFailure(std::string("there is no plug-in module for ") + system.name + ": neither " +
                        installed.lexically_normal().string() + " nor " + built.lexically_normal().string() +
                        " exists; build it, or name it with --module");
}

} // namespace fxhost
