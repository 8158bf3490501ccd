#pragma once

#include <cstddef>
#include <cstring>

#include "AEGP_SuiteHandler.h"
#include "AE_Effect.h"

namespace Adapter {

// A new block of host memory, given back with the scope unless it is handed over to the host.
class HostHandle {
public:
    // size in bytes; empty when the host has no memory left.
    HostHandle(const AEGP_SuiteHandler& suites, std::size_t size)
        : m_Suite(suites.HandleSuite1()), m_Handle(m_Suite->host_new_handle(size)),
          m_Data(m_Handle ? m_Suite->host_lock_handle(m_Handle) : nullptr) {}
    ~HostHandle() {
        if (!m_Handle)
            return;
        if (m_Data)
            m_Suite->host_unlock_handle(m_Handle);
        m_Suite->host_dispose_handle(m_Handle);
    }
    HostHandle(const HostHandle&) = delete;
    HostHandle& operator=(const HostHandle&) = delete;

    // The block, locked; its content is undefined at first. Null when empty.
    void* Data() const { return m_Data; }
    // Stores the handle where the host looks for it, and unlocks it. It is the host's from here on.
    void HandOver(PF_Handle& destination) {
        destination = m_Handle;
        m_Suite->host_unlock_handle(m_Handle);
        m_Handle = nullptr;
    }

private:
    const PF_HandleSuite1* m_Suite;
    PF_Handle m_Handle;
    void* m_Data;
};

} // namespace Adapter
