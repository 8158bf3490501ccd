#pragma once

#include <initializer_list>

#include "sdk/SuitesApi.h"

#include "AEGP_SuiteHandler.h"

namespace Adapter {

// The name and the number under which a host provides a suite.
struct SuiteId {
    const char* name;
    A_long number;
};

// Acquires a suite from the host for a scope: the first of `ids` that the host has. The entries that the
// caller uses must be the same under all of them. The object is empty when the host has none of them.
template <class Suite>
class ScopedSuite {
public:
    ScopedSuite(const PF_InData& in, std::initializer_list<SuiteId> ids) : m_Basic(in.pica_basicP) {
        for (const SuiteId& id : ids)
            if (!m_Suite)
                Acquire(id);
    }
    ~ScopedSuite() {
        if (m_Suite)
            m_Basic->ReleaseSuite(m_Id.name, m_Id.number);
    }
    ScopedSuite(const ScopedSuite&) = delete;
    ScopedSuite& operator=(const ScopedSuite&) = delete;

    explicit operator bool() const { return m_Suite != nullptr; }
    const Suite& operator*() const { return *m_Suite; }
    const Suite* operator->() const { return m_Suite; }

private:
    void Acquire(const SuiteId& id) {
        const void* suite = nullptr;
        if (!m_Basic || m_Basic->AcquireSuite(id.name, id.number, &suite) != 0)
            return;
        m_Suite = static_cast<const Suite*>(suite);
        m_Id = id;
    }

    const SPBasicSuite* m_Basic;
    const Suite* m_Suite = nullptr;
    SuiteId m_Id = {};
};

// The error code of a command that needs a suite which the host lacks.
constexpr int MissingSuite = PF_Err_BAD_CALLBACK_PARAM;

// A ScopedSuite that throws `error` when the host lacks the suite.
template <class Suite>
class RequiredSuite : public ScopedSuite<Suite> {
public:
    RequiredSuite(const PF_InData& in, SuiteId id, int error = MissingSuite) : ScopedSuite<Suite>(in, {id}) {
        if (!*this)
            throw error;
    }
};

} // namespace Adapter
