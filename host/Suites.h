#pragma once

#include <initializer_list>

#include "AE_Effect.h"
#include "SPBasic.h"

namespace Adapter {

// Name and number under which a host hands out a suite.
struct SuiteId {
    const char* name;
    A_long number;
};

// Borrows a suite from the host for the scope: the first of `ids` that the host has, all of which must agree
// with `Suite` in the entries that are used. Empty when the host has none.
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

// The error of a command that needs a suite which the host lacks.
constexpr int MissingSuite = PF_Err_BAD_CALLBACK_PARAM;

// As ScopedSuite, but throws `error` when the host lacks the suite.
template <class Suite>
class RequiredSuite : public ScopedSuite<Suite> {
public:
    RequiredSuite(const PF_InData& in, SuiteId id, int error = MissingSuite) : ScopedSuite<Suite>(in, {id}) {
        if (!*this)
            throw error;
    }
};

} // namespace Adapter
