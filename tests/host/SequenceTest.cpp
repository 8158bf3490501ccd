#include <cstring>
#include <numeric>

#include "host/EntryPoint.h"
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
                            "setSequenceData 2", "flatten", "releaseSequenceData 0", "initSequenceData",
                            "setSequenceData 3", "unflatten", "getNumParams", "releaseSequenceData 3"));
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

    Engine().calls.clear();
    Instance& empty = host.strict.OpenInstance(nullptr);
    EXPECT_EQ(empty.UpdateUI(), PF_Err_NONE);
    EXPECT_EQ(empty.UserChanged(1), PF_Err_NONE);
    empty.SaveAndReopen();
    empty.Delete();
    EXPECT_TRUE(Engine().calls.empty());
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
