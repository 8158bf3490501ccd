#include "tests/faults/Faults.h"

#include <EGL/egl.h>
#include <duktape.h>
#include <execinfo.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <link.h>
#include <new>
#include <utility>

#include "platform/GL.h"

namespace {

using Faults::Kind;

bool s_IsCounting = false;
Kind s_Kind{};
std::size_t s_FailAt = Faults::Never, s_Calls = 0;
bool s_FailsOnwards = false;
long s_LiveObjects = 0;
GLenum s_PendingError = GL_NO_ERROR;

bool Fails(Kind kind) {
    if (!s_IsCounting || kind != s_Kind)
        return false;
    const std::size_t call = s_Calls++;
    return call == s_FailAt || (s_FailsOnwards && call > s_FailAt);
}

bool FailsForMemory() {
    const bool fails = Fails(Kind::GLMemory);
    if (fails)
        s_PendingError = GL_OUT_OF_MEMORY;
    return fails;
}

// The addresses of the program or of a library.
struct Module {
    std::uintptr_t begin = 0, end = 0;
    bool Contains(const void* address) const {
        const auto number = reinterpret_cast<std::uintptr_t>(address);
        return number >= begin && number < end;
    }
};

Module ModuleOf(std::uintptr_t address) {
    std::pair<std::uintptr_t, Module> search{address, {}};
    dl_iterate_phdr(
        [](dl_phdr_info* info, std::size_t, void* data) {
            auto& [wanted, found] = *static_cast<std::pair<std::uintptr_t, Module>*>(data);
            for (int i = 0; i < info->dlpi_phnum; ++i) {
                const std::uintptr_t begin = info->dlpi_addr + info->dlpi_phdr[i].p_vaddr;
                const std::uintptr_t end = begin + info->dlpi_phdr[i].p_memsz;
                if (info->dlpi_phdr[i].p_type == PT_LOAD && wanted >= begin && wanted < end)
                    found = {begin, end};
            }
            return 0;
        },
        &search);
    return search.second;
}

const Module s_Program = ModuleOf(reinterpret_cast<std::uintptr_t>(&Faults::Stop));
const Module s_StandardLibrary = ModuleOf(reinterpret_cast<std::uintptr_t>(std::get_terminate()));

// The code of std::string and of other instantiated templates is in the standard library; what counts is its
// caller.
bool IsFromThisProgram(const void* caller) {
    if (s_Program.Contains(caller) || !s_StandardLibrary.Contains(caller))
        return s_Program.Contains(caller);
    void* frames[16];
    const int count = backtrace(frames, 16);
    int i = 0;
    while (i < count && frames[i] != caller)
        ++i;
    while (i < count && s_StandardLibrary.Contains(frames[i]))
        ++i;
    return i < count && s_Program.Contains(frames[i]);
}

bool AllocationFails(const void* caller) {
    if (!s_IsCounting || s_Kind != Kind::Allocation)
        return false;
    s_IsCounting = false; // the check may allocate
    const bool isOurs = IsFromThisProgram(caller);
    s_IsCounting = true;
    return isOurs && Fails(Kind::Allocation);
}

void* Allocate(std::size_t size) {
    return std::malloc(size == 0 ? 1 : size);
}

void* AllocateFor(const void* caller, std::size_t size) {
    void* const memory = AllocationFails(caller) ? nullptr : Allocate(size);
    if (!memory)
        throw std::bad_alloc();
    return memory;
}

} // namespace

void Faults::FailAt(Kind kind, std::size_t number, bool onwards) {
    s_Kind = kind;
    s_FailAt = number;
    s_FailsOnwards = onwards;
    s_Calls = 0;
    s_PendingError = GL_NO_ERROR;
    s_IsCounting = true;
}

std::size_t Faults::Stop() {
    s_IsCounting = false;
    return s_Calls;
}

long Faults::LiveGLObjects() {
    return s_LiveObjects;
}

void* operator new(std::size_t size) {
    return AllocateFor(__builtin_return_address(0), size);
}

// All forms are replaced, so that sanitizers see the same allocator on both ends.
void* operator new[](std::size_t size) {
    return AllocateFor(__builtin_return_address(0), size);
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return Allocate(size);
}

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return Allocate(size);
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

void operator delete[](void* memory) noexcept {
    std::free(memory);
}

void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}

