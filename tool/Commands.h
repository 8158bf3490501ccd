#pragma once

#include <CLI/CLI.hpp>
#include <functional>

namespace fxhost {

// A sub-command of the tool. `run` returns the exit status and may throw WrongUse or EffectFailure.
struct Command {
    CLI::App* app = nullptr;
    std::function<int()> run;
};

Command AddBench(CLI::App& tool);
Command AddBundle(CLI::App& tool);
Command AddCheck(CLI::App& tool);
Command AddCompareTrace(CLI::App& tool);
Command AddCompletion(CLI::App& tool);
Command AddMan(CLI::App& tool);
Command AddRender(CLI::App& tool);
Command AddInfo(CLI::App& tool);
Command AddNew(CLI::App& tool);
Command AddPack(CLI::App& tool);
Command AddSheet(CLI::App& tool);
Command AddUnpack(CLI::App& tool);
Command AddValidate(CLI::App& tool);

} // namespace fxhost
