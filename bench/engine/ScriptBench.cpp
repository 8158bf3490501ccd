// Times one draw() callback with 40 parameters and 20 native calls in the engine's script host. The baseline
// is the bare interpreter, which evaluates the same text with native functions that do nothing and then
// collects garbage as well.
#include <benchmark/benchmark.h>
#include <cstdio>
#include <duktape.h>
#include <string>

#include "bench/Pairs.h"
#include "context/Context.h"
#include "scripting/Bindings.h"
#include "scripting/PitchScript.h"
#include "scripting/Scripting.h"

namespace {

std::string Script() {
    std::string calls;
    for (int i = 0; i < 20; ++i)
        calls += "  sum += SV_getParamValue(handles[" + std::to_string(2 * i) + "]);\n";
    return "var handles = [], sum = 0;\nfunction setup() {\n"
           "  for (var i = 0; i < 40; ++i) handles.push(SV_initParam('p' + i, SV_Type.FLOAT, 'P'));\n}\n"
           "function draw() {\n  sum = 0;\n" +
           calls + "}\n";
}

class BareInterpreter {
public:
    explicit BareInterpreter(const std::string& script) : m_Heap(duk_create_heap_default()) {
        for (const auto group : {ParameterBindings, RenderTargetBindings, ShaderBindings, TextureBindings,
                                 SurfaceBindings, SequenceBindings})
            for (const NativeFunction& function : group())
                Register(function.name, function.arguments);
        Execute(script.c_str());
    }
    ~BareInterpreter() { duk_destroy_heap(m_Heap); }
    BareInterpreter(const BareInterpreter&) = delete;
    BareInterpreter& operator=(const BareInterpreter&) = delete;

    void Execute(const char* text) {
        duk_peval_string(m_Heap, text);
        duk_pop(m_Heap);
        duk_gc(m_Heap, 0);
    }

private:
    void Register(const char* name, duk_idx_t arguments) {
        const auto nothing = [](duk_context* context) -> duk_ret_t {
            duk_push_number(context, 0);
            return 1;
        };
        duk_push_c_function(m_Heap, nothing, arguments);
        duk_put_global_string(m_Heap, name);
    }

    duk_context* m_Heap;
};

void Draw(benchmark::State& state) {
    const std::string script = PitchScript(Script());
    Scripting& engine = Scripting::Instance();
    engine.Init();
    engine.Execute(script.c_str());
    // The baseline has the same native names and the same prelude, so that both collect garbage on equal
    // heaps.
    BareInterpreter bare(script);
    Pairs pairs;
    for (auto _ : state)
        pairs.Run([&] { engine.Execute("draw();"); }, [&] { bare.Execute("draw();"); });
    state.counters["ratio"] = pairs.Ratio();
    std::printf("bench/ScriptBench  draw, 40 parameters, 20 calls  bare %.4f ms  ours %.4f ms  ratio %.3f\n",
                pairs.BaselineMilliseconds(), pairs.OursMilliseconds(), pairs.Ratio());
    engine.Release();
}

} // namespace

BENCHMARK(Draw)->Iterations(4000)->Unit(benchmark::kMicrosecond);

BENCHMARK_MAIN();
