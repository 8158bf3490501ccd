#include <cstdio>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>

#include "tests/plugin/Probe.h"

namespace {

std::ptrdiff_t EntriesOf(const char* folder) {
    return std::distance(std::filesystem::directory_iterator(folder), {});
}

bool IsLoaded() {
    std::ifstream maps("/proc/self/maps");
    const std::string text{std::istreambuf_iterator<char>(maps), {}};
    return text.find("probe.plugin") != std::string::npos;
}

// Pages of this process's own memory.
long OwnPages() {
    long size = 0, resident = 0, shared = 0;
    std::ifstream("/proc/self/statm") >> size >> resident >> shared;
    return resident - shared;
}

void LoadRenderUnload(std::uint32_t seed) {
    probe::Host host("probe", probe::Personality::AfterEffects);
    const auto input = probe::Noise(64, 64, 8, seed);
    const auto result = host.Apply(64, 64, 64).Render({.input = &input, .wanted = {}});
    EXPECT_EQ(probe::Difference(result, probe::Expected(input, 64)), "");
    EXPECT_TRUE(IsLoaded());
}

#if defined(FX_HAS_NM) && !defined(__SANITIZE_THREAD__)
TEST(UnloadGLTest, TheModuleExportsOnlyItsEntryPoint) {
    const std::string module = std::string(FX_PLUGIN_FOLDER) + "/probe.plugin/Contents/Linux/probe";
    FILE* const names = popen(("nm -D --defined-only --format=just-symbols " + module).c_str(), "r");
    char text[256] = {};
    text[std::fread(text, 1, sizeof text - 1, names)] = 0;
    EXPECT_EQ(pclose(names), 0);
    EXPECT_STREQ(text, "EntryPointFunc\n");
}
#endif

TEST(UnloadGLTest, LoadingAndUnloadingFiftyTimesLeavesMemoryFilesAndThreadsAsTheyWere) {
#if defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "a module that was built with the thread sanitizer stays mapped";
#endif
    for (std::uint32_t i = 0; i < 10; ++i) // until the driver and the allocator have settled
        LoadRenderUnload(i);
    EXPECT_FALSE(IsLoaded());
    const auto files = EntriesOf("/proc/self/fd"), threads = EntriesOf("/proc/self/task");
    // A leaked frame alone would cost 16 KiB in each cycle of every round, while the allocator grows only now
    // and then.
    constexpr long leak = 50 * 16;
    long grown = leak;
    for (int round = 0; round < 4 && grown >= leak; ++round) {
        const long pages = OwnPages();
        for (std::uint32_t i = 0; i < 50; ++i)
            LoadRenderUnload(i);
        grown = (OwnPages() - pages) * 4;
#if defined(__SANITIZE_ADDRESS__)
        grown = 0; // sanitizers keep freed memory for a while
#endif
    }
    EXPECT_LT(grown, leak) << "kilobytes";
    EXPECT_EQ(EntriesOf("/proc/self/fd"), files);
    EXPECT_EQ(EntriesOf("/proc/self/task"), threads);
    EXPECT_FALSE(IsLoaded());
}

} // namespace
