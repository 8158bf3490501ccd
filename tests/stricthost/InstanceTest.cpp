#include <fstream>

#include "tests/stricthost/HostTest.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::ThrowsMessage;

class InstanceTest : public HostTest {};

TEST_F(InstanceTest, EachPersonalitySendsItsCommandsInOrder) {
    const auto expect = [this](Personality personality, bool smart, bool expands, const char* log,
                               int minor) {
        m_Plugin.before[PF_Cmd_GLOBAL_SETUP] = [minor](Command& c) { EXPECT_EQ(c.in->version.minor, minor); };
        m_Options.personality = personality;
        m_Plugin.flags = expands ? PF_OutFlags{PF_OutFlag_I_EXPAND_BUFFER} : 0;
        m_Plugin.flags2 = smart ? PF_OutFlags2{PF_OutFlag2_SUPPORTS_SMART_RENDER} : 0;
        EXPECT_EQ(RenderOnce().error, PF_Err_NONE);
        EXPECT_EQ(m_Plugin.log, log);
    };
    expect(Personality::AfterEffects, true, true, "gpsPSdx", 28);
    expect(Personality::AfterEffects, false, false, "gpsFRDdx", 28);
    expect(Personality::AfterEffectsPlain, true, false, "gpsFRDdx", 28);
    expect(Personality::AfterEffectsPlain, true, true, "gpsFDFRDdx", 28);
    expect(Personality::Premiere, true, true, "gpsFRDdx", 4);
}

TEST_F(InstanceTest, DuplicateFlattensAndSetsBothUpAgain) {
    std::string seen;
    m_Plugin.before[PF_Cmd_SEQUENCE_RESETUP] = [&seen](Command& c) { seen += *c.in->sequence_data; };
    Instance& original = Start();
    original.SetValue(1, 7.0);
    Instance& copy = original.Duplicate();
    EXPECT_EQ(m_Plugin.log, "gpsfrr");
    EXPECT_EQ(seen, "flatflat");
    EXPECT_EQ(std::get<double>(copy.Value(1)), 7.0);
    original.Delete();
    copy.SetValue(1, 8.0);
    Finish();
    EXPECT_EQ(m_Plugin.log, "gpsfrrddx");
    EXPECT_THROW(original.UpdateUI(), std::logic_error);
}

TEST_F(InstanceTest, SaveAndReopenReturnsTheFlatBytesAndSetsUpFromThem) {
    for (const bool disposesItself : {false, true}) { // of the live handle; the host does it otherwise
        m_Plugin.after[PF_Cmd_SEQUENCE_FLATTEN] = [disposesItself](Command& c) {
            if (disposesItself)
                c.Dispose(c.in->sequence_data);
        };
        const std::vector<char> bytes = Start().SaveAndReopen();
        ASSERT_EQ(bytes.size(), 16u);
        EXPECT_STREQ(bytes.data(), "flat");
        m_Host->OpenInstance(&bytes);
        m_Host->OpenInstance(nullptr);
        EXPECT_EQ(m_Plugin.log, "gpsfdrrr");
        Finish();
    }
}

TEST_F(InstanceTest, FailedSequenceSetupThrowsAndLeavesNoInstance) {
    m_Options.allocations = 1; // the global handle
    StartHost();
    EXPECT_THAT([this] { m_Host->NewInstance(); },
                ThrowsMessage<stricthost::CommandError>("SEQUENCE_SETUP returned error 4"));
    Finish();
    EXPECT_EQ(m_Plugin.log, "gpsx");
}

TEST_F(InstanceTest, CallsOutOfOrderThrowLogicErrors) {
    m_Plugin.after[PF_Cmd_ABOUT] = [](Command& c) { std::strcpy(c.out->return_msg, "Stand-in"); };
    stricthost::StrictHost host(StandIn::Entry, {});
    EXPECT_THROW(host.ParamsSetup(), std::logic_error);
    EXPECT_THROW(host.NewInstance(), std::logic_error);
    host.GlobalSetup();
    EXPECT_THROW(host.GlobalSetup(), std::logic_error);
    EXPECT_EQ(host.About(), "Stand-in");
    host.Finish();
    host.Finish();
    EXPECT_EQ(m_Plugin.log, "gax");
}

TEST_F(InstanceTest, BundleThatCannotBeLoadedIsNamedInTheError) {
    const auto folder = std::filesystem::path(testing::TempDir()) / "broken.plugin";
    const auto expect = [&folder](const char* problem) {
        EXPECT_THAT([&folder] { stricthost::StrictHost(folder, {}); },
                    ThrowsMessage<std::runtime_error>(AllOf(HasSubstr("broken.plugin"), HasSubstr(problem))));
    };
    std::filesystem::remove_all(folder);
    expect("not a plug-in bundle");
    for (const char* system : {"Contents/Linux", "Contents/MacOS"})
        std::filesystem::create_directories(folder / system);
    expect("has no module");
    for (const char* system : {"Contents/Linux", "Contents/MacOS"})
        std::ofstream(folder / system / "broken") << "no module";
    expect("cannot be loaded");
    std::filesystem::remove_all(folder);
}

} // namespace
