#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>

#include "tests/plugin/Probe.h"

namespace {

using stricthost::Personality;
using stricthost::StrictHost;

std::ptrdiff_t EntriesOf(const char* folder) {
    return std::distance(std::filesystem::directory_iterator(folder), {});
}

bool IsLoaded(const std::string& name) {
    std::ifstream maps("/proc/self/maps");
    const std::string text{std::istreambuf_iterator<char>(maps), {}};
    return text.find(name) != std::string::npos;
}

// Pages of this process's own memory.
long OwnPages() {
    long size = 0, resident = 0, shared = 0;
    std::ifstream("/proc/self/statm") >> size >> resident >> shared;
    return resident - shared;
}

void LoadRenderUnload(std::uint32_t seed) {
    StrictHost host(probe::Bundle("probe"), probe::Options(Personality::AfterEffects));
    host.GlobalSetup();
    host.ParamsSetup();
    stricthost::Instance& instance = host.NewInstance(64, 64);
    instance.UpdateUI();
    instance.SetValue(probe::Amount, 1.0);
    instance.SetValue(probe::Reach, 64.0);
    const auto input = probe::Noise(64, 64, 8, seed);
    stricthost::FrameRequest request;
    request.input = &input;
    EXPECT_EQ(probe::Difference(instance.Render(request).picture, probe::Expected(input, true, 64, 0)), "");
    host.Finish();
    EXPECT_TRUE(host.Violations().empty());
    EXPECT_TRUE(IsLoaded("probe.plugin"));
}

TEST(UnloadGLTest, FiftyTimesLoadedAndUnloadedNothingGrows) {
#if defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "a module that was built with the thread sanitizer stays mapped";
#endif
    for (std::uint32_t i = 0; i < 10; ++i) // the driver and the allocator settle
        LoadRenderUnload(i);
    EXPECT_FALSE(IsLoaded("probe.plugin")) << "unloading must really unload";
    const auto files = EntriesOf("/proc/self/fd"), threads = EntriesOf("/proc/self/task");
    const long pages = OwnPages();
    for (std::uint32_t i = 0; i < 50; ++i)
        LoadRenderUnload(i);
    EXPECT_EQ(EntriesOf("/proc/self/fd"), files);
    EXPECT_EQ(EntriesOf("/proc/self/task"), threads);
    EXPECT_FALSE(IsLoaded("probe.plugin"));
    // A leaked frame alone would be 16 KiB each time; sanitizers keep freed memory for a while.
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
    EXPECT_LT((OwnPages() - pages) * 4, 50 * 16) << "kilobytes";
#else
    static_cast<void>(pages);
#endif
}

} // namespace
