#include "validate/Report.h"

#include <algorithm>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "toolkit/Errors.h"

namespace validate {

namespace {

using Json = nlohmann::ordered_json;
using Status = TestResult::Status;

struct StatusRow {
    Status status;
    const char* name;
    int exitStatus;
};
constexpr StatusRow s_Statuses[] = {
    {Status::Passed, "valid", fxhost::ExitOk},
    {Status::Failed, "invalid", fxhost::ExitEffectFailed},
    {Status::RanAway, "crashed", fxhost::ExitRanAway},
};

const StatusRow& RowOf(Status status) {
    return s_Statuses[static_cast<std::size_t>(status)];
}

Status Worst(const std::vector<TestResult>& results) {
    Status worst = Status::Passed;
    for (const TestResult& result : results)
        worst = std::max(worst, result.status);
    return worst;
}

std::string Seconds(double seconds) {
    char text[32];
    std::snprintf(text, sizeof text, "%.2f", seconds);
    return text;
}

std::string Escaped(const std::string& text) {
    std::string escaped;
    for (const char c : text)
        switch (c) {
        case '<':
            escaped += "&lt;";
            break;
        case '>':
            escaped += "&gt;";
            break;
        case '&':
            escaped += "&amp;";
            break;
        case '"':
            escaped += "&quot;";
            break;
        default:
            escaped += static_cast<unsigned char>(c) < 0x20 && c != '\n' ? ' ' : c;
        }
    return escaped;
}

std::string Joined(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines)
        text += line + "\n";
    return text;
}

} // namespace

std::string ToText(const std::vector<TestResult>& results) {
    std::string text;
    for (const TestResult& result : results) {
        text += std::string(result.status == Status::Passed ? "passed  " : "FAILED  ") + result.name + "  (" +
                Seconds(result.seconds) + " s, " + std::to_string(result.commands) + " commands)\n";
        if (result.status == Status::Passed)
            continue;
        text += "    This test protects from " + result.protects + ".\n";
        for (const std::string& finding : result.findings)
            text += "    - " + finding + "\n";
        if (result.status == Status::RanAway)
            for (const std::string& line : result.log)
                text += "      " + line + "\n";
    }
    return text + RowOf(Worst(results)).name + "\n";
}

std::string ToJson(const std::string& plugin, const std::vector<TestResult>& results) {
    Json tests = Json::array();
    for (const TestResult& result : results)
        tests.push_back({{"name", result.name},
                         {"level", result.level},
                         {"seed", result.seed},
                         {"verdict", RowOf(result.status).name},
                         {"seconds", result.seconds},
                         {"commands", result.commands},
                         {"protectsFrom", result.protects},
                         {"findings", result.findings},
                         {"log", result.log}});
    const Json report = {{"plugin", plugin}, {"verdict", RowOf(Worst(results)).name}, {"tests", tests}};
    return report.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::string ToJunit(const std::string& plugin, const std::vector<TestResult>& results) {
    const auto failed = std::count_if(results.begin(), results.end(),
                                      [](const auto& result) { return result.status == Status::Failed; });
    const auto crashed = std::count_if(results.begin(), results.end(),
                                       [](const auto& result) { return result.status == Status::RanAway; });
    std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuite name=\"" + Escaped(plugin) +
                       "\" tests=\"" + std::to_string(results.size()) + "\" failures=\"" +
                       std::to_string(failed) + "\" errors=\"" + std::to_string(crashed) + "\">\n";
    for (const TestResult& result : results) {
        const char* const kind = result.status == Status::RanAway ? "error" : "failure";
        text += "  <testcase classname=\"level" + std::to_string(result.level) + "\" name=\"" +
                Escaped(result.name) + "\" time=\"" + Seconds(result.seconds) + "\"";
        if (result.status == Status::Passed) {
            text += "/>\n";
            continue;
        }
        text += ">\n    <" + std::string(kind) + " message=\"" +
                Escaped(result.findings.empty() ? "" : result.findings.front()) + "\">" +
                Escaped(Joined(result.findings)) + Escaped(Joined(result.log)) + "</" + kind +
                ">\n  </testcase>\n";
    }
    return text + "</testsuite>\n";
}

int ExitStatusOf(const std::vector<TestResult>& results) {
    return RowOf(Worst(results)).exitStatus;
}

} // namespace validate
