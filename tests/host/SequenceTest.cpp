#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/SequenceRecord.h"
#include "tests/host/FakeHost.h"
#include "tests/support/RecordingPlugin.h"

namespace {

using testing::ElementsAre;

RecordingPlugin& Engine() {
    return RecordingPlugin::Instance();
}

Adapter::SequenceRecord& Record(FakeHost& host) {
    return *Adapter::FindRecord(host.in);
}

bool RestIsZero(FakeHost& host) {
    const auto* bytes = reinterpret_cast<const char*>(&Record(host));
    return std::all_of(bytes + sizeof(Adapter::SequenceRecord), bytes + 8192,
                       [](char byte) { return byte == 0; });
}

void FreeOld(FakeHost& host, PF_Handle old) {
    void** block = reinterpret_cast<void**>(old);
    ASSERT_EQ(host.handles.erase(block), 1u) << "the old handle is the host's";
    std::free(*block);
    delete block;
}

TEST(SequenceTest, SetUpMakesOneRecordAndReplacesAnOldOne) {
    FakeHost host;
    ASSERT_EQ(host.Send(PF_Cmd_SEQUENCE_SETUP), PF_Err_NONE);
    EXPECT_THAT(Engine().calls, ElementsAre("initSequenceData"));
    EXPECT_EQ(Record(host).engineSequence, reinterpret_cast<void*>(1));
    EXPECT_EQ(Record(host).uiReady, 0);
    EXPECT_EQ(Record(host).wasResetup, 0);
    EXPECT_TRUE(RestIsZero(host));

    ASSERT_EQ(host.Send(PF_Cmd_SEQUENCE_SETUP), PF_Err_NONE);
    EXPECT_THAT(Engine().calls, ElementsAre("initSequenceData", "releaseSequenceData 1", "initSequenceData"));
    EXPECT_EQ(host.LiveHandles(), 1);

    ASSERT_EQ(host.Send(PF_Cmd_SEQUENCE_SETDOWN), PF_Err_NONE);
    EXPECT_EQ(Engine().calls.back(), "releaseSequenceData 2");
    EXPECT_EQ(host.in.sequence_data, nullptr);
    EXPECT_EQ(host.LiveHandles(), 0);
    EXPECT_EQ(host.Send(PF_Cmd_SEQUENCE_SETDOWN), PF_Err_NONE) << "twice";
    EXPECT_EQ(host.Unreturned(), "");
}

TEST(SequenceTest, FlattenedDataComesBackAsAFreshInstance) {
    FakeHost host;
    host.Send(PF_Cmd_SEQUENCE_SETUP);
    Engine().sequenceBytes = {1, 2, 3};
    const PF_Handle live = host.in.sequence_data;
    ASSERT_EQ(host.Send(PF_Cmd_SEQUENCE_FLATTEN), PF_Err_NONE);
    EXPECT_EQ(Engine().calls[1], "setSequenceData 1");
    const PF_Handle flat = host.in.sequence_data;
    ASSERT_NE(flat, live);
    EXPECT_EQ(Record(host).engineSequence, nullptr);
    EXPECT_EQ(Record(host).lastWidth, 0x030201u);
    FreeOld(host, live);

    Engine().calls.clear();
    Engine().sequenceBytes = {0, 0, 0};
    ASSERT_EQ(host.Send(PF_Cmd_SEQUENCE_RESETUP), PF_Err_NONE);
    EXPECT_THAT(Engine().sequenceBytes, ElementsAre(1, 2, 3));
    EXPECT_THAT(std::vector<std::string>(Engine().calls.begin(), Engine().calls.begin() + 3),
                ElementsAre("initSequenceData", "setSequenceData 2", "unflatten"));
    EXPECT_EQ(Record(host).engineSequence, reinterpret_cast<void*>(2));
    EXPECT_EQ(Record(host).uiReady, 1);
    EXPECT_EQ(Record(host).wasResetup, 1);
    EXPECT_TRUE(RestIsZero(host));
    EXPECT_EQ(host.out.out_flags, PF_OutFlag_REFRESH_UI);
    FreeOld(host, flat);
}

TEST(SequenceTest, StalePointersOfASavedProjectAreNeverUsed) {
    FakeHost host;
    host.Send(PF_Cmd_SEQUENCE_SETUP);
    Record(host).engineSequence = reinterpret_cast<void*>(0xDEAD);
    Engine().calls.clear();
    host.Send(PF_Cmd_SEQUENCE_RESETUP);
    for (const std::string& call : Engine().calls)
        EXPECT_EQ(call.find(std::to_string(0xDEAD)), std::string::npos) << call;
}

TEST(SequenceTest, FlatDataMaySetDownAndMissingDataDoNothing) {
    FakeHost host;
    for (const PF_Cmd command : {PF_Cmd_SEQUENCE_RESETUP, PF_Cmd_SEQUENCE_FLATTEN, PF_Cmd_SEQUENCE_SETDOWN,
                                 PF_Cmd_UPDATE_PARAMS_UI, PF_Cmd_FRAME_SETUP})
        EXPECT_EQ(host.Send(command), PF_Err_NONE);
    EXPECT_EQ(host.UserChanged(0), PF_Err_NONE);
    EXPECT_THAT(Engine().calls, ElementsAre());

    host.Send(PF_Cmd_SEQUENCE_SETUP);
    host.Send(PF_Cmd_SEQUENCE_FLATTEN);
    EXPECT_EQ(host.Send(PF_Cmd_SEQUENCE_SETDOWN), PF_Err_NONE);
    EXPECT_EQ(Engine().calls.back(), "releaseSequenceData 0");
}

TEST(SequenceTest, MemoryRunsOut) {
    for (const PF_Cmd command : {PF_Cmd_SEQUENCE_SETUP, PF_Cmd_SEQUENCE_RESETUP, PF_Cmd_SEQUENCE_FLATTEN}) {
        FakeHost host;
        host.Send(PF_Cmd_SEQUENCE_SETUP);
        host.allocationsLeft = 0;
        EXPECT_EQ(host.Send(command), PF_Err_OUT_OF_MEMORY) << command;
        EXPECT_EQ(host.Unreturned(), "");
        if (command == PF_Cmd_SEQUENCE_SETUP)
            EXPECT_EQ(host.in.sequence_data, nullptr) << "the old instance is gone already";
        else
            EXPECT_EQ(Record(host).engineSequence, reinterpret_cast<void*>(1)) << command;
    }
}

TEST(SequenceTest, ReopenedInstancesRenderAgainInOldHosts) {
    struct Row {
        FakeHost::Kind kind;
        A_short major, minor;
        bool forced;
        int uiReady;
    };
    const Row rows[] = {
        {FakeHost::Kind::AfterEffects, 13, 9, false, 1}, {FakeHost::Kind::AfterEffects, 13, 8, true, 1},
        {FakeHost::Kind::AfterEffects, 12, 14, true, 1}, {FakeHost::Kind::AfterEffects, 14, 0, true, 1},
        {FakeHost::Kind::AfterEffects, 14, 9, false, 1}, {FakeHost::Kind::Premiere, 13, 4, false, 0},
    };
    for (const Row& row : rows) {
        FakeHost host(row.kind);
        host.in.version.major = row.major;
        host.in.version.minor = row.minor;
        host.Send(PF_Cmd_SEQUENCE_SETUP);
        ASSERT_EQ(host.Send(PF_Cmd_SEQUENCE_RESETUP), PF_Err_NONE);
        EXPECT_EQ((host.out.out_flags & PF_OutFlag_FORCE_RERENDER) != 0, row.forced)
            << row.major << row.minor;
        EXPECT_EQ(Record(host).uiReady, row.uiReady);
    }
}

TEST(UserChangedTest, ButtonsReloadInstancesThatCameFromAProject) {
    FakeHost host;
    host.SetUp();
    host.params.resize(2);
    host.in.num_params = 2;
    host.params[1].param_type = PF_Param_BUTTON;
    ASSERT_EQ(host.UserChanged(1), PF_Err_NONE);
    EXPECT_THAT(Engine().calls, ElementsAre("setSequenceData 1", "lockFrame", "releaseFrame"));

    host.Send(PF_Cmd_SEQUENCE_RESETUP);
    Record(host).uiReady = 0;
    Engine().calls.clear();
    ASSERT_EQ(host.UserChanged(1), PF_Err_NONE);
    EXPECT_THAT(Engine().calls,
                ElementsAre("setSequenceData 2", "lockFrame", "resetup", "getNumParams", "releaseFrame"));
    EXPECT_EQ(Record(host).uiReady, 1);
    EXPECT_EQ(host.out.out_flags, PF_OutFlag_REFRESH_UI);

    Engine().lockWorks = false;
    EXPECT_EQ(host.UserChanged(1), PF_Err_INTERNAL_STRUCT_DAMAGED);
    EXPECT_EQ(host.UserChanged(0), PF_Err_NONE);
    EXPECT_EQ(host.UserChanged(2), PF_Err_NONE) << "past the host's parameters";
}

} // namespace
