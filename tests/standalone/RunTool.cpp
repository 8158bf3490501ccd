#include "tests/standalone/RunTool.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <sys/wait.h>
#include <unistd.h>

namespace {

std::string TakeText(const std::string& path) {
    const std::string text = ReadFileText(path);
    std::filesystem::remove(path);
    return text;
}

} // namespace

ToolRun RunTool(const std::string& arguments) {
    const std::string base = testing::TempDir() + "fxhost_run_" + std::to_string(::getpid());
    const int status =
        std::system((FX_TOOL " " + arguments + " >" + base + ".out 2>" + base + ".err </dev/null").c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, TakeText(base + ".out"), TakeText(base + ".err")};
}

std::string FreshFolder() {
    const auto* test = testing::UnitTest::GetInstance()->current_test_info();
    const std::string folder =
        testing::TempDir() + "fxhost_" + test->name() + "_" + std::to_string(::getpid());
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder);
    return folder;
}

std::string ReadFileText(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}
