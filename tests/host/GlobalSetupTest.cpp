#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/SequenceRecord.h"
#include "tests/host/FakeHost.h"
#include "tests/support/RecordingPlugin.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

RecordingPlugin& Engine() {
    return RecordingPlugin::Instance();
}

TEST(DispatchTest, CommandsWithoutARowSucceedAndTouchNothing) {
    FakeHost host;
    for (const PF_Cmd code : {2, 3, 9, 16, 17, 18, 19, 20, 21, 22, 25, 28, 31, 33, 1000, -1})
        EXPECT_EQ(host.Send(code), PF_Err_NONE) << code;
    EXPECT_THAT(Engine().calls, ElementsAre());
    EXPECT_EQ(EntryPointFunc(PF_Cmd_RENDER, nullptr, &host.out, nullptr, nullptr, nullptr),
              PF_Err_BAD_CALLBACK_PARAM);
}

TEST(AboutTest, TextGoesToAfterEffectsOnlyAndNeverPastTheField) {
    FakeHost host;
    EXPECT_EQ(host.Send(PF_Cmd_ABOUT), PF_Err_NONE);
    EXPECT_STREQ(host.out.return_msg, "About\n\n");
    Engine().about = std::string(1000, 'x');
    EXPECT_EQ(host.Send(PF_Cmd_ABOUT), PF_Err_NONE);
    EXPECT_EQ(std::string(host.out.return_msg), std::string(253, 'x') + "\n\n");
    EXPECT_EQ(host.out.start_sampL, 0) << "the field after the text";

    FakeHost premiere(FakeHost::Kind::Premiere);
    EXPECT_EQ(premiere.Send(PF_Cmd_ABOUT), PF_Err_NONE);
    EXPECT_STREQ(premiere.out.return_msg, "");
}

TEST(GlobalSetupTest, VersionBitsMoveToTheHostsPlaces) {
    struct Row {
        const char* what;
        std::uint32_t engine;
        std::uint32_t host;
    };
    const Row rows[] = {
        // 1.1, release 0, build 1 is 557057 on the host's side.
        {"1.1 build 1", 1u | 1u << 6 | 1u << 14, 557057},
        {"largest major", 63, 7u << 19 | 7u << 26},
        {"largest minor loses its upper half", 255u << 6, 15u << 15},
        {"largest build loses its upper bits", 0xFFFFu << 14, 0x1FF},
        {"stage release", 3u << 30, 3u << 9},
        {"everything", 0xFFFFFFFF, 0x1FF | 3u << 9 | 15u << 15 | 7u << 19 | 7u << 26},
    };
    for (const Row& row : rows) {
        FakeHost host;
        Engine().version = row.engine;
        EXPECT_EQ(host.Send(PF_Cmd_GLOBAL_SETUP), PF_Err_NONE);
        EXPECT_EQ(host.out.my_version, row.host) << row.what;
    }
}

TEST(GlobalSetupTest, AfterEffectsGetsFlagsAndAPluginId) {
    FakeHost host;
    Engine().flags = 0x02000200;
    Engine().flags2 = 0x1400;
    ASSERT_EQ(host.Send(PF_Cmd_GLOBAL_SETUP), PF_Err_NONE);
    EXPECT_EQ(static_cast<unsigned>(host.out.out_flags), 0x02000200u | 0x4008005u);
    EXPECT_EQ(host.out.out_flags2, 0x1400);
    EXPECT_THAT(host.log, ElementsAre("register HOSTID"));
    const auto* data = *reinterpret_cast<Adapter::GlobalData**>(host.in.global_data);
    EXPECT_EQ(data->initialised, 1);
    EXPECT_EQ(data->aegpPluginId, 77);
    EXPECT_EQ(host.Unreturned(), "");
}

TEST(GlobalSetupTest, PremiereLearnsDeepFormatsFromItsSuite) {
    FakeHost host(FakeHost::Kind::Premiere);
    Engine().flags = 0x02000000;
    Engine().flags2 = 0x1000;
    ASSERT_EQ(host.Send(PF_Cmd_GLOBAL_SETUP), PF_Err_NONE);
    EXPECT_EQ(host.out.out_flags, 0x4008005);
    EXPECT_EQ(host.out.out_flags2, 0x8000);
    EXPECT_THAT(host.pixelFormats,
                ElementsAre(0x62677261, 0x62677278, 0x62677258, 0x62677241, 0x62675241, 0x62675258));
    EXPECT_THAT(host.log, ElementsAre()) << "no plug-in id in Premiere Pro";

    FakeHost shallow(FakeHost::Kind::Premiere);
    ASSERT_EQ(shallow.Send(PF_Cmd_GLOBAL_SETUP), PF_Err_NONE);
    EXPECT_THAT(shallow.pixelFormats, ElementsAre(0x62677261, 0x62677278));
    EXPECT_EQ(shallow.Unreturned(), "");
}

TEST(GlobalSetupTest, TheEngineLearnsWhereTheBundleIs) {
    FakeHost host;
    host.Send(PF_Cmd_GLOBAL_SETUP);
    EXPECT_EQ(Engine().calls.front(), "globalSetup module ");
    FakeHost pathOnly;
    pathOnly.failing["bundle"] = 1;
    pathOnly.Send(PF_Cmd_GLOBAL_SETUP);
    EXPECT_EQ(Engine().calls.front(), "globalSetup null /plugins/effect");
}

TEST(GlobalSetupTest, FailuresPublishNothingAndLeakNothing) {
    struct Row {
        const char* what;
        void (*arrange)(FakeHost&);
        PF_Err expected;
    };
    const Row rows[] = {
        {"the engine", [](FakeHost&) { Engine().setupWorks = false; }, 512},
        {"no memory", [](FakeHost& host) { host.allocationsLeft = 0; }, 512},
        {"registration", [](FakeHost& host) { host.failing["register"] = 5; }, 5},
        {"no AEGP layer", [](FakeHost& host) { host.missing.insert("AEGP Utility Suite"); }, 516},
        {"no handles", [](FakeHost& host) { host.missing.insert("PF Handle Suite"); }, 516},
    };
    for (const Row& row : rows) {
        FakeHost host;
        row.arrange(host);
        EXPECT_EQ(host.Send(PF_Cmd_GLOBAL_SETUP), row.expected) << row.what;
        EXPECT_EQ(host.in.global_data, nullptr) << row.what;
        EXPECT_EQ(host.LiveHandles(), 0) << row.what;
        EXPECT_EQ(host.Unreturned(), "") << row.what;
    }
}

} // namespace
