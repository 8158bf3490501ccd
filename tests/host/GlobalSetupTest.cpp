#include "AE_EffectCB.h"
#include "AE_EffectCBSuites.h"
#include "AE_EffectSuites.h"
#include "AE_EffectUI.h"
#include "AE_GeneralPlug.h"
#include "PrSDKAESupport.h"
#include "host/EntryPoint.h"
#include "tests/host/TestHost.h"

namespace {

TEST(DispatchTest, CommandsThatAreNotHandledSucceedWithoutCallingTheEngine) {
    TestHost host;
    Instance& instance = host.Start();
    for (const PF_Cmd code : {2, 3, 9, 16, 17, 18, 19, 20, 21, 22, 25, 28, 31, 33, 1000, -1})
        EXPECT_EQ(TestHost::Send(code, instance), PF_Err_NONE) << code;
    EXPECT_TRUE(Engine().calls.empty());
    PF_InData in = {};
    PF_OutData out = {};
    for (const PF_Err err : {EntryPointFunc(PF_Cmd_FRAME_SETUP, nullptr, &out, nullptr, nullptr, nullptr),
                             EntryPointFunc(PF_Cmd_FRAME_SETUP, &in, nullptr, nullptr, nullptr, nullptr)})
        EXPECT_EQ(err, PF_Err_BAD_CALLBACK_PARAM);
}

TEST(GlobalSetupTest, VersionFlagsAndPixelFormatsAreReportedAsEachHostExpects) {
    constexpr unsigned always = 0x4008005, deep = 0x02000000, floats = 0x1000, noClones = 0x8000;
    using Formats = std::vector<std::uint32_t>;
    const Formats bytes = {0x62677261, 0x62677278};
    const Formats all = {0x62677261, 0x62677278, 0x62677258, 0x62677241, 0x62675241, 0x62675258};
    struct Row {
        const char* name;
        Personality personality;
        std::uint32_t version, flags, flags2;
        std::uint32_t hostVersion, hostFlags, hostFlags2;
        Formats formats;
    };
    const Row rows[] = {
        {"version 1.1 build 1", AE, 0x4041, deep | 0x200, 0x1400, 557057, always | deep | 0x200, 0x1400, {}},
        {"largest major version", AE, 63, 0, 0, 7u << 19 | 7u << 26, always, 0, {}},
        {"upper half of the minor version is lost", Pr, 255u << 6, deep, floats, 15u << 15, always, noClones,
         all},
        {"upper bits of the build are lost", Pr, 0xFFFFu << 14, 0, 0, 0x1FF, always, noClones, bytes},
        {"stage", Pr, 3u << 30, 0, 0, 3u << 9, always, noClones, bytes},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        TestHost host(row.personality);
        Engine().version = row.version;
        Engine().flags = row.flags;
        Engine().flags2 = row.flags2;
        host.SetUp();
        EXPECT_EQ(host.strict.Version(), row.hostVersion);
        EXPECT_EQ(static_cast<unsigned>(host.strict.OutFlags()), row.hostFlags);
        EXPECT_EQ(static_cast<unsigned>(host.strict.OutFlags2()), row.hostFlags2);
        EXPECT_EQ(host.strict.PixelFormats(), row.formats);
    }
}

std::string s_Received; // by the host

TEST(GlobalSetupTest, TheEngineGetsTheModuleAndTheHostGetsNameButtonAndEvents) {
    const auto setUp = [](TestHost& host) {
        s_Received.clear();
        host.Replace(kAEGPUtilitySuite, &AEGP_UtilitySuite3::AEGP_RegisterWithAEGP,
                     [](AEGP_GlobalRefcon refcon, const A_char* name, AEGP_PluginID*) -> A_Err {
                         s_Received += (refcon ? "refcon " : "name ") + std::string(name);
                         return A_Err_NONE;
                     });
        host.Replace(kPFEffectUISuite, &PF_EffectUISuite1::PF_SetOptionsButtonName,
                     [](PF_ProgPtr, const A_char* name) -> PF_Err {
                         s_Received += ", button '" + std::string(name) + "'";
                         return PF_Err_NONE;
                     });
        host.Replace(kPFPixelFormatSuite, &PF_PixelFormatSuite1::ClearSupportedPixelFormats,
                     [](PF_ProgPtr) -> PF_Err {
                         s_Received += "formats cleared";
                         return PF_Err_NONE;
                     });
        host.after = [](Command& command) {
            if (command.code == PF_Cmd_GLOBAL_SETUP) {
                EXPECT_EQ(**reinterpret_cast<char**>(command.out.global_data), 1) << "initialised";
            }
        };
        host.before = [](Command& command) {
            command.in.inter.register_ui = [](PF_ProgPtr, PF_CustomUIInfo* info) -> PF_Err {
                s_Received += ", events " + std::to_string(info->events);
                return PF_Err_NONE;
            };
            if (command.in.appl_id != 0x50724D72)
                return;
            command.in.utils->get_platform_data = [](PF_ProgPtr, PF_PlatDataID which, void* data) -> PF_Err {
                *static_cast<void**>(data) = data; // not the path of a bundle
                return which == PF_PlatData_BUNDLE_REF ? PF_Err_NONE : PF_Err_BAD_CALLBACK_PARAM;
            };
        };
        host.SetUp();
    };
    TestHost host(AE, [](auto& options) { options.pluginPath = "/plugins/effect"; });
    setUp(host);
    EXPECT_EQ(s_Received, "name HOSTID, button ' ', events 4");
    EXPECT_EQ(Engine().calls.front(), "globalSetup null /plugins/effect");
    EXPECT_EQ(host.strict.About(), "About\n\n");
    Engine().about = std::string(1000, 'x');
    EXPECT_EQ(host.strict.About(), std::string(253, 'x') + "\n\n") << "never beyond the field";

    TestHost premiere(Pr);
    setUp(premiere);
    EXPECT_EQ(s_Received, "formats cleared, events 4");
    EXPECT_EQ(Engine().calls.front(), "globalSetup module ");
    EXPECT_EQ(premiere.strict.About(), "");
}

TEST(GlobalSetupTest, AnErrorOfTheOptionsButtonOrTheCustomUiFailsTheParameters) {
    for (const bool button : {true, false}) {
        TestHost host;
        if (button)
            host.Replace(kPFEffectUISuite, &PF_EffectUISuite1::PF_SetOptionsButtonName, Fails<22>);
        else
            host.before = [](Command& command) { command.in.inter.register_ui = Fails<22>; };
        EXPECT_EQ(ErrorOf([&] { host.SetUp(); }), 22);
    }
}

TEST(GlobalSetupTest, AFailedSetUpReturnsItsErrorAndLeavesNothingBehind) {
    struct Row {
        const char* name;
        PF_Cmd command; // the one that fails
        PF_Err expected;
        void (*change)(stricthost::Options& options);
    };
    constexpr PF_Err missing = PF_Err_BAD_CALLBACK_PARAM, memory = PF_Err_OUT_OF_MEMORY, internal = 512;
    const Row rows[] = {
        {"engine", PF_Cmd_GLOBAL_SETUP, internal, [](auto&) { Engine().setupWorks = false; }},
        {"memory for global data", PF_Cmd_GLOBAL_SETUP, internal,
         [](auto& options) { options.allocations = 0; }},
        {"registration", PF_Cmd_GLOBAL_SETUP, 5, [](auto& options) { options.registerError = 5; }},
        {"AEGP utility suite", PF_Cmd_GLOBAL_SETUP, missing,
         [](auto& options) { options.missingSuites = {kAEGPUtilitySuite}; }},
        {"handle suite", PF_Cmd_GLOBAL_SETUP, missing,
         [](auto& options) { options.missingSuites = {kPFHandleSuite}; }},
        {"effect UI suite", PF_Cmd_PARAMS_SETUP, missing,
         [](auto& options) { options.missingSuites = {kPFEffectUISuite}; }},
        {"refused check box", PF_Cmd_PARAMS_SETUP, PF_Err_UNRECOGNIZED_PARAM_TYPE,
         [](auto& options) { options.refusedTypes = {PF_Param_CHECKBOX}; }},
        {"refused path, which is no failure", 0, 0,
         [](auto& options) { options.refusedTypes = {PF_Param_PATH}; }},
        {"memory for the record", PF_Cmd_SEQUENCE_SETUP, memory,
         [](auto& options) { options.allocations = 1; }},
        {"memory for flat data", PF_Cmd_SEQUENCE_FLATTEN, memory,
         [](auto& options) { options.allocations = 2; }},
        {"memory for the reopened record", PF_Cmd_SEQUENCE_RESETUP, memory,
         [](auto& options) { options.allocations = 3; }},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        TestHost host(AE, [&](auto& options) {
            options.allowParamGap = true;
            row.change(options);
        });
        PF_Cmd last = 0;
        host.after = [&](Command& command) {
            last = command.code;
            EXPECT_EQ(command.out.global_data == nullptr, row.command == PF_Cmd_GLOBAL_SETUP);
        };
        const PF_Err err = ErrorOf([&] {
            host.Start({Declared(Parameter::BOOL), Declared(Parameter::PATH)}).SaveAndReopen();
        });
        EXPECT_EQ(err, row.expected);
        EXPECT_EQ(row.expected ? last : 0, row.command);
    }
}

} // namespace
