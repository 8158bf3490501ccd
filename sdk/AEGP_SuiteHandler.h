#pragma once

#include <initializer_list>

#include "AE_EffectCBSuites.h"
#include "AE_EffectSuites.h"
#include "AE_GeneralPlug.h"
#include "SPBasic.h"
#include "SPErrorCodes.h"

// Borrows suites on first use and gives all of them back at its end. A suite that the host lacks ends in
// MissingSuiteError, which the plug-in defines: it must throw.
class AEGP_SuiteHandler {
public:
    explicit AEGP_SuiteHandler(const SPBasicSuite* pica_basicP) : m_Basic(pica_basicP) {
        if (!m_Basic)
            MissingSuiteError();
    }
    ~AEGP_SuiteHandler() {
        m_Handle.Release(m_Basic);
        m_Color.Release(m_Basic);
        m_Utility.Release(m_Basic);
    }

    const SPBasicSuite* Pica() const { return m_Basic; }
    PF_HandleSuite1* HandleSuite1() const { return Get(m_Handle); }
    PF_ColorParamSuite1* ColorParamSuite1() const { return Get(m_Color); }
    AEGP_UtilitySuite3* UtilitySuite3() const { return Get(m_Utility); }

private:
    template <class Suite>
    struct Entry {
        const char* name;
        int32_t number;
        const void* suite = nullptr;

        void Release(const SPBasicSuite* basic) {
            if (suite)
                basic->ReleaseSuite(name, number);
        }
    };

    AEGP_SuiteHandler(const AEGP_SuiteHandler&);
    AEGP_SuiteHandler& operator=(const AEGP_SuiteHandler&);

    template <class Suite>
    Suite* Get(Entry<Suite>& entry) const {
        if (!entry.suite && m_Basic->AcquireSuite(entry.name, entry.number, &entry.suite) != kSPNoError)
            entry.suite = nullptr;
        if (!entry.suite)
            MissingSuiteError();
        return static_cast<Suite*>(const_cast<void*>(entry.suite));
    }

    void MissingSuiteError() const;

    const SPBasicSuite* m_Basic;
    mutable Entry<PF_HandleSuite1> m_Handle{kPFHandleSuite, kPFHandleSuiteVersion1};
    mutable Entry<PF_ColorParamSuite1> m_Color{kPFColorParamSuite, kPFColorParamSuiteVersion1};
    mutable Entry<AEGP_UtilitySuite3> m_Utility{kAEGPUtilitySuite, kAEGPUtilitySuiteVersion3};
};
