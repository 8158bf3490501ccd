#include "platform/egl/ContextRegistry.h"

#include <algorithm>
#include <utility>

namespace {

// A static variable of the file instead of a function, so that it is destroyed after the function-local
// singletons that use it while the module is unloaded.
ContextRegistry s_Registry;

// How many states of other code's contexts are kept for each thread. Callers that restore contexts nest two
// or three deep.
constexpr std::size_t s_MostForeignStates = 8;

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
    pthread_key_create(&m_ThreadKey, &ContextRegistry::OnThreadEnd);
}

ContextRegistry::~ContextRegistry() {
    pthread_key_delete(m_ThreadKey);
}

bool ContextRegistry::HasDisplay() {
    const Lock lock(m_Mutex);
    return OpenDisplay();
}

std::string ContextRegistry::Problem() {
    const Lock lock(m_Mutex);
    return m_Problem;
}

std::size_t ContextRegistry::CountRecords() {
    const Lock lock(m_Mutex);
    return m_Records.size();
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
    // The record comes first, so that no context is lost when there is no memory for it.
    const auto record = std::make_shared<ContextRecord>();
    const CGLContextObj name = record.get();
    m_Records.emplace(name, record);
    record->context = CreateGLContext(m_Display, shareContext);
    if (record->context == EGL_NO_CONTEXT) {
        // The whole process shares the display, and other code may have terminated it.
        m_Display = {};
        if (OpenDisplay())
            record->context = CreateGLContext(m_Display, shareContext);
    }
    record->display = m_Display.display;
    if (record->context != EGL_NO_CONTEXT) {
        m_Problem.clear();
        return name;
    }
    if (m_Display.display != EGL_NO_DISPLAY)
        m_Problem = "EGL refuses another OpenGL context: " + EglErrorName(eglGetError());
    m_Records.erase(name);
    return nullptr;
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
    const Entry record = Find(context);
    if (record && (Switch(record.get()) || WaitAndSwitch(lock, record)))
        return kCGLNoError;
    // A thread that cannot have the context must not keep another one from the threads that wait for it.
    const bool released = ReleaseEglContext();
    SetThreadRecord(nullptr);
    return released && !context ? kCGLNoError : kCGLBadContext;
}

bool ContextRegistry::WaitAndSwitch(Lock& lock, const Entry& record) {
    const auto isFree = [&] { return record->holder == std::thread::id(); };
    if (isFree())
        return false; // EGL refuses for another reason
    // Two threads that wait for each other's context must not keep their own meanwhile.
    ReleaseEglContext();
    SetThreadRecord(nullptr);
    do {
        m_ContextFreed.wait(lock, [&] { return isFree() || record->destroyed; });
        if (record->destroyed)
            return false;
        if (Switch(record.get()))
            return true;
    } while (!isFree());
    return false;
}

ContextRegistry::Entry ContextRegistry::Find(CGLContextObj context) const {
    const auto found = m_Records.find(context);
    return found != m_Records.end() && !found->second->destroyed ? found->second : nullptr;
}

ContextRegistry::ThreadState& ContextRegistry::Thread() {
    pthread_setspecific(m_ThreadKey, this); // any value that is not null makes OnThreadEnd be called
    return m_Threads[std::this_thread::get_id()];
}

ContextRecord* ContextRegistry::Synchronise() {
    ContextRecord* const record = Thread().current;
    if (record && record->context != eglGetCurrentContext()) {
        SetThreadRecord(nullptr); // other code has made another context current since
        return nullptr;
    }
    return record;
}

ContextRecord* ContextRegistry::Adopt(EGLContext context) {
    for (const auto& [name, record] : m_Records)
        if (!record->foreign && !record->destroyed && record->context == context) {
            SetThreadRecord(name); // our own context, which other code has restored
            return name;
        }
    auto state = std::make_shared<ContextRecord>();
    state->display = eglGetCurrentDisplay();
    state->context = context;
    state->draw = eglGetCurrentSurface(EGL_DRAW);
    state->read = eglGetCurrentSurface(EGL_READ);
    state->api = eglQueryAPI();
    state->foreign = true;
    return Remember(std::move(state));
}

ContextRecord* ContextRegistry::Remember(Entry state) {
    std::vector<ContextRecord*>& known = Thread().foreign;
    const auto found = std::find_if(known.begin(), known.end(),
                                    [&](const ContextRecord* record) { return SameState(*record, *state); });
    if (found != known.end()) {
        std::rotate(found, found + 1, known.end()); // now the most recent one
        return known.back();
    }
    if (known.size() == s_MostForeignStates) {
        m_Records.erase(known.front());
        known.erase(known.begin());
    }
    known.push_back(state.get());
    m_Records.emplace(known.back(), std::move(state));
    return known.back();
}

bool ContextRegistry::Switch(ContextRecord* record) {
    if (Thread().current == record)
        return true;
    // EGL knows whether another thread has the context. The holder of the record may have lost it to other
    // code.
    if (!eglMakeCurrent(record->display, record->draw, record->read, record->context))
        return false;
    if (record->foreign)
        eglBindAPI(record->api);
    SetThreadRecord(record->foreign ? nullptr : record);
    return true;
}

void ContextRegistry::SetThreadRecord(ContextRecord* record) {
    ContextRecord* const before = std::exchange(Thread().current, record);
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

void ContextRegistry::EndThread() {
    const Lock lock(m_Mutex);
    const auto thread = m_Threads.find(std::this_thread::get_id());
    if (thread == m_Threads.end())
        return;
    if (const ContextRecord* const record = thread->second.current) {
        // EGL's dispatcher may already have dropped its state of this thread and would then ignore the
        // release. Making the context current again, which it still is for the driver, renews that state.
        eglMakeCurrent(record->display, EGL_NO_SURFACE, EGL_NO_SURFACE, record->context);
        ReleaseEglContext();
        SetThreadRecord(nullptr);
    }
    for (ContextRecord* const foreign : thread->second.foreign)
        m_Records.erase(foreign);
    m_Threads.erase(thread);
    pthread_setspecific(m_ThreadKey, nullptr);
}

void ContextRegistry::OnThreadEnd(void*) {
    s_Registry.EndThread();
}
