#include "tests/host/TestHost.h"

#include "AE_EffectCB.h"
#include "host/EntryPoint.h"
#include "host/HostState.h"
#include "stricthost/HostCall.h"
#include "stricthost/SuiteTable.h"

namespace {
TestHost* s_Current = nullptr;
thread_local CGLContextObj t_Context = nullptr;
} // namespace

std::function<void()> TestHost::onGetContext;

CGLContextObj CGLGetCurrentContext() {
    if (TestHost::onGetContext)
        TestHost::onGetContext();
    return t_Context;
}

CGLError CGLSetCurrentContext(CGLContextObj context) {
    t_Context = context;
    return kCGLNoError;
}

namespace {

// Also prepares the engine, so that a test can change the options and the engine in `change`.
stricthost::Options MakeOptions(Personality personality,
                                const std::function<void(stricthost::Options&)>& change) {
    Engine().Reset();
    Engine().flags = PF_OutFlag_DEEP_COLOR_AWARE;
    Engine().flags2 = PF_OutFlag2_SUPPORTS_SMART_RENDER | PF_OutFlag2_FLOAT_COLOR_AWARE;
    Engine().onLock = [] { CGLSetCurrentContext(EngineContext); };
    stricthost::Options options;
    options.personality = personality;
    options.rowPadding = 13; // so that rows start at odd addresses
    options.currentContext = []() -> void* { return CGLGetCurrentContext(); };
    if (change)
        change(options);
    return options;
}

} // namespace

Parameter Declared(Parameter::Type type, std::uint32_t flags, std::initializer_list<float> value) {
    Parameter parameter("p", type, "Label");
    parameter.flags = flags;
    unsigned index = 0;
    for (const float component : value)
        parameter.value.SetFloat(index++, component);
    return parameter;
}

stricthost::FrameResult Render(Instance& instance, const Picture& input, FrameSpec request) {
    request.input = &input;
    return instance.Render(request);
}

TestHost::TestHost(Personality personality, const std::function<void(stricthost::Options&)>& change)
    : strict(Enter, MakeOptions(personality, change)) {
    s_Current = this;
    Adapter::s_MapPlugin2AEParam.clear();
    Adapter::s_MapAEParam2Plugin.clear();
    Adapter::s_SequenceOfHandle.clear();
    using namespace Adapter;
    for (A_long* start : {&s_ParamsStart, &s_PointsStart, &s_ColorsStart, &s_LayersStart, &s_Points2Start,
                          &s_TextureStart, &s_PathsStart, &s_BoolsStart, &s_PopupsStart, &s_AngleStart})
        *start = 0;
    CGLSetCurrentContext(HostContext);
}

TestHost::~TestHost() {
    before = after = nullptr;
    onGetContext = nullptr;
    Engine().throwAtCall = -1;
    strict.Finish();
    for (const std::string& text : strict.Violations())
        if (!allowed.count(text))
            ADD_FAILURE() << text;
    EXPECT_EQ(Engine().lockBalance, 0);
}

void TestHost::SetUp(std::vector<Parameter> params) {
    Engine().params = std::move(params);
    strict.GlobalSetup();
    strict.ParamsSetup();
}

Instance& TestHost::Start(std::vector<Parameter> params) {
    SetUp(std::move(params));
    Instance& instance = strict.NewInstance();
    EXPECT_EQ(instance.UpdateUI(), PF_Err_NONE);
    Engine().calls.clear();
    return instance;
}

PF_Err TestHost::Send(PF_Cmd code, Instance& instance, void* extra) {
    stricthost::HostCall call(instance.Host(), code, &instance);
    instance.FillIn(call.in);
    call.PassParams(instance.Definitions(call.in));
    return instance.Host().Send(call, nullptr, extra);
}

Adapter::SequenceRecord& TestHost::Record(const Instance& instance) {
    PF_InData in = {};
    instance.FillIn(in);
    return *Adapter::FindRecord(in);
}

PF_Err TestHost::Enter(PF_Cmd code, PF_InData* in, PF_OutData* out, PF_ParamDef** params, PF_LayerDef* output,
                       void* extra) {
    static SPBasicSuite basic = [] {
        SPBasicSuite suite = *stricthost::BasicSuite();
        suite.AcquireSuite = AcquireSuite;
        suite.ReleaseSuite = ReleaseSuite;
        return suite;
    }();
    PF_UtilCallbacks utils = *in->utils;
    in->utils = &utils;
    in->pica_basicP = &basic;
    Command command{code, *in, *out, params, output, extra};
    if (s_Current->before)
        s_Current->before(command);
    const PF_Err err = EntryPointFunc(code, in, out, command.params, command.output, extra);
    if (s_Current->after)
        s_Current->after(command);
    return err;
}

SPErr TestHost::AcquireSuite(const char* name, std::int32_t number, const void** suite) {
    const auto only = s_Current->onlyNumber.find(name);
    if (only != s_Current->onlyNumber.end()) {
        if (number != only->second.offered)
            return kSPSuiteNotFoundError;
        number = only->second.original;
    }
    const SPErr err = stricthost::BasicSuite()->AcquireSuite(name, number, suite);
    const auto found = s_Current->m_Replaced.find(name);
    if (err == kSPNoError && found != s_Current->m_Replaced.end())
        *suite = found->second(*suite);
    return err;
}

SPErr TestHost::ReleaseSuite(const char* name, std::int32_t number) {
    const auto only = s_Current->onlyNumber.find(name);
    const bool renumbered = only != s_Current->onlyNumber.end() && number == only->second.offered;
    return stricthost::BasicSuite()->ReleaseSuite(name, renumbered ? only->second.original : number);
}
