#include "AE_EffectCB.h"
#include "AE_EffectCBSuites.h"
#include "AE_GeneralPlug.h"
#include "host/EntryPoint.h"
#include "tests/host/TestHost.h"

namespace {

TEST(DispatchTest, CommandsWithoutARowSucceedAndTouchNothing) {
    TestHost host;
    Instance& instance = host.Start();
    for (const PF_Cmd code : {2, 3, 9, 16, 17, 18, 19, 20, 21, 22, 25, 28, 31, 33, 1000, -1})
        EXPECT_EQ(TestHost::Send(code, instance), PF_Err_NONE) << code;
    EXPECT_TRUE(Engine().calls.empty());
    PF_InData in = {};
    PF_OutData out = {};
    for (const PF_Err err : {EntryPointFunc(PF_Cmd_RENDER, nullptr, &out, nullptr, nullptr, nullptr),
                             EntryPointFunc(PF_Cmd_RENDER, &in, nullptr, nullptr, nullptr, nullptr)})
        EXPECT_EQ(err, PF_Err_BAD_CALLBACK_PARAM);
}

TEST(GlobalSetupTest, VersionBitsMoveToTheHostsPlaces) {
    constexpr std::pair<std::uint32_t, std::uint32_t> rows[] = {
        {1u | 1u << 6 | 1u << 14, 557057}, // 1.1, release 0, build 1
        {63, 7u << 19 | 7u << 26},         // the largest major
        {255u << 6, 15u << 15},            // the largest minor loses its upper half
        {0xFFFFu << 14, 0x1FF},            // the largest build loses its upper bits
        {3u << 30, 3u << 9},               // stage release
    };
    for (const auto& [engine, expected] : rows) {
        TestHost host;
        Engine().version = engine;
        host.SetUp();
        EXPECT_EQ(host.strict.Version(), expected);
    }
}

TEST(GlobalSetupTest, EachHostLearnsFlagsAndDeepFormatsItsOwnWay) {
    constexpr int always = 0x4008005, deep = 0x02000000, floats = 0x1000, sharedSequence = 0x8000;
    struct Row {
        Personality personality;
        int engineFlags, engineFlags2, flags, flags2;
        std::vector<std::uint32_t> formats;
    };
    const Row rows[] = {
        {AE, deep | 0x200, floats | 0x400, always | deep | 0x200, floats | 0x400, {}},
        {Pr,
         deep,
         floats,
         always,
         sharedSequence,
         {0x62677261, 0x62677278, 0x62677258, 0x62677241, 0x62675241, 0x62675258}},
        {Pr, 0, 0, always, sharedSequence, {0x62677261, 0x62677278}},
    };
    for (const Row& row : rows) {
        TestHost host(row.personality);
        Engine().flags = static_cast<std::uint32_t>(row.engineFlags);
        Engine().flags2 = static_cast<std::uint32_t>(row.engineFlags2);
        host.SetUp();
        EXPECT_EQ(host.strict.OutFlags(), row.flags);
        EXPECT_EQ(host.strict.OutFlags2(), row.flags2);
        EXPECT_EQ(host.strict.PixelFormats(), row.formats);
    }
}

std::string s_Registered;

TEST(GlobalSetupTest, EngineAndHostLearnOfEachOther) {
    s_Registered.clear();
    TestHost host(AE, [](auto& options) { options.pluginPath = "/plugins/effect"; });
    host.Replace(kAEGPUtilitySuite, &AEGP_UtilitySuite3::AEGP_RegisterWithAEGP,
                 [](AEGP_GlobalRefcon refcon, const A_char* name, AEGP_PluginID*) -> A_Err {
                     s_Registered += (refcon ? "refcon " : "") + std::string(name);
                     return A_Err_NONE;
                 });
    host.SetUp();
    EXPECT_EQ(s_Registered, "HOSTID");
    EXPECT_EQ(Engine().calls.front(), "globalSetup null /plugins/effect");
    EXPECT_EQ(host.strict.About(), "About\n\n");
    Engine().about = std::string(1000, 'x');
    EXPECT_EQ(host.strict.About(), std::string(253, 'x') + "\n\n") << "never past the field";

    TestHost premiere(Pr);
    premiere.before = [](Command& command) {
        command.in.utils->get_platform_data = [](PF_ProgPtr, PF_PlatDataID which, void* data) -> PF_Err {
            *static_cast<void**>(data) = data; // not a path that the engine could read
            return which == PF_PlatData_BUNDLE_REF ? PF_Err_NONE : PF_Err_BAD_CALLBACK_PARAM;
        };
    };
    premiere.SetUp();
    EXPECT_EQ(Engine().calls.front(), "globalSetup module ");
    EXPECT_EQ(premiere.strict.About(), "");
}

TEST(GlobalSetupTest, FailuresPublishNothingAndLeakNothing) {
    struct Row {
        bool setupWorks;
        long allocations;
        A_Err registerError;
        const char* missingSuite;
        PF_Err expected;
    };
    for (const Row& row : {Row{false, -1, 0, "", PF_Err_INTERNAL_STRUCT_DAMAGED},
                           Row{true, 0, 0, "", PF_Err_INTERNAL_STRUCT_DAMAGED}, Row{true, -1, 5, "", 5},
                           Row{true, -1, 0, kAEGPUtilitySuite, PF_Err_BAD_CALLBACK_PARAM},
                           Row{true, -1, 0, kPFHandleSuite, PF_Err_BAD_CALLBACK_PARAM}}) {
        TestHost host(AE, [&](auto& options) {
            options.allocations = row.allocations;
            options.registerError = row.registerError;
            options.missingSuites = {row.missingSuite};
        });
        Engine().setupWorks = row.setupWorks;
        host.after = [](Command& command) { EXPECT_EQ(command.out.global_data, nullptr); };
        EXPECT_EQ(ErrorOf([&] { host.strict.GlobalSetup(); }), row.expected);
    }
}

} // namespace
