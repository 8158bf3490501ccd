#include <algorithm>
#include <future>
#include <gtest/gtest.h>

#include "tests/plugin/Probe.h"

namespace {

using stricthost::Instance;

constexpr unsigned s_Width = 32, s_Height = 12; // of the layer at full resolution
constexpr int s_Border = 3;                     // of the second effect of two

// An operation on an instance. It returns another instance that must render right afterwards.
struct Operation {
    const char* name;
    Instance* (*run)(Instance& instance);
};
constexpr Operation s_Operations[] = {
    {"duplicate",
     [](Instance& instance) {
         Instance& copy = instance.Duplicate();
         copy.Duplicate().SetValue(probe::Reach, 1.0); // must not affect the other two
         return &copy;
     }},
    {"delete",
     [](Instance& instance) {
         Instance& copy = instance.Duplicate();
         instance.Delete();
         return &copy;
     }},
    {"save and reopen",
     [](Instance& instance) {
         instance.SaveAndReopen();
         return &instance;
     }},
};

// Renders with an instance of the thread's own before and after the operation. Every other instance does
// nothing, so that a value that leaks from one instance to another is noticed. Returns a description of what
// was wrong.
std::string RenderAroundOperation(probe::Host& host, unsigned depth, unsigned reduction, unsigned number,
                                  Operation operation) {
    const unsigned reach = number % 2 ? 0 : 8 + 4 * (number % 3);
    Instance& instance = host.Apply(s_Width, s_Height, reach);
    const auto input = probe::Noise(s_Width / reduction, s_Height / reduction, depth, number + 1);
    stricthost::FrameSpec request = {.input = &input, .wanted = {}};
    request.downsampleX = request.downsampleY = {1, reduction};
    request.layerWidth = s_Width;
    request.layerHeight = s_Height;
    const auto expected = probe::Expected(input, reach / reduction);
    std::string wrong = probe::Difference(instance.Render(request), expected);
    for (Instance* one : {operation.run(instance), &instance})
        if (!one->IsDeleted())
            wrong += probe::Difference(one->Render(request), expected);
    return wrong;
}

// Does so in several threads at once. Returns what was wrong in any of them.
std::string RenderInThreads(probe::Host& host, unsigned depth, unsigned reduction, unsigned threads,
                            Operation operation) {
    std::vector<std::future<std::string>> workers;
    for (unsigned t = 0; t < threads; ++t)
        workers.push_back(std::async(std::launch::async, RenderAroundOperation, std::ref(host), depth,
                                     reduction, t, operation));
    std::string wrong;
    for (auto& worker : workers)
        wrong += worker.get();
    return wrong;
}

struct Case {
    Operation operation;
    std::string host;
    stricthost::Personality personality;
};

std::vector<Case> Cases() {
    std::vector<Case> cases;
    for (const Operation& operation : s_Operations)
        for (const auto& [name, personality] : probe::Personalities)
            cases.push_back({operation, name, personality});
    return cases;
}

// GoogleTest accepts letters and digits in the names of cases.
std::string NameOf(const testing::TestParamInfo<Case>& info) {
    std::string name = info.param.host + " " + info.param.operation.name;
    std::erase_if(name, [](char character) { return character == ','; });
    std::replace(name.begin(), name.end(), ' ', '_');
    return name;
}

class InstancesGLTest : public testing::TestWithParam<Case> {};

TEST_P(InstancesGLTest, RenderEveryPixelRightAtEachDepthResolutionAndNumberOfThreads) {
    probe::Host host("probe", GetParam().personality);
    for (const unsigned depth : {8u, 16u, 32u})
        for (const unsigned reduction : {1u, 2u, 4u})
            for (const unsigned threads : {1u, 4u, 16u})
                EXPECT_EQ(RenderInThreads(host, depth, reduction, threads, GetParam().operation), "")
                    << depth << " bits, resolution 1/" << reduction << ", " << threads << " threads";
}

// Each module has its own engine, interpreter and GL context, and every thread changes between them.
TEST(TwoEffectsGLTest, SixteenThreadsRenderWithTwoModulesInTurn) {
    probe::Host hosts[] = {{"probe", probe::Personality::AfterEffects},
                           {"probe_resizing", probe::Personality::AfterEffects}};
    std::vector<std::future<std::string>> workers;
    for (unsigned t = 0; t < 16; ++t)
        workers.push_back(std::async(std::launch::async, [&hosts, t] {
            Instance& plain = hosts[0].Apply(s_Width, s_Height, t);
            Instance& larger = hosts[1].Apply(s_Width, s_Height, s_Width - t);
            larger.SetValue(probe::Grow, double(s_Border));
            std::string wrong;
            for (const unsigned depth : {8u, 16u, 32u, 8u}) {
                const auto input = probe::Noise(s_Width, s_Height, depth, t);
                const stricthost::FrameSpec request = {.input = &input, .wanted = {}};
                wrong += probe::Difference(plain.Render(request), probe::Expected(input, t));
                wrong +=
                    probe::Difference(larger.Render(request), probe::Expected(input, s_Width - t, s_Border));
            }
            return wrong;
        }));
    for (auto& worker : workers)
        EXPECT_EQ(worker.get(), "");
}

INSTANTIATE_TEST_SUITE_P(After, InstancesGLTest, testing::ValuesIn(Cases()), NameOf);

} // namespace