// The linker sends the calls of this program to __wrap_NAME; __real_NAME is the original function.
#define FAULTS_WRAP(result, name, parameters)                                                                \
    extern "C" result __real_##name parameters;                                                              \
    extern "C" result __wrap_##name parameters

#define FAULTS_WRAP_NAMES(name)                                                                              \
    FAULTS_WRAP(void, glGen##name, (GLsizei count, GLuint * names)) {                                        \
        std::memset(names, 0, sizeof(GLuint) * static_cast<std::size_t>(count));                             \
        if (Fails(Kind::GLObject))                                                                           \
            return;                                                                                          \
        __real_glGen##name(count, names);                                                                    \
        s_LiveObjects += count;                                                                              \
    }                                                                                                        \
    FAULTS_WRAP(void, glDelete##name, (GLsizei count, const GLuint* names)) {                                \
        s_LiveObjects -= count;                                                                              \
        __real_glDelete##name(count, names);                                                                 \
    }
FAULTS_WRAP_NAMES(Textures)
FAULTS_WRAP_NAMES(Framebuffers)

FAULTS_WRAP(GLuint, glCreateShader, (GLenum type)) {
    const GLuint name = Fails(Kind::GLObject) ? 0 : __real_glCreateShader(type);
    s_LiveObjects += name != 0;
    return name;
}

FAULTS_WRAP(void, glDeleteShader, (GLuint name)) {
    --s_LiveObjects;
    __real_glDeleteShader(name);
}

FAULTS_WRAP(GLuint, glCreateProgram, ()) {
    const GLuint name = Fails(Kind::GLObject) ? 0 : __real_glCreateProgram();
    s_LiveObjects += name != 0;
    return name;
}

FAULTS_WRAP(void, glDeleteProgram, (GLuint name)) {
    --s_LiveObjects;
    __real_glDeleteProgram(name);
}

FAULTS_WRAP(GLuint, glGenLists, (GLsizei count)) {
    return Fails(Kind::GLObject) ? 0 : __real_glGenLists(count);
}

FAULTS_WRAP(EGLContext, eglCreateContext,
            (EGLDisplay display, EGLConfig config, EGLContext share, const EGLint* attributes)) {
    return Fails(Kind::GLObject) ? EGL_NO_CONTEXT
                                 : __real_eglCreateContext(display, config, share, attributes);
}

FAULTS_WRAP(void, glTexImage2D,
            (GLenum target, GLint level, GLint internalFormat, GLsizei width, GLsizei height, GLint border,
             GLenum format, GLenum type, const void* pixels)) {
    if (width == 0 || !FailsForMemory())
        __real_glTexImage2D(target, level, internalFormat, width, height, border, format, type, pixels);
}

FAULTS_WRAP(void, glBufferData, (GLenum target, GLsizeiptr size, const void* data, GLenum usage)) {
    if (!FailsForMemory())
        __real_glBufferData(target, size, data, usage);
}

FAULTS_WRAP(void*, glMapBuffer, (GLenum target, GLenum access)) {
    return FailsForMemory() ? nullptr : __real_glMapBuffer(target, access);
}

FAULTS_WRAP(GLenum, glGetError, ()) {
    const GLenum error = s_PendingError;
    s_PendingError = GL_NO_ERROR;
    return error != GL_NO_ERROR ? error : __real_glGetError();
}

FAULTS_WRAP(std::FILE*, fopen, (const char* path, const char* mode)) {
    return Fails(Kind::FileAccess) ? nullptr : __real_fopen(path, mode);
}

static duk_alloc_function s_AllocateForScript = nullptr;
static duk_realloc_function s_ReallocateForScript = nullptr;

// The engine's own functions refuse an impossible size.
static duk_size_t SizeForScript(duk_size_t size) {
    return size != 0 && Fails(Kind::ScriptAllocation) ? SIZE_MAX : size;
}

FAULTS_WRAP(duk_context*, duk_create_heap,
            (duk_alloc_function allocate, duk_realloc_function reallocate, duk_free_function free, void* data,
             duk_fatal_function fatal)) {
    s_AllocateForScript = allocate;
    s_ReallocateForScript = reallocate;
    return __real_duk_create_heap(
        [](void* owner, duk_size_t size) { return s_AllocateForScript(owner, SizeForScript(size)); },
        [](void* owner, void* memory, duk_size_t size) {
            return s_ReallocateForScript(owner, memory, SizeForScript(size));
        },
        free, data, fatal);
}
