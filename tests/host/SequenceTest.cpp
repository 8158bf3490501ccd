#include <cstring>
#include <numeric>

#include "host/EntryPoint.h"
#include "host/HostState.h"
#include "tests/host/TestHost.h"

namespace {

const auto s_Button = [](Command& command) {
    if (command.code == PF_Cmd_USER_CHANGED_PARAM)
        command.params[1]->param_type = PF_Param_BUTTON;
};

TEST(SequenceTest, SetUpReplacesAnOldInstanceAndFlattenedDataCreateANewOne) {
    TestHost host;
    host.SetUp();
    Engine().calls.clear();
    host.before = [](Command& command) { // sent twice
        EntryPointFunc(command.code, &command.in, &command.out, nullptr, nullptr, nullptr);
        command.in.sequence_data = command.out.sequence_data;
    };
    Instance& instance = host.strict.NewInstance();
    host.before = nullptr;
    EXPECT_EQ(TestHost::Record(instance).engineSequence, reinterpret_cast<void*>(2));
    EXPECT_EQ(TestHost::Record(instance).uiReady, 0);
    Engine().sequenceBytes = {1, 2, 3};
    host.after = [&](Command& command) {
        if (command.code == PF_Cmd_SEQUENCE_SETDOWN)
            return;
        EXPECT_TRUE(instance.Host().handles.IsLive(command.in.sequence_data))
            << "the old handle belongs to the host";
        if (command.code == PF_Cmd_SEQUENCE_FLATTEN)
            Engine().sequenceBytes = {0, 0, 0};
    };
    std::vector<char> expected(8192);
    std::iota(expected.begin(), expected.begin() + 3, char(1));
    EXPECT_EQ(instance.SaveAndReopen(), expected) << "flattened data contain no pointers";
    EXPECT_THAT(Engine().sequenceBytes, ElementsAre(1, 2, 3));
    EXPECT_EQ(TestHost::Record(instance).engineSequence, reinterpret_cast<void*>(3));
    EXPECT_EQ(instance.LastOutFlags(), PF_OutFlag_REFRESH_UI);
    instance.Delete();
    EXPECT_THAT(Engine().calls,
                ElementsAre("initSequenceData", "releaseSequenceData 1", "initSequenceData",
                            "setSequenceData 2", "flatten", "initSequenceData", "setSequenceData 3",
                            "unflatten", "getNumParams", "releaseSequenceData 3"));
}

TEST(SequenceTest, StalePointersOfASavedProjectAreNeverUsed) {
    TestHost host;
    host.SetUp({Declared(Parameter::FLOAT)});
    Adapter::SequenceRecord record = {};
    record.engineSequence = reinterpret_cast<void*>(0xDEAD);
    std::vector<char> saved(Adapter::SequenceRecordSize);
    std::memcpy(saved.data(), &record, sizeof record);
    host.strict.OpenInstance(&saved).UpdateUI();
    for (const std::string& call : Engine().calls)
        EXPECT_EQ(call.find(std::to_string(0xDEAD)), std::string::npos) << call;
}

TEST(SequenceTest, CommandsWithoutDataLeaveTheEngineAlone) {
    TestHost host;
    Instance& instance = host.Start({Declared(Parameter::FLOAT)});
    host.before = [](Command& command) { command.in.sequence_data = nullptr; };
    EXPECT_EQ(instance.UpdateUI(), PF_Err_NONE);
    EXPECT_EQ(instance.UserChanged(1), PF_Err_NONE);
    for (const PF_Cmd code : {PF_Cmd_SEQUENCE_FLATTEN, PF_Cmd_SEQUENCE_SETDOWN})
        EXPECT_EQ(TestHost::Send(code, instance), PF_Err_NONE) << code;
    EXPECT_TRUE(Engine().calls.empty());
}

TEST(SequenceTest, ResetupWithoutDataMakesAFreshInstanceThatRenders) {
    for (const auto personality : {AE, Plain, Pr}) {
        TestHost host(personality);
        host.Start({Declared(Parameter::FLOAT)});
        Instance& instance = host.strict.OpenInstance(nullptr);
        EXPECT_THAT(Engine().calls, ElementsAre("initSequenceData", "getNumParams", "getParamDesc"));
        EXPECT_EQ(TestHost::Record(instance).wasResetup, 1);
        EXPECT_EQ(TestHost::Record(instance).uiReady, personality != Pr);
        instance.SetValue(1, 0.5);
        EXPECT_EQ(Render(instance).error, PF_Err_NONE);
        EXPECT_EQ(Engine().values.at(0).Float(0), 0.5f);
        EXPECT_EQ(Engine().renders.size(), 1u);
    }
}

// Hosts copy sequence data byte by byte, because the flags of the plug-in do not ask for flattening.
TEST(SequenceTest, AByteCopyGetsANewSequenceAndItsSetDownLeavesTheOriginalAlone) {
    for (const bool used : {true, false}) {
        TestHost host;
        Instance& original = host.Start();
        PF_InData in = {};
        original.FillIn(in);
        auto& handles = original.Host().handles;
        const PF_Handle copy = handles.NewFrom(handles.Bytes(in.sequence_data));
        host.before = [&](Command& command) { command.in.sequence_data = copy; };
        for (int i = 0; used && i < 2; ++i)
            EXPECT_EQ(original.UpdateUI(), PF_Err_NONE);
        host.after = [](Command& command) {
            EXPECT_EQ(command.in.sequence_data, nullptr);
            EXPECT_EQ(command.out.sequence_data, nullptr);
        };
        EXPECT_EQ(TestHost::Send(PF_Cmd_SEQUENCE_SETDOWN, original), PF_Err_NONE);
        EXPECT_FALSE(handles.IsLive(copy));
        EXPECT_EQ(Adapter::s_SequenceOfHandle.count(copy), 0u);
        EXPECT_EQ(Engine().Count("initSequenceData"), used ? 1u : 0u) << "at the first use only";
        EXPECT_EQ(Engine().Count("setSequenceData 2"), used ? 2u : 0u);
        EXPECT_EQ(Engine().Count("releaseSequenceData 2"), used ? 1u : 0u);
        host.before = host.after = nullptr;
        EXPECT_EQ(original.UpdateUI(), PF_Err_NONE);
        EXPECT_EQ(Engine().calls[Engine().calls.size() - 5], "setSequenceData 1") << "still the original's";
        EXPECT_EQ(Engine().Count("releaseSequenceData 1"), 0u);
        TestHost::Record(original).engineSequence = reinterpret_cast<void*>(0xDEAD);
        EXPECT_EQ(original.UpdateUI(), PF_Err_NONE);
        EXPECT_EQ(Engine().Count("setSequenceData " + std::to_string(0xDEAD)), 0u) << "written by the host";
    }
}

TEST(SequenceTest, OldHostsGetForcedRendersAndSomeTakeNoLockForSizing) {
    struct Row {
        Personality personality;
        A_short major, minor;
        unsigned locks;
        bool reopened, button; // true when the step forces a render
    };
    const Row rows[] = {
        {AE, 13, 9, 1, false, false},  {AE, 13, 8, 1, true, true},    {AE, 12, 14, 1, true, true},
        {AE, 14, 9, 1, false, false},  {Plain, 13, 0, 0, true, true}, {Plain, 13, 1, 0, true, true},
        {Plain, 12, 1, 1, true, true}, {Plain, 13, 2, 1, true, true}, {AE, 13, 1, 0, true, true},
        {Pr, 13, 1, 1, false, true},
    };
    for (const Row& row : rows) {
        TestHost host(row.personality, [&](auto& options) {
            options.apiMajor = row.major;
            options.apiMinor = row.minor;
        });
        Instance& instance = host.Start({Declared(Parameter::FLOAT)});
        SCOPED_TRACE(std::to_string(row.major) + "." + std::to_string(row.minor));
        Render(instance);
        EXPECT_EQ(Engine().Count("lockFrame"), row.locks + 1) << "once for rendering";
        const auto forces = [&] { return (instance.LastOutFlags() & PF_OutFlag_FORCE_RERENDER) != 0; };
        instance.SaveAndReopen();
        EXPECT_EQ(forces(), row.reopened);
        EXPECT_EQ(TestHost::Record(instance).uiReady, row.personality != Pr);
        host.before = s_Button;
        EXPECT_EQ(instance.UserChanged(1), PF_Err_NONE);
        EXPECT_EQ(forces(), row.button);
        EXPECT_EQ(TestHost::Record(instance).uiReady, 1);
    }
}

TEST(UserChangedTest, ButtonsRunTheScriptAgainForInstancesThatCameFromAProject) {
    TestHost host;
    Instance& opened = host.Start({Declared(Parameter::FLOAT)}).Duplicate();
    Engine().calls.clear();
    host.before = s_Button;
    EXPECT_EQ(opened.UserChanged(1), PF_Err_NONE);
    EXPECT_EQ(opened.LastOutFlags(), PF_OutFlag_REFRESH_UI);
    Instance& made = host.strict.NewInstance();
    EXPECT_EQ(made.UserChanged(1), PF_Err_NONE);
    EXPECT_THAT(Engine().calls, ElementsAre("setSequenceData 3", "lockFrame", "resetup", "getNumParams",
                                            "getParamDesc", "releaseFrame", "initSequenceData",
                                            "setSequenceData 4", "lockFrame", "releaseFrame"));
    Engine().lockWorks = false;
    EXPECT_EQ(opened.UserChanged(1), PF_Err_INTERNAL_STRUCT_DAMAGED);
}

} // namespace
