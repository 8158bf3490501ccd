#include "platform/egl/ContextRegistry.h"

#include <utility>

namespace {

// A static of the file, not of a function: it is destroyed after the function-local singletons that use it
// while the module unloads.
ContextRegistry s_Registry;

bool ReleaseEglContext() {
    const EGLDisplay display = eglGetCurrentDisplay();
    return display == EGL_NO_DISPLAY ||
           eglMakeCurrent(display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT) == EGL_TRUE;
}

bool SameState(const ContextRecord& a, const ContextRecord& b) {
    return a.display == b.display && a.context == b.context && a.draw == b.draw && a.read == b.read &&
           a.api == b.api;
}

} // namespace

ContextRegistry& GetContextRegistry() {
    return s_Registry;
}

ContextRegistry::ContextRegistry() {
    pthread_key_create(&m_ThreadRecord, &ContextRegistry::OnThreadEnd);
}

ContextRegistry::~ContextRegistry() {
    pthread_key_delete(m_ThreadRecord);
}

bool ContextRegistry::HasDisplay() {
    const Lock lock(m_Mutex);
    return OpenDisplay();
}

std::string ContextRegistry::Problem() {
    const Lock lock(m_Mutex);
    return m_Problem;
}

bool ContextRegistry::OpenDisplay() {
    if (m_Display.display == EGL_NO_DISPLAY)
        m_Display = ChooseGLDisplay(m_Problem);
    return m_Display.display != EGL_NO_DISPLAY;
}

CGLContextObj ContextRegistry::Create(CGLContextObj share) {
    const Lock lock(m_Mutex);
    const Entry shared = Find(share);
    if ((share && !shared) || !OpenDisplay())
        return nullptr;
    const EGLContext shareContext = shared ? shared->context : EGL_NO_CONTEXT;
    EGLContext context = CreateGLContext(m_Display, shareContext);
    if (context == EGL_NO_CONTEXT) {
        // Other code may have terminated the display, which the whole process shares.
        m_Display = {};
        if (!OpenDisplay())
            return nullptr;
        context = CreateGLContext(m_Display, shareContext);
    }
    if (context == EGL_NO_CONTEXT) {
        m_Problem = "EGL refuses another OpenGL context: " + EglErrorName(eglGetError());
        return nullptr;
    }
    m_Problem.clear();
    auto record = std::make_shared<ContextRecord>();
    record->display = m_Display.display;
    record->context = context;
    const CGLContextObj name = record.get();
    m_Records.emplace(name, std::move(record));
    return name;
}

CGLError ContextRegistry::Destroy(CGLContextObj context) {
    const Lock lock(m_Mutex);
    Synchronise();
    const Entry record = Find(context);
    if (!record || record->foreign)
        return kCGLBadContext;
    if (record->holder == std::this_thread::get_id()) {
        ReleaseEglContext();
        SetThreadRecord(nullptr);
    }
    const bool destroyed = eglDestroyContext(record->display, record->context) == EGL_TRUE;
    record->destroyed = true;
    if (record->holder == std::thread::id())
        m_Records.erase(context);
    m_ContextFreed.notify_all();
    return destroyed ? kCGLNoError : kCGLBadContext;
}

CGLContextObj ContextRegistry::Current() {
    const EGLContext now = eglGetCurrentContext();
    const Lock lock(m_Mutex);
    ContextRecord* record = Synchronise();
    if (now == EGL_NO_CONTEXT)
        return nullptr;
    if (!record)
        record = Adopt(now);
    return record->destroyed ? nullptr : record;
}

CGLError ContextRegistry::MakeCurrent(CGLContextObj context) {
    Lock lock(m_Mutex);
    Synchronise();
    if (!context) {
        const bool released = ReleaseEglContext();
        SetThreadRecord(nullptr);
        return released ? kCGLNoError : kCGLBadContext;
    }
    const Entry record = Find(context);
    if (!record)
        return kCGLBadContext;
    if (Switch(record.get()))
        return kCGLNoError;
    if (record->holder == std::thread::id())
        return kCGLBadContext; // nobody to wait for
    // Two threads that wait for each other's context must not hold their own meanwhile.
    ReleaseEglContext();
    SetThreadRecord(nullptr);
    do {
        m_ContextFreed.wait(lock, [&] { return record->holder == std::thread::id() || record->destroyed; });
        if (record->destroyed)
            return kCGLBadContext;
        if (Switch(record.get()))
            return kCGLNoError;
    } while (record->holder != std::thread::id());
    return kCGLBadContext;
}

ContextRegistry::Entry ContextRegistry::Find(CGLContextObj context) const {
    const auto found = m_Records.find(context);
    return found != m_Records.end() && !found->second->destroyed ? found->second : nullptr;
}

ContextRecord* ContextRegistry::Synchronise() {
    auto* record = static_cast<ContextRecord*>(pthread_getspecific(m_ThreadRecord));
    if (record && record->context != eglGetCurrentContext()) {
        SetThreadRecord(nullptr); // other code made something else current behind our back
        return nullptr;
    }
    return record;
}

ContextRecord* ContextRegistry::Adopt(EGLContext context) {
    auto state = std::make_shared<ContextRecord>();
    state->display = eglGetCurrentDisplay();
    state->context = context;
    state->draw = eglGetCurrentSurface(EGL_DRAW);
    state->read = eglGetCurrentSurface(EGL_READ);
    state->api = eglQueryAPI();
    state->foreign = true;
    for (const auto& [name, record] : m_Records) {
        if (!record->foreign && !record->destroyed && record->context == context) {
            SetThreadRecord(name); // ours, brought back by other code
            return name;
        }
        if (record->foreign && SameState(*record, *state))
            return name;
    }
    const CGLContextObj name = state.get();
    m_Records.emplace(name, std::move(state));
    return name;
}

bool ContextRegistry::Switch(ContextRecord* record) {
    if (pthread_getspecific(m_ThreadRecord) == record)
        return true;
    // EGL itself says whether another thread has it; the holder may have lost it to other code unnoticed.
    if (!eglMakeCurrent(record->display, record->draw, record->read, record->context))
        return false;
    if (record->foreign)
        eglBindAPI(record->api);
    SetThreadRecord(record->foreign ? nullptr : record);
    return true;
}

void ContextRegistry::SetThreadRecord(ContextRecord* record) {
    auto* before = static_cast<ContextRecord*>(pthread_getspecific(m_ThreadRecord));
    pthread_setspecific(m_ThreadRecord, record);
    const std::thread::id self = std::this_thread::get_id();
    if (before && before != record && before->holder == self) {
        before->holder = {};
        if (before->destroyed)
            m_Records.erase(before);
        m_ContextFreed.notify_all();
    }
    if (record)
        record->holder = self;
}

void ContextRegistry::EndThread(ContextRecord* record) {
    const Lock lock(m_Mutex);
    // The key's value is already cleared here; give it back so that the record is freed in one place.
    pthread_setspecific(m_ThreadRecord, record);
    // EGL's dispatcher may have forgotten the thread by now and would ignore the release. Making the context
    // current once more, which the driver still takes for granted, tells it again.
    eglMakeCurrent(record->display, EGL_NO_SURFACE, EGL_NO_SURFACE, record->context);
    ReleaseEglContext();
    SetThreadRecord(nullptr);
}

void ContextRegistry::OnThreadEnd(void* record) {
    s_Registry.EndThread(static_cast<ContextRecord*>(record));
}
