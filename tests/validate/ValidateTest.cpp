#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <iterator>

#include "packaging/Pipl.h"
#include "toolkit/Errors.h"
#include "validate/CommandSequence.h"
#include "validate/Report.h"
#include "validate/TestTable.h"
#include "validate/Validator.h"

namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using validate::Step;
using validate::TestResult;
using Status = TestResult::Status;

std::vector<TestResult> RunOn(const std::string& plugin, int level, const std::string& only,
                              double timeout = 60) {
    validate::ValidateOptions options;
    options.plugin = plugin;
    options.level = level;
    options.only = only;
    options.timeout = timeout;
    options.system.bundleAt = [](const std::string&) {
        return std::shared_ptr<void>(std::make_shared<int>());
    };
    return validate::Validate(options, [](std::size_t, std::size_t, const std::string&) {});
}

TEST(ValidateTest, PlainInvertWrittenAgainstTheInterfaceAlonePassesEveryLevel) {
    const auto results = RunOn(FX_INVERT_MODULE, 10, "");
    EXPECT_EQ(validate::ExitStatusOf(results), 0) << validate::ToText(results);
    EXPECT_EQ(results.back().name, "shuffled-commands");
}

TEST(ValidateTest, InstancesOfEverySampleEffectAreIndependent) {
    for (const fs::directory_entry& effect : fs::directory_iterator("effects")) {
        if (!effect.is_directory())
            continue;
        const std::string bundle = FX_PLUGIN_FOLDER "/" + effect.path().filename().string() + ".plugin";
        const auto results = RunOn(bundle, 1, "several-instances");
        EXPECT_EQ(validate::ExitStatusOf(results), 0) << bundle << "\n" << validate::ToText(results);
    }
}

// A plug-in with one fault, the test that must find it, and a part of what it must say.
struct Fault {
    const char* name;
    const char* test;
    const char* finding;
    Status status = Status::Failed;
};

void PrintTo(const Fault& fault, std::ostream* out) {
    *out << fault.name;
}

constexpr Fault s_Faults[] = {
    {"fails-global-setup", "loads", "GLOBAL_SETUP returned error 512"},
    {"lies-about-count", "loads", "reported 9 parameters, but added 1"},
    {"leaks-handle", "renders", "a handle of 64 bytes made in RENDER was never disposed of"},
    {"writes-past-row", "renders", "was written outside its rows, after the pixels of row 0"},
    {"writes-input", "renders", "RENDER wrote into its input"},
    {"skips-last-row", "renders", "an output pixel was never written"},
    {"keeps-world", "renders", "a world made in RENDER was never disposed of"},
    {"forgets-checkin", "renders", "did not check parameter 1 in"},
    {"throws", "renders", "let an exception reach the host"},
    {"hangs", "renders", "RENDER at time 0/25, layer 64x36, thread 1: did not return", Status::RanAway},
    {"fails-when-loaded-again", "unloads", "GLOBAL_SETUP returned error 512 (after the module was unloaded"},
    {"crashes-at-unload", "unloads", "unloading of the module: did not return", Status::RanAway},
    {"crashes", "renders", "RENDER at time 0/25, layer 64x36, thread 1: did not return", Status::RanAway},
    {"crashes-with-one-pixel", "sizes", "layer 1x1, thread 1: did not return", Status::RanAway},
    {"claims-depths", "depths", "an output pixel was never written"},
    {"reads-past-row", "row-padding", "differs from the one of rows without a border"},
    {"fails-at-half-resolution", "downsampling", "error 512 (at 1/2"},
    {"fails-with-wide-pixels", "pixel-aspect", "error 512 (with a pixel aspect"},
    {"counts-frames", "same-frame-twice", "differs when the frame is rendered again"},
    {"forgets-on-reopen", "save-and-reopen", "differs after the project is saved and reopened"},
    {"loses-data-of-copies", "duplicate", "differs in a duplicate"},
    {"forgets-on-reopen", "undo", "differs after deleting the effect and undoing that"},
    {"depends-on-thread", "other-thread", "differs on another thread"},
    {"remembers-last-time", "frame-order", "differs after the frame at time 0"},
    {"shares-values", "several-instances", "differs after another instance rendered"},
    {"repeats-name", "parameter-names", "parameter 2 \"Amount\" has the name of an earlier one"},
    {"starts-out-of-range", "parameter-defaults", "has the default 5.000000 outside its range"},
    {"fails-at-zero", "parameter-extremes", "an extreme value of parameter 1 \"Amount\" gives error 512"},
    {"ignores-time", "animated-parameters", "differs when parameter 1 \"Amount\" is animated, at time 25"},
    {"lies-about-flags", "pipl-flags", "other output flags (33554432) than GLOBAL_SETUP sets (33554944)"},
    {"leaks-memory", "life-cycles", "memory grows by"},
    {"leaks-files", "life-cycles", "the number of open files grows"},
    {"crashes-without-memory", "out-of-memory", "SEQUENCE_SETUP", Status::RanAway},
    {"leaks-when-interrupted", "interruptions", "a handle of 32 bytes made in RENDER was never disposed of"},
    {"needs-data", "host-quirks", "SEQUENCE_RESETUP returned error 512 (with the quirk null-resetup"},
    {"needs-path", "host-quirks", "GLOBAL_SETUP returned error 512 (with the quirk bundle-reference"},
    {"claims-to-flatten", "host-quirks",
     "returned no new handle with a flattened copy (with the quirk get-fl"},
    {"needs-data-in-threads", "host-quirks", "error 512 (with the quirk null-render-data"},
    {"writes-shared-data", "host-quirks", "RENDER changed sequence data that it may only read"},
    {"uses-shared-scratch", "parallel-rendering", "differs while other threads render"},
    {"breaks-after-deletions", "shuffled-commands", "fails with these"},
};

