#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>

#include "toolkit/Errors.h"
#include "validate/TraceReplay.h"
#include "validate/Trial.h"

namespace {

namespace fs = std::filesystem;
using stricthost::Personality;
using testing::HasSubstr;

class TraceTest : public testing::Test {
protected:
    TraceTest() : m_Trace(fs::path(testing::TempDir()) / "real.jsonl") {
        m_Options.probe = FX_TRACE_PROBE;
        m_Options.trace = m_Trace;
    }
    ~TraceTest() override { fs::remove(m_Trace); }

    // A host with these options plays the real one, and the probe writes what it receives.
    void Record(Personality personality, const stricthost::Quirks& quirks = {}) {
        fs::remove(m_Trace);
        setenv("FX_TRACE", m_Trace.c_str(), 1);
        stricthost::PluginModule probe(FX_TRACE_PROBE);
        stricthost::Options options;
        options.personality = personality;
        options.quirks = quirks;
        stricthost::StrictHost host(probe.Entry(), options);
        host.GlobalSetup();
        host.ParamsSetup();
        stricthost::Instance& instance = host.NewInstance();
        instance.UpdateUI();
        const auto input = validate::Noise(20, 10, 8);
        auto spec = validate::FrameOf(input, 3);
        spec.downsampleX = spec.downsampleY = {1, 2};
        instance.Render(spec);
        stricthost::Instance& copy = instance.Duplicate();
        copy.UpdateUI();
        instance.SaveAndReopen();
        instance.Delete();
        copy.Render(spec);
        host.Finish();
        EXPECT_THAT(host.Violations(), testing::IsEmpty());
    }

    std::string m_Trace;
    validate::TraceOptions m_Options;
};

TEST_F(TraceTest, TraceOfTheSameHostHasNoDifference) {
    for (const auto personality :
         {Personality::AfterEffects, Personality::AfterEffectsPlain, Personality::Premiere}) {
        Record(personality);
        EXPECT_EQ(validate::FirstDifference(m_Options), "") << validate::NameOf(personality);
    }
}

TEST_F(TraceTest, FirstDifferenceNamesTheLineTheFieldAndBothValues) {
    stricthost::Quirks quirks;
    quirks.clearedOutData = true;
    Record(Personality::AfterEffectsPlain, quirks);
    EXPECT_THAT(validate::FirstDifference(m_Options),
                HasSubstr("real.jsonl:5: FRAME_SETUP (10): \"outWidth\" is 0 in the real host, and 20 in the "
                          "emulated one"));
    m_Options.ignore = {"outWidth", "outHeight"};
    EXPECT_EQ(validate::FirstDifference(m_Options), "");
    m_Options.ignore.clear();
    m_Options.host.quirks = quirks;
    EXPECT_EQ(validate::FirstDifference(m_Options), "");
}

TEST_F(TraceTest, CommandThatTheEmulatedHostWouldNotSendIsADifference) {
    stricthost::Quirks quirks;
    quirks.renderCopies = true;
    Record(Personality::AfterEffects, quirks);
    EXPECT_THAT(validate::FirstDifference(m_Options),
                HasSubstr("real.jsonl:5: SEQUENCE_RESETUP (6): \"inFlags\" is 1 in the real host, and 0"));
    quirks = {};
    quirks.byteCopies = true;
    Record(Personality::AfterEffects, quirks);
    EXPECT_THAT(validate::FirstDifference(m_Options), HasSubstr("an instance that was not set up before"));
}

TEST_F(TraceTest, UnreadableTracesAreWrongUseWithTheLine) {
    std::ofstream(m_Trace) << "{\"command\": 1}\nnonsense\n";
    EXPECT_THAT([&] { validate::FirstDifference(m_Options); },
                testing::ThrowsMessage<fxhost::WrongUse>(HasSubstr("real.jsonl:2: a line of JSON")));
    fs::remove(m_Trace);
    EXPECT_THROW(validate::FirstDifference(m_Options), fxhost::WrongUse);
}

} // namespace
