#include "tests/support/RunTool.h"

#include <cstdlib>
#include <filesystem>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/support/TestFiles.h"

ToolRun RunTool(const std::string& arguments) {
    const std::string base = testing::TempDir() + "fxhost_run_" + std::to_string(getpid());
    const std::string out = base + ".out", err = base + ".err";
    const int status =
        std::system((FX_TOOL " " + arguments + " >" + out + " 2>" + err + " </dev/null").c_str());
    const ToolRun run{WIFEXITED(status) ? WEXITSTATUS(status) : -1, FileBytes(out), FileBytes(err)};
    std::filesystem::remove(out);
    std::filesystem::remove(err);
    return run;
}
