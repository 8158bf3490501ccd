#include <cstdlib>
#include <fstream>
#include <future>
#include <gtest/gtest.h>
#include <iterator>
#include <sstream>

#include "tests/plugin/Probe.h"

namespace {

using stricthost::Instance;

constexpr unsigned s_Width = 32, s_Height = 12; // of the layer at full resolution
constexpr unsigned s_Depths[] = {8, 16, 32};
constexpr unsigned s_Reductions[] = {1, 2, 4};
constexpr unsigned s_Threads[] = {1, 4, 16};

// What happens to an instance; the instances that must be right afterwards.
using Operation = std::vector<Instance*> (*)(Instance& instance);
constexpr struct {
    const char* name;
    Operation run;
} s_Operations[] = {
    {"duplicate",
     [](Instance& instance) {
         return std::vector<Instance*>{&instance, &instance.Duplicate()};
     }},
    {"delete",
     [](Instance& instance) {
         Instance& copy = instance.Duplicate();
         instance.Delete();
         return std::vector<Instance*>{&copy};
     }},
    {"save and reopen",
     [](Instance& instance) {
         instance.SaveAndReopen();
         return std::vector<Instance*>{&instance};
     }},
};

// One thread's work on an instance of its own: every other one is set to do nothing, so that values that leak
// show. Gives what was wrong.
std::string Work(probe::Host& host, unsigned depth, unsigned reduction, unsigned number,
                 Operation operation) {
    const unsigned reach = number % 2 ? 0 : 8 + 4 * (number % 3);
    Instance& instance = host.Apply(s_Width, s_Height, reach);
    const auto input = probe::Noise(s_Width / reduction, s_Height / reduction, depth, number + 1);
    stricthost::FrameRequest request;
    request.input = &input;
    request.downsampleX = request.downsampleY = {1, reduction};
    request.layerWidth = s_Width;
    request.layerHeight = s_Height;
    const auto expected = probe::Expected(input, reach / reduction);
    std::string wrong = probe::Difference(instance.Render(request), expected);
    for (Instance* one : operation(instance))
        wrong += probe::Difference(one->Render(request), expected);
    return wrong;
}

// Several threads at once; what was wrong in one of them.
std::string Cell(probe::Host& host, unsigned depth, unsigned reduction, unsigned threads,
                 Operation operation) {
    std::vector<std::future<std::string>> workers;
    for (unsigned t = 0; t < threads; ++t)
        workers.push_back(
            std::async(std::launch::async, Work, std::ref(host), depth, reduction, t, operation));
    std::string wrong;
    for (auto& worker : workers)
        if (const std::string text = worker.get(); wrong.empty())
            wrong = text;
    return wrong;
}

// Puts the table between the page's marks; false when the page had another one.
bool PutTable(const char* path, const std::string& table) {
    const std::string begin = "<!-- host table begin -->\n", end = "<!-- host table end -->";
    std::ifstream file(path);
    std::string page{std::istreambuf_iterator<char>(file), {}};
    const auto from = page.find(begin), to = page.find(end);
    if (from == std::string::npos || to == std::string::npos)
        return false;
    const std::string old = page.substr(from + begin.size(), to - from - begin.size());
    if (old == table)
        return true;
    if (!std::getenv("FX_UPDATE_DOCS"))
        return false;
    page.replace(from + begin.size(), old.size(), table);
    std::ofstream(path) << page;
    return true;
}

TEST(HostTableGLTest, EveryCellIsRight) {
    std::ostringstream table;
    std::string line = "\n|---|---|---|";
    table << "| then | host | bits |";
    for (const unsigned reduction : s_Reductions)
        for (const unsigned threads : s_Threads) {
            table << " 1/" << reduction << ", " << threads << (threads == 1 ? " thread |" : " threads |");
            line += "---|";
        }
    table << line << "\n";
    for (const auto& operation : s_Operations)
        for (const auto& [name, personality] : probe::Personalities) {
            probe::Host host("probe", personality);
            for (const unsigned depth : s_Depths) {
                table << "| " << operation.name << " | " << name << " | " << depth << " |";
                for (const unsigned reduction : s_Reductions)
                    for (const unsigned threads : s_Threads) {
                        const std::string wrong = Cell(host, depth, reduction, threads, operation.run);
                        EXPECT_EQ(wrong, "") << operation.name << ", " << name << ", " << depth << " bits, 1/"
                                             << reduction << ", " << threads << " threads";
                        table << (wrong.empty() ? " right |" : " wrong |");
                    }
                table << "\n";
            }
        }
    EXPECT_TRUE(PutTable("docs/hosts.md", table.str()))
        << "docs/hosts.md has another table; FX_UPDATE_DOCS=1 writes this one:\n"
        << table.str();
}

} // namespace