// A bundle of the faulty plug-in with the PiPL of one that has no fault.
fs::path MakeBundle(const std::string& fault) {
    const fs::path bundle = fs::path(testing::TempDir()) / (fault + ".plugin");
    const fs::path contents = bundle / "Contents";
    fs::remove_all(bundle);
    fs::create_directories(contents / FX_MODULE_FOLDER);
    fs::create_symlink(FX_FAULTY_MODULE, contents / FX_MODULE_FOLDER / fault);
    fxhost::PiplInfo info = {fault, "Tests", fault, "EffectMain"};
    info.version = PF_VERSION(1, 0, 0, 0, 1);
    info.outFlags = PF_OutFlag_DEEP_COLOR_AWARE;
    const auto bytes = fxhost::PiplResourceFile(info);
    fs::create_directories(contents / "Resources");
    std::ofstream(contents / "Resources" / (fault + ".rsrc"), std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    return bundle;
}

class FaultTest : public testing::TestWithParam<Fault> {};

TEST_P(FaultTest, EachFaultIsFoundByItsTest) {
    const Fault& fault = GetParam();
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    if (std::string(fault.name) == "leaks-memory")
        GTEST_SKIP() << "the sanitizer's allocator does not report how much memory is in use";
#endif
    const fs::path bundle = MakeBundle(fault.name);
    const auto results = RunOn(bundle.string(), 1, fault.test, fault.status == Status::RanAway ? 1 : 60);
    ASSERT_EQ(results.size(), 1u);
    EXPECT_EQ(results[0].status, fault.status) << validate::ToText(results);
    EXPECT_THAT(results[0].findings, testing::Contains(HasSubstr(fault.finding)))
        << validate::ToText(results);
    fs::remove_all(bundle);
}

std::string NameOf(const testing::TestParamInfo<Fault>& info) {
    std::string name = std::string(info.param.name) + "_" + info.param.test;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(Plugins, FaultTest, testing::ValuesIn(s_Faults), NameOf);

TEST(ValidateTest, EveryTestHasAFaultThatItFindsAndARowInTheDocs) {
    std::ifstream file("docs/validate.md");
    const std::string page{std::istreambuf_iterator<char>(file), {}};
    for (const validate::TestRow* row = validate::TestTable(); row->name; ++row) {
        EXPECT_THAT(
            page, HasSubstr("| " + std::to_string(row->level) + " | `" + row->name + "` | " + row->protects))
            << row->name;
        const bool found = std::any_of(std::begin(s_Faults), std::end(s_Faults), [row](const Fault& fault) {
            return std::string(fault.test) == row->name;
        });
        EXPECT_TRUE(found) << row->name;
    }
}

TEST(ValidateTest, APiplThatAgreesWithTheCodeIsRight) {
    const fs::path bundle = MakeBundle("repeats-name"); // a fault that does not concern the flags
    EXPECT_EQ(validate::ExitStatusOf(RunOn(bundle.string(), 1, "pipl-flags")), 0);
    fs::remove_all(bundle);
}

TEST(ValidateTest, SequencesShrinkToTheStepsThatFail) {
    const auto steps = validate::ShuffledSteps(3, 100);
    EXPECT_EQ(validate::Describe(steps[0]), validate::Describe(validate::ShuffledSteps(3, 100)[0]));
    const auto fails =
        [](const std::vector<Step>& some) { // needs a deletion and a later copy of another slot
            const auto deletion =
                std::find_if(some.begin(), some.end(), [](const Step& s) { return s.kind == Step::Delete; });
            return std::any_of(deletion, some.end(), [](const Step& s) { return s.kind == Step::Duplicate; });
        };
    ASSERT_TRUE(fails(steps));
    const auto few = validate::Shorten(steps, 1000, fails);
    ASSERT_EQ(few.size(), 2u);
    EXPECT_EQ(few[0].kind, Step::Delete);
    EXPECT_EQ(few[1].kind, Step::Duplicate);
}

TEST(ValidateTest, WrongUseNamesTheOption) {
    EXPECT_THROW(RunOn("none.plugin", 1, ""), fxhost::WrongUse);
    EXPECT_THROW(RunOn(FX_INVERT_MODULE, 11, ""), fxhost::WrongUse);
    EXPECT_THROW(RunOn(FX_INVERT_MODULE, 1, "kindness"), fxhost::WrongUse);
}

TEST(ValidateTest, ReportsCarryFindingsEscapedForTheirFormat) {
    const std::vector<TestResult> results = {
        {"sizes", "a crash", 2, 7, Status::Failed, 0.5, 12, {"1 < 2 & \"3\""}, {"1 RENDER"}}};
    EXPECT_THAT(
        validate::ToJunit("a&b", results),
        testing::AllOf(HasSubstr("<testsuite name=\"a&amp;b\" tests=\"1\" failures=\"1\" errors=\"0\">"),
                       HasSubstr("message=\"1 &lt; 2 &amp; &quot;3&quot;\"")));
    EXPECT_THAT(validate::ToJson("plugin", results),
                testing::AllOf(HasSubstr("\"verdict\": \"invalid\""), HasSubstr("1 < 2 & \\\"3\\\"")));
    EXPECT_EQ(validate::ExitStatusOf(results), 1);
    EXPECT_THAT(validate::ToText(results), testing::AllOf(HasSubstr("sizes  (0.50 s, 12 commands)"),
                                                          HasSubstr("protects from a crash")));
}

} // namespace
