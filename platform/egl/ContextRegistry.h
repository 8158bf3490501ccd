#pragma once

#include <EGL/egl.h>

#include <condition_variable>
#include <map>
#include <memory>
#include <mutex>
#include <pthread.h>
#include <string>
#include <thread>
#include <vector>

#include "platform/CGL.h"
#include "platform/egl/DisplayChoice.h"

// What EGL needs to make a context current again.
struct ContextRecord {
    EGLDisplay display = EGL_NO_DISPLAY;
    EGLContext context = EGL_NO_CONTEXT;
    EGLSurface draw = EGL_NO_SURFACE;
    EGLSurface read = EGL_NO_SURFACE;
    EGLenum api = EGL_NONE; // foreign contexts only: the API that their thread had bound
    bool foreign = false;   // created by other code, so that no thread waits for it
    bool destroyed = false;
    std::thread::id holder; // the thread on which it is current; the empty id when there is none
};

// Knows which thread uses which context. There is one registry in the process. Every public function may be
// called from any thread. When a thread ends, the destructor of a thread key releases its context. (A
// thread_local variable with a destructor would keep the module loaded until its threads end.)
class ContextRegistry {
public:
    ContextRegistry();
    ~ContextRegistry();
    ContextRegistry(const ContextRegistry&) = delete;
    ContextRegistry& operator=(const ContextRegistry&) = delete;

    bool HasDisplay();
    std::string Problem();

    CGLContextObj Create(CGLContextObj share);
    CGLError Destroy(CGLContextObj context);
    CGLContextObj Current();
    CGLError MakeCurrent(CGLContextObj context);

    // The number of contexts and states of foreign contexts that are stored.
    std::size_t CountRecords();

private:
    using Lock = std::unique_lock<std::mutex>;
    using Entry = std::shared_ptr<ContextRecord>;
    struct ThreadState {
        ContextRecord* current = nullptr;    // never a foreign one
        std::vector<ContextRecord*> foreign; // least recently used first
    };

    // All functions below need the mutex to be locked, except those for the end of a thread.
    bool OpenDisplay();
    Entry Find(CGLContextObj context) const; // null when unknown
    ThreadState& Thread();                   // of the calling thread
    // Returns the record of the calling thread's context after comparing it with EGL's.
    ContextRecord* Synchronise();
    // Returns the record of a context that other code has made current.
    ContextRecord* Adopt(EGLContext context);
    // Stores the state of a foreign context, unless the thread has the same one already.
    ContextRecord* Remember(Entry state);
    // Tries once to make a context current. False when EGL refuses.
    bool Switch(ContextRecord* record);
    // Waits until no other thread uses the context. False when it cannot be made current.
    bool WaitAndSwitch(Lock& lock, const Entry& record);
    // Sets the calling thread's current record and releases the one before.
    void SetThreadRecord(ContextRecord* record);
    void EndThread();
    static void OnThreadEnd(void*);

    std::mutex m_Mutex;
    std::condition_variable m_ContextFreed;
    std::map<CGLContextObj, Entry> m_Records;
    std::map<std::thread::id, ThreadState> m_Threads;
    GLDisplay m_Display;
    std::string m_Problem;
    pthread_key_t m_ThreadKey = 0;
};

ContextRegistry& GetContextRegistry();
