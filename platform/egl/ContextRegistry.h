#pragma once

#include <EGL/egl.h>

#include <condition_variable>
#include <map>
#include <memory>
#include <mutex>
#include <pthread.h>
#include <string>
#include <thread>

#include "platform/CGL.h"
#include "platform/egl/DisplayChoice.h"

// Everything EGL needs to make one context current again.
struct ContextRecord {
    EGLDisplay display = EGL_NO_DISPLAY;
    EGLContext context = EGL_NO_CONTEXT;
    EGLSurface draw = EGL_NO_SURFACE;
    EGLSurface read = EGL_NO_SURFACE;
    EGLenum api = EGL_NONE; // foreign contexts only: what their thread had bound
    bool foreign = false;   // made by other code; nobody waits for it
    bool destroyed = false;
    std::thread::id holder; // the thread on which it is current; the empty id when it is free
};

// Who holds which context. One for the process; every member function may be called from any thread.
// A thread's own current record hangs on a thread key, whose destructor lets go of the context when the
// thread ends. (A thread_local with a destructor would keep the module loaded until its threads end.)
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

private:
    using Lock = std::unique_lock<std::mutex>;
    using Entry = std::shared_ptr<ContextRecord>;

    bool OpenDisplay();                          // the lock is held in this and all below
    Entry Find(CGLContextObj context) const;     // null when unknown
    ContextRecord* Synchronise();                // the thread's own record, brought in line with EGL
    ContextRecord* Adopt(EGLContext context);    // the record of what other code made current
    bool Switch(ContextRecord* record);          // one attempt; false when EGL refuses
    void SetThreadRecord(ContextRecord* record); // also frees the one held before
    void EndThread(ContextRecord* record);
    static void OnThreadEnd(void* record);

    std::mutex m_Mutex;
    std::condition_variable m_ContextFreed;
    std::map<CGLContextObj, Entry> m_Records;
    GLDisplay m_Display;
    std::string m_Problem;
    pthread_key_t m_ThreadRecord = 0;
};

ContextRegistry& GetContextRegistry();
