#pragma once

#include <csetjmp>
#include <duktape.h>
#include <memory>

#include "scripting/ScriptMemory.h"

// A Duktape heap that cannot end the process. Duktape calls abort() when nothing catches an error, and when
// memory is short while it creates a heap or reports an error, it calls itself until the stack is full. Here
// both end in a longjmp out of Duktape, after which the heap is not touched again and its memory is freed.
class Interpreter {
public:
    // Returns null when there is no memory.
    static std::unique_ptr<Interpreter> Create();
    ~Interpreter();
    Interpreter(const Interpreter&) = delete;
    Interpreter& operator=(const Interpreter&) = delete;

    duk_context* Heap() { return m_Heap; }

    // Calls work(data). False when Duktape gave up in it; the object can then only be destroyed. The work
    // must not own anything while it calls Duktape, as no destructor runs when it is left. It must not be
    // nested. mostFailures: the number of allocations that may fail in a row; 1 for work without protected
    // calls.
    bool Run(void (*work)(void* data), void* data, unsigned mostFailures = MostFailures);

private:
    // Duktape tries an allocation some ten times, with garbage collections in between.
    static constexpr unsigned MostFailures = 1000;

    Interpreter() = default;
    bool Start();
    void* Checked(void* memory);
    [[noreturn]] static void GiveUp(void* self, const char* message);

    ScriptMemory m_Memory;
    duk_context* m_Heap = nullptr;
    std::jmp_buf m_Exit{};
    bool m_IsRunning = false; // m_Exit can be used
    unsigned m_MostFailures = 0;
    unsigned m_Failures = 0; // of allocations, since the last one that succeeded
};
