#include "tests/support/RunTool.h"

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/support/TestFiles.h"

namespace {

// The thread sanitizer cannot follow a process that forks, so its builds run effects in the tool's own
// process.
std::string WithoutFork(const std::string& arguments) {
#ifdef __SANITIZE_THREAD__
    for (const char* command : {"render ", "check ", "sheet ", "bench ", "pack ", "bundle "})
        if (arguments.starts_with(command))
            return command + ("--no-fork " + arguments.substr(std::strlen(command)));
#endif
    return arguments;
}

} // namespace

ToolRun RunTool(const std::string& arguments) {
    const std::string base = testing::TempDir() + "fxhost_run_" + std::to_string(getpid());
    const std::string out = base + ".out", err = base + ".err";
    const int status = std::system(
        (FX_TOOL " " + WithoutFork(arguments) + " >" + out + " 2>" + err + " </dev/null").c_str());
    ToolRun run{WIFEXITED(status) ? WEXITSTATUS(status) : -1, FileBytes(out), FileBytes(err)};
    std::filesystem::remove(out);
    std::filesystem::remove(err);
    return run;
}
