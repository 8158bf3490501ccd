#include "stricthost/SuiteTable.h"

#include <cstring>

#include "SPErrorCodes.h"
#include "stricthost/HostCall.h"
#include "stricthost/HostCore.h"

namespace stricthost {

namespace {

const SuiteRow* FindRow(const Options& options, const char* name, std::int32_t number) {
    const bool premiere = options.personality == Personality::Premiere;
    const auto other = premiere ? SuiteRow::AfterEffects : SuiteRow::Premiere;
    if (!name || options.missingSuites.count(name) != 0)
        return nullptr;
    for (const SuiteRow* group : {EffectSuites(), AegpSuites(), PremiereSuites()})
        for (const SuiteRow* row = group; row->name; ++row)
            if (row->number == number && row->host != other && std::strcmp(row->name, name) == 0)
                return row;
    return nullptr;
}

SPErr AcquireSuite(const char* name, std::int32_t number, const void** suite) {
    HostCall* call = HostCall::Require("AcquireSuite");
    if (!call || !suite)
        return kSPBadParameterError;
    *suite = call->host.suites.Acquire(name, number);
    return *suite ? kSPNoError : kSPSuiteNotFoundError;
}

SPErr ReleaseSuite(const char* name, std::int32_t number) {
    HostCall* call = HostCall::Require("ReleaseSuite");
    const bool released = call && name && call->host.suites.Release(name, number, call->Name());
    return released ? kSPNoError : kSPBadParameterError;
}

SPBoolean IsEqual(const char* a, const char* b) {
    return static_cast<SPBoolean>(a && b && std::strcmp(a, b) == 0);
}

SPErr Undefined() {
    if (HostCall* call = HostCall::Require("the undefined entry of the basic suite"))
        call->Report("called the undefined entry of the basic suite");
    return kSPBadParameterError;
}

} // namespace

const void* SuiteTable::Acquire(const char* name, std::int32_t number) {
    const SuiteRow* row = FindRow(m_Options, name, number);
    if (!row)
        return nullptr;
    const std::lock_guard lock(m_Mutex);
    ++m_Borrowed[{name, number}];
    return row->table;
}

bool SuiteTable::Release(const char* name, std::int32_t number, const std::string& who) {
    const std::lock_guard lock(m_Mutex);
    const auto found = m_Borrowed.find({name, number});
    if (found != m_Borrowed.end() && found->second > 0) {
        --found->second;
        return true;
    }
    m_Violations.Add(who + " released " + name + " " + std::to_string(number) + " without holding it");
    return false;
}

void SuiteTable::CheckAtEnd() {
    const std::lock_guard lock(m_Mutex);
    for (const auto& [suite, count] : m_Borrowed)
        if (count > 0)
            m_Violations.Add(suite.first + " " + std::to_string(suite.second) + " was never released (" +
                             std::to_string(count) + " times)");
}

SPBasicSuite* BasicSuite() {
    static SPBasicSuite basic = {AcquireSuite, ReleaseSuite, IsEqual, nullptr, nullptr, nullptr, Undefined};
    return &basic;
}

} // namespace stricthost
