#include "scripting/Scripting.h"

#include <duktape.h>

#include "context/Context.h"
#include "scripting/Bindings.h"
#include "scripting/Console.h"
#include "scripting/Interpreter.h"
#include "scripting/ScriptErrorReader.h"

Scripting* Scripting::s_Instance = nullptr;
void (*Scripting::ErrorCallback)(const ScriptError&) = nullptr;
void (*Scripting::PrintCallback)(const ScriptMessage&) = nullptr;

namespace {

// One call of Execute.
struct Evaluation {
    duk_context* heap;
    const char* text;
    bool isDescribed = false; // an error was caught, and its description is on the stack
};

void RegisterAll(void* data) {
    auto* const heap = static_cast<duk_context*>(data);
    RegisterConsole(heap);
    for (const auto group : {ParameterBindings, RenderTargetBindings, ShaderBindings, TextureBindings,
                             SurfaceBindings, SequenceBindings})
        RegisterFunctions(heap, group());
}

void Evaluate(void* data) {
    auto& evaluation = *static_cast<Evaluation*>(data);
    constexpr duk_uint_t flags = DUK_COMPILE_EVAL | DUK_COMPILE_SAFE | DUK_COMPILE_NOSOURCE |
                                 DUK_COMPILE_STRLEN | DUK_COMPILE_NOFILENAME;
    const bool failed = duk_eval_raw(evaluation.heap, evaluation.text, 0, flags) != 0;
    if (failed && Scripting::ErrorCallback) {
        DescribeScriptError(evaluation.heap);
        evaluation.isDescribed = true;
    }
}

void CollectGarbage(void* data) {
    auto* const heap = static_cast<duk_context*>(data);
    duk_set_top(heap, 0);
    duk_gc(heap, 0);
}

} // namespace

Scripting& Scripting::Instance() {
    if (!s_Instance)
        s_Instance = new Scripting;
    return *s_Instance;
}

void Scripting::DestroyInstance() {
    delete s_Instance;
    s_Instance = nullptr;
}

Scripting::Scripting() = default;

Scripting::~Scripting() {
    Release();
}

void Scripting::Init() {
    m_Interpreter = Interpreter::Create();
    if (!m_Interpreter || !m_Interpreter->Run(RegisterAll, m_Interpreter->Heap(), 1))
        Abandon();
    Context::Current().Init();
}

void Scripting::Abandon() {
    m_Interpreter.reset();
    if (ErrorCallback)
        ErrorCallback({"Error: the script interpreter has no memory", "", 0, EvaluatedName(m_Evaluated)});
}

void Scripting::Execute(const char* text) {
    if (!text || !m_Interpreter)
        return;
    m_Evaluated = text;
    Evaluation evaluation{m_Interpreter->Heap(), text};
    if (m_Interpreter->Run(Evaluate, &evaluation)) {
        if (evaluation.isDescribed)
            ErrorCallback(ReadScriptError(evaluation.heap, text));
        if (!m_Interpreter->Run(CollectGarbage, evaluation.heap))
            Abandon();
    } else {
        Abandon();
    }
    m_Evaluated = "";
}

void Scripting::Report(const std::string& message) {
    if (ErrorCallback && m_Interpreter)
        ErrorCallback({message, "", CallingLine(m_Interpreter->Heap()), EvaluatedName(m_Evaluated)});
}

void Scripting::Release() {
    m_Interpreter.reset();
    Context::Current().Release();
}
