#pragma once

#include <cstddef>

// Makes a call of the engine to the outside fail. Counting and failing are limited to calls from this
// program, so libraries such as the GL driver are not affected. For one thread.
namespace Faults {

enum class Kind {
    Allocation,       // operator new throws std::bad_alloc
    ScriptAllocation, // the interpreter's allocator returns null
    GLObject,         // a GL function returns the name 0, or EGL returns no context
    GLMemory,         // a GL function sets GL_OUT_OF_MEMORY
    FileAccess,       // a file cannot be opened
};
constexpr std::size_t Never = static_cast<std::size_t>(-1);

// Counts calls of this kind from now on; the call with this number, from 0, fails, and with `onwards` every
// later one, too.
void FailAt(Kind kind, std::size_t number, bool onwards = false);
// Ends counting and failing. Returns the number of calls.
std::size_t Stop();

// GL objects that the engine has created and not deleted.
long LiveGLObjects();

} // namespace Faults
