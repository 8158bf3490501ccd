#include "scripting/Interpreter.h"

#include <cstdio>
#include <cstdlib>
#include <new>

std::unique_ptr<Interpreter> Interpreter::Create() {
    std::unique_ptr<Interpreter> created(new (std::nothrow) Interpreter);
    return created && created->Start() ? std::move(created) : nullptr;
}

bool Interpreter::Start() {
    const auto work = [](void* data) {
        const auto allocate = [](void* owner, duk_size_t bytes) {
            auto* const self = static_cast<Interpreter*>(owner);
            return self->Checked(self->m_Memory.Allocate(bytes));
        };
        const auto reallocate = [](void* owner, void* memory, duk_size_t bytes) {
            auto* const self = static_cast<Interpreter*>(owner);
            void* const moved = self->m_Memory.Reallocate(memory, bytes);
            return bytes == 0 ? moved : self->Checked(moved);
        };
        const auto free = [](void* owner, void* memory) {
            static_cast<Interpreter*>(owner)->m_Memory.Free(memory);
        };
        static_cast<Interpreter*>(data)->m_Heap = duk_create_heap(allocate, reallocate, free, data, GiveUp);
    };
    return Run(work, this, 1) && m_Heap;
}

Interpreter::~Interpreter() {
    if (m_Heap)
        Run([](void* heap) { duk_destroy_heap(static_cast<duk_context*>(heap)); }, m_Heap);
}

bool Interpreter::Run(void (*work)(void*), void* data, unsigned mostFailures) {
    m_MostFailures = mostFailures;
    m_Failures = 0;
    if (setjmp(m_Exit) != 0) { // GiveUp returns here
        m_IsRunning = false;
        m_Heap = nullptr;
        return false;
    }
    m_IsRunning = true;
    work(data);
    m_IsRunning = false;
    return true;
}

// Takes the result of an allocation.
void* Interpreter::Checked(void* memory) {
    m_Failures = memory ? 0 : m_Failures + 1;
    if (m_Failures >= m_MostFailures && m_IsRunning)
        GiveUp(this, "no memory");
    return memory;
}

void Interpreter::GiveUp(void* self, const char* message) {
    auto* const interpreter = static_cast<Interpreter*>(self);
    if (!interpreter->m_IsRunning) {
        std::fprintf(stderr, "The script interpreter failed: %s\n", message);
        std::abort();
    }
    std::longjmp(interpreter->m_Exit, 1);
}
