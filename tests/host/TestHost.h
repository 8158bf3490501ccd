#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "host/SequenceRecord.h"
#include "platform/CGL.h"
#include "stricthost/StrictHost.h"
#include "tests/support/RecordingPlugin.h"

using fxhost::Picture;
using stricthost::FrameSpec;
using stricthost::Instance;
using stricthost::Personality;
using testing::ElementsAre;
constexpr auto AE = Personality::AfterEffects;
constexpr auto Plain = Personality::AfterEffectsPlain;
constexpr auto Pr = Personality::Premiere;

inline RecordingPlugin& Engine() {
    return RecordingPlugin::Instance();
}

// Stand-ins for the GL contexts of the host and of the engine, which is current while the frame is locked.
inline const auto HostContext = reinterpret_cast<CGLContextObj>(0x1000);
inline const auto EngineContext = reinterpret_cast<CGLContextObj>(0x2000);

// A parameter as a script declares it.
Parameter Declared(Parameter::Type type, std::uint32_t flags = 0, std::initializer_list<float> value = {});

// A callback of the host that fails.
template <PF_Err Code, class... Arguments>
PF_Err Fails(Arguments...) {
    return Code;
}

// A command before or after the adapter handles it.
struct Command {
    PF_Cmd code;
    PF_InData& in; // with a copy of the utility callbacks that tests may change
    PF_OutData& out;
    PF_ParamDef** params;
    PF_LayerDef* output;
    void* extra;
};

// The adapter between the strict host and the recording engine, which is reset. Tests can inspect and change
// each command before and after the adapter handles it. The destructor fails the test when the adapter broke
// a rule of the protocol or did not release something. Only one object may exist at a time.
class TestHost {
public:
    explicit TestHost(Personality personality = AE,
                      const std::function<void(stricthost::Options&)>& change = {});
    ~TestHost();
    TestHost(const TestHost&) = delete;
    TestHost& operator=(const TestHost&) = delete;

    // Global and parameter set-up of an effect with these parameters.
    void SetUp(std::vector<Parameter> params = {});
    // Also creates an instance, updates its controls, and clears the record of the engine's calls.
    Instance& Start(std::vector<Parameter> params = {});
    // Sends a command that the strict host does not send itself.
    static PF_Err Send(PF_Cmd code, Instance& instance, void* extra = nullptr);
    // The data that the adapter keeps with an instance.
    static Adapter::SequenceRecord& Record(const Instance& instance);

    // Replaces a function of a suite from the next command on.
    template <class Suite, class Function>
    void Replace(const char* suite, Function Suite::*place, std::type_identity_t<Function> function) {
        m_Replaced[suite] = [place, function](const void* table) -> const void* {
            static Suite copy;
            copy = *static_cast<const Suite*>(table);
            copy.*place = function;
            return &copy;
        };
    }

    std::function<void(Command&)> before, after;
    static std::function<void()> onGetContext; // runs when the GL context of a thread is asked for
    // Suites that the host offers under one number only, and the number under which the strict host has each
    // of them.
    struct Number {
        std::int32_t offered, original;
    };
    std::map<std::string, Number> onlyNumber;
    std::set<std::string> allowed; // violations that a test causes on purpose
    stricthost::StrictHost strict;

private:
    static PF_Err Enter(PF_Cmd code, PF_InData* in, PF_OutData* out, PF_ParamDef** params,
                        PF_LayerDef* output, void* extra);
    static std::int32_t AcquireSuite(const char* name, std::int32_t number, const void** suite);
    static std::int32_t ReleaseSuite(const char* name, std::int32_t number);

    std::map<std::string, std::function<const void*(const void*)>> m_Replaced;
};

// Renders a frame of the picture.
stricthost::FrameResult Render(Instance& instance, const Picture& input = {1, 1, 8}, FrameSpec request = {});

// The error that the adapter returns in a step of the host, or none.
template <class Step>
PF_Err ErrorOf(Step step) {
    try {
        step();
        return PF_Err_NONE;
    } catch (const stricthost::CommandError& error) {
        return error.Code();
    }
}
