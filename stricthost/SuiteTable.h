#pragma once

#include <map>
#include <mutex>
#include <string>
#include <utility>

#include "sdk/HostApi.h"
#include "stricthost/Options.h"
#include "stricthost/ViolationList.h"

namespace stricthost {

// One suite: its name and number, the hosts that provide it, and its table of functions.
struct SuiteRow {
    enum Host { Both, AfterEffects, Premiere };
    const char* name;
    std::int32_t number;
    Host host;
    const void* table;
};

// Provides the suites of a personality and counts references to them. Any thread may call.
class SuiteTable {
public:
    SuiteTable(const Options& options, ViolationList& violations)
        : m_Options(options), m_Violations(violations) {}

    // Null for a suite that this host does not provide.
    const void* Acquire(const char* name, std::int32_t number);
    // False, with a violation, for a suite that the plug-in does not hold.
    bool Release(const char* name, std::int32_t number, const std::string& who);
    // Reports suites that were not released.
    void CheckAtEnd();

private:
    const Options& m_Options;
    ViolationList& m_Violations;
    std::mutex m_Mutex;
    std::map<std::pair<std::string, std::int32_t>, long> m_Borrowed;
};

// The basic suite that every command carries.
SPBasicSuite* BasicSuite();

// The tables, one group in each source file (EffectSuites.cpp ...). The last row has no name.
const SuiteRow* EffectSuites();
const SuiteRow* AegpSuites();
const SuiteRow* PremiereSuites();

} // namespace stricthost
