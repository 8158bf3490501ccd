#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <sstream>
#include <thread>

#include "tests/plugin/Probe.h"

namespace {

using stricthost::FrameRequest;
using stricthost::Instance;
using stricthost::Personality;
using stricthost::StrictHost;

constexpr unsigned s_Width = 32, s_Height = 12; // of the layer at full resolution

constexpr struct {
    const char* name;
    Personality personality;
} s_Hosts[] = {{"After Effects, smart", Personality::AfterEffects},
               {"After Effects, plain", Personality::AfterEffectsPlain},
               {"Premiere Pro", Personality::Premiere}};
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
std::string Work(StrictHost& host, unsigned depth, unsigned reduction, unsigned number, Operation operation) {
    const bool amount = number % 2 == 0;
    const unsigned reach = 8 + 4 * (number % 3);
    Instance& instance = host.NewInstance(s_Width, s_Height);
    instance.UpdateUI();
    instance.SetValue(probe::Amount, amount ? 1.0 : 0.0);
    instance.SetValue(probe::Reach, static_cast<double>(reach));
    const auto input = probe::Noise(s_Width / reduction, s_Height / reduction, depth, number + 1);
    FrameRequest request;
    request.input = &input;
    request.downsampleX = request.downsampleY = {1, reduction};
    request.layerWidth = s_Width;
    request.layerHeight = s_Height;
    const auto expected = probe::Expected(input, amount, reach / reduction, 0);
    const auto render = [&](Instance& one) {
        const auto result = one.Render(request);
        return result.error != PF_Err_NONE ? "error " + std::to_string(result.error)
                                           : probe::Difference(result.picture, expected);
    };
    std::string wrong = render(instance);
    for (Instance* one : operation(instance))
        wrong += render(*one);
    return wrong;
}

std::string Cell(StrictHost& host, unsigned depth, unsigned reduction, unsigned threads,
                 Operation operation) {
    std::vector<std::string> wrong(threads);
    std::vector<std::thread> workers;
    for (unsigned t = 0; t < threads; ++t)
        workers.emplace_back([&, t] {
            try {
                wrong[t] = Work(host, depth, reduction, t, operation);
            } catch (const std::exception& error) {
                wrong[t] = error.what();
            }
        });
    for (std::thread& worker : workers)
        worker.join();
    for (const std::string& text : wrong)
        if (!text.empty())
            return text;
    return {};
}

std::string ReadPage(const char* path) {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

// Puts the table between the page's marks; false when the page had another one.
bool PutTable(const char* path, const std::string& table) {
    const std::string begin = "<!-- host table begin -->\n", end = "<!-- host table end -->";
    std::string page = ReadPage(path);
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
    table << "| then | host | bits |";
    for (const unsigned reduction : s_Reductions)
        for (const unsigned threads : s_Threads)
            table << " 1/" << reduction << ", " << threads << (threads == 1 ? " thread |" : " threads |");
    table << "\n|---|---|---|";
    for (int i = 0; i < 9; ++i)
        table << "---|";
    table << "\n";
    for (const auto& operation : s_Operations)
        for (const auto& row : s_Hosts) {
            StrictHost host(probe::Bundle("probe"), probe::Options(row.personality));
            host.GlobalSetup();
            host.ParamsSetup();
            for (const unsigned depth : s_Depths) {
                table << "| " << operation.name << " | " << row.name << " | " << depth << " |";
                for (const unsigned reduction : s_Reductions)
                    for (const unsigned threads : s_Threads) {
                        const std::string wrong = Cell(host, depth, reduction, threads, operation.run);
                        EXPECT_EQ(wrong, "") << operation.name << ", " << row.name << ", " << depth
                                             << " bits, 1/" << reduction << ", " << threads << " threads";
                        table << (wrong.empty() ? " right |" : " wrong |");
                    }
                table << "\n";
            }
            host.Finish();
            for (const std::string& text : host.Violations())
                ADD_FAILURE() << operation.name << ", " << row.name << ": " << text;
        }
    EXPECT_TRUE(PutTable("docs/hosts.md", table.str()))
        << "docs/hosts.md has another table; FX_UPDATE_DOCS=1 writes this one:\n"
        << table.str();
}

} // namespace
