#pragma once

#include <memory>
#include <string>

class Interpreter;

// A script error, for tools that report it. The engine itself discards all script errors.
struct ScriptError {
    std::string message;   // for example "TypeError: ..."; line numbers are those of the author
    std::string stack;     // the traceback with one call per line; line numbers are those of the author
    int line = 0;          // line in fx.js, from 1; 0 when unknown
    std::string evaluated; // "fx.js", "preRender", "draw" or "updateUIFlags"
};

// Text that a script prints with print() or console.log(), for tools that show it.
struct ScriptMessage {
    std::string text;
    int line = 0; // line of the call in fx.js, from 1; 0 when unknown
};

// The only JavaScript interpreter of the process.
// Threads: used only inside the engine's frame lock.
class Scripting {
public:
    // Returns the instance, which is created without an interpreter heap on first use.
    static Scripting& Instance();
    // Destroys the instance and everything that the script created. The next Instance() creates a new one.
    static void DestroyInstance();

    virtual ~Scripting();
    Scripting(const Scripting&) = delete;
    Scripting& operator=(const Scripting&) = delete;

    // Starts an interpreter that has only the native functions, and an empty registry. Without memory there
    // is an error and no interpreter.
    void Init();

    // Evaluates global code and discards errors of every kind. Then runs a full garbage collection. Does
    // nothing when the text is null or there is no interpreter. A script that has used up its memory fails;
    // when even that is impossible, there is an error and no interpreter from then on.
    void Execute(const char* text);

    // Destroys the interpreter and everything that the script created.
    void Release();

    // Passes a mistake of the script that is no script error to ErrorCallback, with the line that called the
    // running native function. Does nothing while ErrorCallback is null.
    void Report(const std::string& message);

    // Called with each script error unless null, which it is in the plug-in. The call comes from within
    // Execute, so it must not call the engine.
    static void (*ErrorCallback)(const ScriptError& error);

    // The same for text that scripts print. While it is null, print() and console.log() do nothing.
    static void (*PrintCallback)(const ScriptMessage& message);

private:
    Scripting();
    void Abandon();

    std::unique_ptr<Interpreter> m_Interpreter;
    const char* m_Evaluated = ""; // the text that Execute evaluates
    static Scripting* s_Instance;
};
