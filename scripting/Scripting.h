#pragma once

#include <string>

struct duk_hthread;

// A script error, for tools that show it. The engine itself swallows every one.
struct ScriptError {
    std::string message;   // "TypeError: ...", with the author's line numbers
    std::string stack;     // the traceback, one call a line, likewise
    int line = 0;          // the author's line in fx.js; 0 when unknown
    std::string evaluated; // "fx.js", "preRender", "draw" or "updateUIFlags"
};

// The one JavaScript interpreter of the process. Used inside the engine's frame lock only.
class Scripting {
public:
    // Made on first use, without a heap.
    static Scripting& Instance();
    // Frees the interpreter and the registry's content; the next Instance() makes a new one.
    static void DestroyInstance();

    virtual ~Scripting();
    Scripting(const Scripting&) = delete;
    Scripting& operator=(const Scripting&) = delete;

    // An empty interpreter with the native functions, and an empty registry.
    void Init();

    // Evaluates global code; errors of every kind are discarded. Nothing without a text or before Init. A
    // full garbage collection follows every evaluation.
    void Execute(const char* text);

    // Destroys the interpreter and everything the script made.
    void Release();

    // Told of each script error when not null; null unless a tool sets it. Called inside Execute: it must not
    // call back into the engine.
    static void (*ErrorCallback)(const ScriptError& error);

private:
    Scripting() = default;

    duk_hthread* m_Heap = nullptr;
    static Scripting* s_Instance;
};
