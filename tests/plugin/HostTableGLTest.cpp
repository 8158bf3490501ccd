#include <fstream>
#include <future>
#include <gmock/gmock.h>
#include <iterator>
#include <sstream>

#include "tests/plugin/Probe.h"

namespace {

using stricthost::Instance;

constexpr unsigned s_Width = 32, s_Height = 12; // of the layer at full resolution

// What happens to an instance; the instance that must be right afterwards, beside the first unless that is
// gone.
struct Operation {
    const char* name;
    Instance* (*run)(Instance& instance);
};
constexpr Operation s_Operations[] = {
    {"duplicate",
     [](Instance& instance) {
         Instance& copy = instance.Duplicate();
         copy.Duplicate().SetValue(probe::Reach, 1.0); // which shows in neither
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

// One thread's work on an instance of its own: every other one is set to do nothing, so that values that leak
// show. Gives what was wrong.
std::string Work(probe::Host& host, unsigned depth, unsigned reduction, unsigned number,
                 Operation operation) {
    const unsigned reach = number % 2 ? 0 : 8 + 4 * (number % 3);
    Instance& instance = host.Apply(s_Width, s_Height, reach);
    const auto input = probe::Noise(s_Width / reduction, s_Height / reduction, depth, number + 1);
    stricthost::FrameRequest request = {.input = &input, .wanted = {}};
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

// Several threads at once; what was wrong in one of them.
std::string Cell(probe::Host& host, unsigned depth, unsigned reduction, unsigned threads,
                 Operation operation) {
    std::vector<std::future<std::string>> workers;
    for (unsigned t = 0; t < threads; ++t)
        workers.push_back(
            std::async(std::launch::async, Work, std::ref(host), depth, reduction, t, std::ref(operation)));
    std::string wrong;
    for (auto& worker : workers)
        wrong += worker.get();
    return wrong;
}

TEST(HostTableGLTest, EveryCellIsRight) {
    std::ostringstream table;
    table << "| then | host | bits |";
    for (const char* reduction : {" 1/1, ", " 1/2, ", " 1/4, "})
        for (const char* threads : {"1 thread |", "4 threads |", "16 threads |"})
            table << reduction << threads;
    table << "\n|---|---|---|---|---|---|---|---|---|---|---|---|\n";
    for (const auto& operation : s_Operations)
        for (const auto& [name, personality] : probe::Personalities) {
            probe::Host host("probe", personality);
            for (const unsigned depth : {8u, 16u, 32u}) {
                table << "| " << operation.name << " | " << name << " | " << depth << " |";
                for (const unsigned reduction : {1u, 2u, 4u})
                    for (const unsigned threads : {1u, 4u, 16u}) {
                        const std::string wrong = Cell(host, depth, reduction, threads, operation);
                        EXPECT_EQ(wrong, "") << operation.name << ", " << name << ", " << depth << " bits, 1/"
                                             << reduction << ", " << threads << " threads";
                        table << (wrong.empty() ? " right |" : " wrong |");
                    }
                table << "\n";
            }
        }
    std::ifstream file("docs/hosts.md");
    const std::string page{std::istreambuf_iterator<char>(file), {}};
    EXPECT_THAT(page,
                testing::HasSubstr("<!-- host table begin -->\n" + table.str() + "<!-- host table end -->"));
}

} // namespace
