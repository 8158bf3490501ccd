#include <gmock/gmock.h>

#include <thread>

#include "tests/stricthost/StandIn.h"

namespace {

using stricthost::Instance;
using stricthost::Options;
using stricthost::Personality;
using testing::IsEmpty;

std::string LogOfOneFrame(Personality personality, StandIn& plugin) {
    Options options;
    options.personality = personality;
    plugin.formats = {0x62677261};
    const auto host = SetUpHost(options);
    const fxhost::Picture input = Gradient(4, 4);
    stricthost::FrameRequest request;
    request.input = &input;
    EXPECT_EQ(host->NewInstance().Render(request).error, PF_Err_NONE);
    host->Finish();
    EXPECT_THAT(host->Violations(), IsEmpty());
    return plugin.log;
}

TEST(InstanceTest, EachPersonalityHasItsOrderOfCommands) {
    {
        StandIn plugin;
        EXPECT_EQ(LogOfOneFrame(Personality::AfterEffects, plugin), "gpsPSdx");
    }
    {
        StandIn plugin;
        plugin.flags2 = 0;
        EXPECT_EQ(LogOfOneFrame(Personality::AfterEffects, plugin), "gpsFRDdx");
    }
    {
        StandIn plugin;
        EXPECT_EQ(LogOfOneFrame(Personality::AfterEffectsPlain, plugin), "gpsFRDdx");
    }
    {
        StandIn plugin;
        plugin.flags |= PF_OutFlag_I_EXPAND_BUFFER;
        EXPECT_EQ(LogOfOneFrame(Personality::AfterEffectsPlain, plugin), "gpsFDFRDdx");
    }
    {
        StandIn plugin;
        EXPECT_EQ(LogOfOneFrame(Personality::Premiere, plugin), "gpsFRDdx");
    }
}

TEST(InstanceTest, GlobalDataComesBackWithEveryCommandUntilThePluginFreesIt) {
    StandIn plugin;
    PF_Handle global = nullptr;
    int commands = 0;
    plugin.instead[PF_Cmd_GLOBAL_SETUP] = [&](Command& c) -> PF_Err {
        EXPECT_EQ(c.in->global_data, nullptr);
        c.out->my_version = 1;
        c.out->global_data = global = Handles(c).host_new_handle(8);
        return PF_Err_NONE;
    };
    const auto expect = [&](Command& c) {
        EXPECT_EQ(c.in->global_data, global);
        EXPECT_EQ(c.out->global_data, global);
        ++commands;
    };
    plugin.before[PF_Cmd_PARAMS_SETUP] = plugin.before[PF_Cmd_SEQUENCE_SETUP] = expect;
    plugin.instead[PF_Cmd_GLOBAL_SETDOWN] = [&](Command& c) -> PF_Err {
        expect(c);
        Handles(c).host_dispose_handle(c.in->global_data);
        c.out->global_data = nullptr;
        return PF_Err_NONE;
    };
    const auto host = SetUpHost();
    host->NewInstance();
    host->Finish();
    EXPECT_EQ(commands, 3);
    EXPECT_THAT(host->Violations(), IsEmpty());
}

TEST(InstanceTest, DuplicateFlattensAndSetsBothUpAgain) {
    StandIn plugin;
    std::string seen;
    plugin.before[PF_Cmd_SEQUENCE_RESETUP] = [&seen](Command& c) {
        seen += std::string(*c.in->sequence_data) + ";";
    };
    const auto host = SetUpHost();
    Instance& original = host->NewInstance();
    original.SetValue(1, 7.0);
    Instance& copy = original.Duplicate();
    EXPECT_EQ(plugin.log, "gpsfrr");
    EXPECT_EQ(seen, "flat;flat;");
    EXPECT_EQ(std::get<double>(copy.Value(1)), 7.0);
    original.Delete();
    copy.SetValue(1, 8.0);
    host->Finish();
    EXPECT_EQ(plugin.log, "gpsfrrddx");
    EXPECT_THAT(host->Violations(), IsEmpty());
    EXPECT_THROW(original.UpdateUI(), std::logic_error);
}

TEST(InstanceTest, AProjectIsSavedAsTheFlatBytesAndOpenedFromThem) {
    StandIn plugin;
    const auto host = SetUpHost();
    const std::vector<char> bytes = host->NewInstance().SaveAndReopen();
    ASSERT_EQ(bytes.size(), 16u);
    EXPECT_STREQ(bytes.data(), "flat");
    host->OpenInstance(&bytes);
    host->OpenInstance(nullptr);
    EXPECT_EQ(plugin.log, "gpsfdrrr");
    host->Finish();
    EXPECT_THAT(host->Violations(), IsEmpty());
}

TEST(InstanceTest, APluginMayDisposeOfTheOldHandleItself) {
    StandIn plugin;
    plugin.after[PF_Cmd_SEQUENCE_FLATTEN] = [](Command& c) {
        Handles(c).host_dispose_handle(c.in->sequence_data);
    };
    const auto host = SetUpHost();
    host->NewInstance().SaveAndReopen();
    host->Finish();
    EXPECT_THAT(host->Violations(), IsEmpty());
}

TEST(InstanceTest, AFailedSetUpReachesTheCallerAndLeavesNothing) {
    StandIn plugin;
    Options options;
    options.allocations = 1; // the global handle
    const auto host = SetUpHost(options);
    try {
        host->NewInstance();
        ADD_FAILURE() << "no error";
    } catch (const stricthost::CommandError& error) {
        EXPECT_EQ(error.Code(), PF_Err_OUT_OF_MEMORY);
        EXPECT_THAT(error.what(), testing::HasSubstr("SEQUENCE_SETUP"));
    }
    host->Finish();
    EXPECT_THAT(host->Violations(), IsEmpty());
    EXPECT_EQ(plugin.log, "gpsx");
}

TEST(InstanceTest, CommandsOutOfOrderAreTheCallersFault) {
    StandIn plugin;
    stricthost::StrictHost host(StandIn::Entry, {});
    EXPECT_THROW(host.ParamsSetup(), std::logic_error);
    EXPECT_THROW(host.NewInstance(), std::logic_error);
    host.GlobalSetup();
    EXPECT_THROW(host.GlobalSetup(), std::logic_error);
    EXPECT_EQ(host.About(), "Stand-in");
    host.Finish();
    host.Finish();
    EXPECT_EQ(plugin.log, "gax");
}

TEST(InstanceTest, ABundleThatCannotBeLoadedIsNamed) {
    EXPECT_THROW(
        {
            try {
                stricthost::StrictHost host(std::filesystem::path("/no/such.plugin"), {});
            } catch (const std::runtime_error& error) {
                EXPECT_THAT(error.what(), testing::HasSubstr("/no/such.plugin"));
                throw;
            }
        },
        std::runtime_error);
}

TEST(InstanceTest, EightThreadsUseTheirInstancesAtOnce) {
    StandIn plugin;
    plugin.before[PF_Cmd_SMART_RENDER] = [](Command& c) {
        PF_ParamDef def = {};
        c.in->inter.checkout_param(c.in->effect_ref, 1, 0, 1, 25, &def);
        c.in->inter.checkin_param(c.in->effect_ref, &def);
        Acquire(c, "PF World Suite", 2);
        Release(c, "PF World Suite", 2);
    };
    const auto host = SetUpHost();
    const auto work = [&host](unsigned number) {
        Instance* instance = &host->NewInstance();
        const fxhost::Picture input = Gradient(8 + number, 5);
        stricthost::FrameRequest request;
        request.input = &input;
        for (int i = 0; i < 20; ++i) {
            EXPECT_EQ(instance->Render(request).picture.bytes, Inverted(input).bytes);
            if (i % 5 == 0) {
                Instance& copy = instance->Duplicate();
                instance->Delete();
                instance = &copy;
            }
        }
    };
    std::vector<std::thread> threads;
    for (unsigned i = 0; i < 8; ++i)
        threads.emplace_back(work, i);
    for (std::thread& thread : threads)
        thread.join();
    host->Finish();
    EXPECT_THAT(host->Violations(), IsEmpty());
}

} // namespace
