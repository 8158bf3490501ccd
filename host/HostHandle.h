#pragma once

#include <cstddef>

#include "host/Suites.h"

namespace Adapter {

// A new block of host memory. The destructor disposes of it unless it was handed over to the host.
class HostHandle {
public:
    // Allocates `size` bytes; the object is empty when the host has no memory left.
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

    // The locked block, whose content is undefined at first. Null when the object is empty.
    void* Data() const { return m_Data; }
    // Stores the handle in a field that the host reads, and unlocks it. The host owns the block from then on.
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
