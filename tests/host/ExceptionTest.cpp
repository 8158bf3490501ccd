#include <atomic>
#include <chrono>
#include <thread>

#include "host/EntryPoint.h"
#include "tests/host/TestHost.h"

namespace {

void SetEarlierFrames(stricthost::Options& options) {
    options.upstreamFrame = [](A_long, A_u_long) { return Picture(2, 2, 8); };
}

void Check(PF_Err err) {
    if (err != PF_Err_NONE)
        throw stricthost::CommandError(0, err, "");
}

PF_Err RenderFrame(Instance& instance) {
    FrameSpec request;
    request.time = 1;
    return Render(instance, Picture(2, 2, 8), request).error;
}

// Sends every kind of command, with parameters of several types and a feedback frame. Throws the first error.
void RunLifeCycle(TestHost& host) {
    Engine().result.assign(16, 7);
    host.SetUp({Declared(Parameter::FLOAT), Declared(Parameter::COLOR), Declared(Parameter::LAYER)});
    host.strict.About();
    Instance& instance = host.strict.NewInstance();
    Check(instance.UpdateUI());
    instance.SaveAndReopen();
    instance.SetValue(3, std::make_shared<const Picture>(2, 2, 8));
    Check(instance.UserChanged(3));
    host.before = [](Command& command) { command.params[1]->param_type = PF_Param_BUTTON; };
    Check(instance.UserChanged(1));
    host.before = nullptr;
    Check(RenderFrame(instance));
    instance.Duplicate().Delete();
}

void ExpectUnlockedMutex() {
    std::thread other([] { // returns only after the first thread has unlocked the mutex
        PF_InData in = {};
        PF_OutData out = {};
        EXPECT_EQ(EntryPointFunc(PF_Cmd_DO_DIALOG, &in, &out, nullptr, nullptr, nullptr), PF_Err_NONE);
    });
    other.join();
}

TEST(ExceptionTest, AnExceptionBeforeTheCommandStartsBecomesAnErrorCode) {
    PF_InData in = {};
    PF_OutData out = {};
    const auto send = [&] {
        return EntryPointFunc(PF_Cmd_FRAME_SETDOWN, &in, &out, nullptr, nullptr, nullptr);
    };
    const std::pair<PF_Err, std::function<void()>> rows[] = {
        {77, [] { throw 77; }}, {PF_Err_INVALID_CALLBACK, [] { throw std::bad_alloc(); }}};
    TestHost host;
    for (const auto& [expected, throwing] : rows) {
        Engine().onGet = throwing;
        EXPECT_EQ(send(), expected) << "the engine cannot be made";
        EXPECT_EQ(CGLGetCurrentContext(), HostContext);
        Engine().onGet = nullptr;
        TestHost::onGetContext = throwing;
        EXPECT_EQ(send(), expected) << "the guard cannot be made";
        TestHost::onGetContext = nullptr;
        ExpectUnlockedMutex();
    }
    EXPECT_EQ(send(), PF_Err_NONE);
}

// Runs a life cycle in which the n-th call of the engine throws. Returns false when there are fewer calls.
bool ThrowAt(Personality personality, std::size_t call, bool throwsInt) {
    TestHost host(personality, SetEarlierFrames);
    CGLContextObj atRelease = EngineContext;
    Engine().onRelease = [&] { atRelease = CGLGetCurrentContext(); };
    Engine().feedbackFrames = personality == Pr ? 0 : 1;
    Engine().throwAtCall = static_cast<int>(call);
    Engine().throwsInt = throwsInt;
    const PF_Err err = ErrorOf([&] { RunLifeCycle(host); });
    const bool thrown = Engine().calls.size() > call;
    const std::string at = thrown ? Engine().calls[call] : "no throw";
    EXPECT_EQ(err, !thrown ? 0 : throwsInt ? RecordingPlugin::Thrown : PF_Err_INVALID_CALLBACK) << at;
    EXPECT_EQ(Engine().lockBalance, 0) << at;
    EXPECT_EQ(CGLGetCurrentContext(), HostContext) << at;
    EXPECT_EQ(atRelease, EngineContext)
        << at << ": the frame must be released before the context is restored";
    ExpectUnlockedMutex();
    if (at.starts_with("releaseSequenceData")) // the host disposes of data whose set-down failed
        host.allowed.insert("SEQUENCE_SETDOWN did not dispose of sequence_data");
    if (at == "releaseFrame") // the handle was published before the last step failed
        host.allowed.insert("a handle of 8 bytes made in FRAME_SETUP was never disposed of");
    Engine().onRelease = nullptr;
    if (at == "unflatten") { // the sequence of the new record is released again
        EXPECT_EQ(Engine().calls.at(call + 1), "releaseSequenceData " + Engine().calls[call - 1].substr(16));
    }
    return thrown;
}

TEST(ExceptionTest, AnExceptionFromAnyEngineCallBecomesAnErrorCodeAndRestoresEverything) {
    for (const auto personality : {AE, Plain, Pr})
        for (const bool throwsInt : {true, false}) {
            std::size_t calls = 0;
            while (ThrowAt(personality, calls, throwsInt))
                ++calls;
            EXPECT_GT(calls, 80u);
        }
}

TEST(ExceptionTest, CommandsOfManyThreadsRunOneAtATime) {
    TestHost host(Pr, SetEarlierFrames);
    CGLSetCurrentContext(nullptr); // as on the other threads
    RunLifeCycle(host);
    std::atomic<int> inside = 0, most = 0;
    Engine().calls.clear();
    Engine().onLock = [&] {
        most = std::max<int>(most, ++inside);
        std::this_thread::sleep_for(std::chrono::microseconds(200)); // so that other threads can run
    };
    Engine().onRelease = [&] { --inside; };
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&instance = host.strict.NewInstance()] {
            for (int n = 0; n < 20; ++n)
                EXPECT_EQ(RenderFrame(instance), PF_Err_NONE);
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(most, 1);
    EXPECT_EQ(Engine().Count("begin"), 80u);
    EXPECT_EQ(CGLGetCurrentContext(), nullptr);
    Engine().onLock = Engine().onRelease = nullptr;
}

// The commands of the inner instance are sent from inside a callback of the outer instance.
PF_InData s_Outer, s_Inner, s_Other;

void Send(PF_InData& in, PF_Cmd command) {
    PF_OutData out = {};
    out.sequence_data = in.sequence_data;
    EXPECT_EQ(EntryPointFunc(command, &in, &out, nullptr, nullptr, nullptr), PF_Err_NONE);
    in.sequence_data = out.sequence_data;
}

std::vector<std::string> CallsOfAnOuterUpdate(decltype(PF_InteractCallbacks::checkout_param) callback) {
    TestHost host;
    Instance& instance = host.Start({Declared(Parameter::FLOAT)});
    std::vector<std::string> calls;
    host.before = [&](Command& command) {
        s_Outer = command.in;
        s_Outer.sequence_data = nullptr;
        s_Inner = s_Other = s_Outer;
        Send(s_Outer, PF_Cmd_SEQUENCE_SETUP);
        Send(s_Other, PF_Cmd_SEQUENCE_SETUP); // so that the outer instance is not the last one made
        PF_InData update = s_Outer;
        update.inter.checkout_param = callback;
        auto& record = **reinterpret_cast<Adapter::SequenceRecord**>(s_Outer.sequence_data);
        record.compWidth = 640;
        record.compHeight = 360;
        record.compPixelAspect = 1.5f;
        Engine().calls.clear();
        Send(update, PF_Cmd_UPDATE_PARAMS_UI);
        calls = Engine().calls;
        Send(s_Outer, PF_Cmd_SEQUENCE_SETDOWN);
        Send(s_Other, PF_Cmd_SEQUENCE_SETDOWN);
    };
    EXPECT_EQ(instance.UpdateUI(), PF_Err_NONE);
    std::erase_if(calls, [](const std::string& call) {
        return call.find("SequenceData") == call.npos && call.find("setComposition") == call.npos;
    });
    return calls;
}

TEST(ReentryTest, AnInnerCommandSelectsTheOuterInstanceAgainUnlessItWasReleased) {
    const auto besides = CallsOfAnOuterUpdate([](auto, auto, auto, auto, auto, PF_ParamDef*) -> PF_Err {
        for (int i = 0; i < 2; ++i) {
            Send(s_Inner, PF_Cmd_SEQUENCE_SETUP);
            Send(s_Inner, PF_Cmd_SEQUENCE_SETDOWN);
        }
        return PF_Err_BAD_CALLBACK_PARAM;
    });
    const std::string composition = "setCompositionSize 640 360 1.5";
    EXPECT_THAT(besides,
                ElementsAre("setSequenceData 2", composition, "initSequenceData", "setSequenceData 2",
                            composition, "releaseSequenceData 4", "initSequenceData", "setSequenceData 2",
                            composition, "releaseSequenceData 5"));
    const auto released = CallsOfAnOuterUpdate([](auto, auto, auto, auto, auto, PF_ParamDef*) -> PF_Err {
        Send(s_Outer, PF_Cmd_SEQUENCE_SETDOWN);
        return PF_Err_BAD_CALLBACK_PARAM;
    });
    EXPECT_THAT(released, ElementsAre("setSequenceData 2", composition, "releaseSequenceData 2"));
}

} // namespace
