#include <gtest/gtest.h>

#include <functional>
#include <thread>

#include "platform/CGL.h"
#include "tests/host/FakeHost.h"
#include "tests/support/RecordingPlugin.h"

// Stand-ins for the GL calls, so that the context which a command leaves behind can be seen without a GPU.
namespace {
thread_local CGLContextObj s_Current = nullptr;
}

CGLContextObj CGLGetCurrentContext() {
    return s_Current;
}

CGLError CGLSetCurrentContext(CGLContextObj context) {
    s_Current = context;
    return kCGLNoError;
}

namespace {

RecordingPlugin& Engine() {
    return RecordingPlugin::Instance();
}

const auto s_HostContext = reinterpret_cast<CGLContextObj>(0x1000);
const auto s_EngineContext = reinterpret_cast<CGLContextObj>(0x2000);

// A host in the middle of things: an instance from a project, every kind of parameter, worlds, an earlier
// frame to come.
struct BusyHost : FakeHost {
    explicit BusyHost(Kind kind) : FakeHost(kind) {
        for (const auto type : {Parameter::FLOAT, Parameter::COLOR, Parameter::LAYER, Parameter::POPUP})
            Engine().params.emplace_back("p", type, "Label");
        SetUp();
        Send(PF_Cmd_SEQUENCE_RESETUP);
        in.current_time = 1;
        in.width = in.height = 2;
        params[0].u.ld = params[3].u.ld = earlierFrame = input.world;
        inputWorld = &input.world;
        outputWorld = &output.world;
        button.param_type = PF_Param_BUTTON;
        params.push_back(button);
        in.num_params = static_cast<A_long>(params.size());
        Engine().result.assign(16, 7);
        Engine().feedbackFrames = kind == Kind::AfterEffects ? 1 : 0;
        Engine().onLock = [] { CGLSetCurrentContext(s_EngineContext); };
        Engine().calls.clear();
        log.clear();
        borrowed.clear();
        CGLSetCurrentContext(s_HostContext);
    }
    FakeWorld input{2, 2, 8}, output{2, 2, 8};
    PF_ParamDef button = {};
};

struct CommandRow {
    const char* name;
    std::function<PF_Err(BusyHost&)> send;
};

PF_Err RenderWithSetup(BusyHost& host) {
    if (const PF_Err err = host.Send(PF_Cmd_FRAME_SETUP))
        return err;
    return host.Send(PF_Cmd_RENDER, nullptr, &host.output.world);
}

const CommandRow s_Commands[] = {
    {"about", [](BusyHost& host) { return host.Send(PF_Cmd_ABOUT); }},
    {"global set-up", [](BusyHost& host) { return host.Send(PF_Cmd_GLOBAL_SETUP); }},
    {"parameters", [](BusyHost& host) { return host.Send(PF_Cmd_PARAMS_SETUP); }},
    {"sequence set-up", [](BusyHost& host) { return host.Send(PF_Cmd_SEQUENCE_SETUP); }},
    {"sequence resetup", [](BusyHost& host) { return host.Send(PF_Cmd_SEQUENCE_RESETUP); }},
    {"flatten", [](BusyHost& host) { return host.Send(PF_Cmd_SEQUENCE_FLATTEN); }},
    {"sequence set-down", [](BusyHost& host) { return host.Send(PF_Cmd_SEQUENCE_SETDOWN); }},
    {"frame set-up and render", RenderWithSetup},
    {"button", [](BusyHost& host) { return host.UserChanged(5); }},
    {"layer changed", [](BusyHost& host) { return host.UserChanged(3); }},
    {"ui update", [](BusyHost& host) { return host.Send(PF_Cmd_UPDATE_PARAMS_UI); }},
    {"smart pre-render", [](BusyHost& host) { return host.SmartPreRender(); }},
    {"smart render", [](BusyHost& host) { return host.SmartRender(); }},
};

// A command on another thread gets through only when the first thread let go of the mutex.
void ExpectOtherThreadsGetThrough(BusyHost& host) {
    std::thread other([&host] {
        PF_InData in = host.in;
        PF_OutData out = {};
        EXPECT_EQ(EntryPointFunc(PF_Cmd_DO_DIALOG, &in, &out, nullptr, nullptr, nullptr), PF_Err_NONE);
    });
    other.join();
}

// A resetup hands its record over before the last step; its frame is set up by a command of its own.
bool ThrowsBeforeHandingOver(const CommandRow& command, int call) {
    const std::string name = command.name, at = Engine().calls[static_cast<std::size_t>(call)];
    const bool handedOver = name == "sequence resetup" && (at == "getNumParams" || at == "getParamDesc");
    return !handedOver && name != "frame set-up and render";
}

// Runs the command with an engine that throws at its n-th call. False when it makes fewer calls.
bool ThrowAt(const CommandRow& command, FakeHost::Kind kind, int call, bool throwsInt) {
    BusyHost host(kind);
    const int handles = host.LiveHandles();
    Engine().throwAtCall = call;
    Engine().throwsInt = throwsInt;
    const PF_Err err = command.send(host);
    const bool thrown = static_cast<int>(Engine().calls.size()) > call;
    const std::string where = std::string(command.name) + ", " + (thrown ? Engine().calls[call] : "no throw");
    EXPECT_EQ(err, !thrown ? 0 : throwsInt ? RecordingPlugin::Thrown : PF_Err_INVALID_CALLBACK) << where;
    EXPECT_EQ(Engine().lockBalance, 0) << where;
    EXPECT_EQ(CGLGetCurrentContext(), s_HostContext) << where;
    EXPECT_EQ(host.Unreturned(), "") << where;
    if (thrown && ThrowsBeforeHandingOver(command, call)) {
        EXPECT_LE(host.LiveHandles(), handles) << where;
    }
    ExpectOtherThreadsGetThrough(host);
    return thrown;
}

TEST(ExceptionTest, EveryCallOfEveryCommandMayThrow) {
    for (const auto kind : {FakeHost::Kind::AfterEffects, FakeHost::Kind::Premiere})
        for (const CommandRow& command : s_Commands)
            for (const bool throwsInt : {true, false}) {
                int calls = 0;
                while (ThrowAt(command, kind, calls, throwsInt))
                    ++calls;
                const bool silent = kind == FakeHost::Kind::Premiere && command.name == std::string("about");
                EXPECT_EQ(calls == 0, silent) << command.name;
            }
}

TEST(ExceptionTest, TheHostsContextComesBackAfterOrdinaryCommands) {
    for (const CommandRow& command : s_Commands)
        for (const auto context : {s_HostContext, CGLContextObj(nullptr)}) {
            BusyHost host(FakeHost::Kind::AfterEffects);
            CGLSetCurrentContext(context);
            EXPECT_EQ(command.send(host), PF_Err_NONE) << command.name;
            EXPECT_EQ(CGLGetCurrentContext(), context) << command.name;
        }
}

TEST(ExceptionTest, TheFrameIsReleasedBeforeTheContextComesBack) {
    BusyHost host(FakeHost::Kind::AfterEffects);
    CGLContextObj atRelease = nullptr;
    Engine().onRelease = [&atRelease] { atRelease = CGLGetCurrentContext(); };
    host.SmartPreRender();
    EXPECT_EQ(atRelease, s_EngineContext);
    EXPECT_EQ(CGLGetCurrentContext(), s_HostContext);
}

TEST(ExceptionTest, CommandsOfManyThreadsRunOneAtATime) {
    BusyHost host(FakeHost::Kind::AfterEffects);
    int inside = 0;
    int most = 0;
    Engine().onLock = [&] { most = std::max(most, ++inside); };
    Engine().onRelease = [&] { --inside; };
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i)
        threads.emplace_back([&host] {
            PF_InData in = host.in;
            PF_OutData out = {};
            PF_UserChangedParamExtra extra = {};
            extra.param_index = 5;
            std::vector<PF_ParamDef*> array = host.Array();
            for (int n = 0; n < 20; ++n)
                EXPECT_EQ(EntryPointFunc(PF_Cmd_USER_CHANGED_PARAM, &in, &out, array.data(), nullptr, &extra),
                          PF_Err_NONE);
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(most, 1);
    EXPECT_EQ(Engine().Count("resetup"), 160u);
}

} // namespace
