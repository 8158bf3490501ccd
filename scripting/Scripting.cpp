#include "scripting/Scripting.h"

#include <duktape.h>

#include "context/Context.h"
#include "scripting/Bindings.h"
#include "scripting/Console.h"
#include "scripting/ScriptErrorReader.h"

Scripting* Scripting::s_Instance = nullptr;
void (*Scripting::ErrorCallback)(const ScriptError&) = nullptr;
void (*Scripting::PrintCallback)(const ScriptMessage&) = nullptr;

Scripting& Scripting::Instance() {
    if (!s_Instance)
        s_Instance = new Scripting;
    return *s_Instance;
}

void Scripting::DestroyInstance() {
    delete s_Instance;
    s_Instance = nullptr;
}

Scripting::~Scripting() {
    Release();
}

void Scripting::Init() {
    m_Heap = duk_create_heap(nullptr, nullptr, nullptr, nullptr, nullptr);
    if (m_Heap) {
        RegisterConsole(m_Heap);
        for (const auto group : {ParameterBindings, RenderTargetBindings, ShaderBindings, TextureBindings,
                                 SurfaceBindings, SequenceBindings})
            RegisterFunctions(m_Heap, group());
    } else if (ErrorCallback) {
        ErrorCallback({"Error: the script interpreter has no memory", "", 0, "fx.js"});
    }
    Context::Current().Init();
}

void Scripting::Execute(const char* text) {
    if (!text || !m_Heap)
        return;
    constexpr duk_uint_t flags = DUK_COMPILE_EVAL | DUK_COMPILE_SAFE | DUK_COMPILE_NOSOURCE |
                                 DUK_COMPILE_STRLEN | DUK_COMPILE_NOFILENAME;
    m_Evaluated = text;
    const bool failed = duk_eval_raw(m_Heap, text, 0, flags) != 0;
    if (failed && ErrorCallback)
        ErrorCallback(ReadScriptError(m_Heap, text));
    m_Evaluated = "";
    duk_pop(m_Heap);
    duk_gc(m_Heap, 0);
}

void Scripting::Report(const std::string& message) {
    if (ErrorCallback && m_Heap)
        ErrorCallback({message, "", CallingLine(m_Heap), EvaluatedName(m_Evaluated)});
}

void Scripting::Release() {
    if (m_Heap)
        duk_destroy_heap(m_Heap);
    m_Heap = nullptr;
    Context::Current().Release();
}
