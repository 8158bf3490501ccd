#pragma once

#include <map>
#include <mutex>
#include <string>
#include <utility>

#include "SPBasic.h"
#include "stricthost/Options.h"
#include "stricthost/ViolationList.h"

namespace stricthost {

// One suite: its name and number, who has it, and its table.
struct SuiteRow {
    enum Host { Both, AfterEffects, Premiere };
    const char* name;
    std::int32_t number;
    Host host;
    const void* table;
};

// Hands out the suites of a personality and counts them. Any thread may call.
class SuiteTable {
public:
    SuiteTable(const Options& options, ViolationList& violations)
        : m_Options(options), m_Violations(violations) {}

    // Null for a suite that this host lacks.
    const void* Acquire(const char* name, std::int32_t number);
    // False, and a report, for a suite that is not borrowed.
    bool Release(const char* name, std::int32_t number, const std::string& who);
    // Reports suites that were not given back.
    void CheckAtEnd();

private:
    const Options& m_Options;
    ViolationList& m_Violations;
    std::mutex m_Mutex;
    std::map<std::pair<std::string, std::int32_t>, long> m_Borrowed;
};

// The basic suite that every call carries.
SPBasicSuite* BasicSuite();

// The tables, one group a file. Ended by a row without a name.
const SuiteRow* EffectSuites();
const SuiteRow* AegpSuites();
const SuiteRow* PremiereSuites();

} // namespace stricthost
