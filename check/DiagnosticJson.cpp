#include "check/DiagnosticJson.h"

namespace fxhost {

nlohmann::ordered_json ToJson(const Diagnostic& finding) {
    return {{"file", finding.file},
            {"line", finding.line},
            {"severity", finding.severity == Severity::Error ? "error" : "warning"},
            {"text", finding.text},
            {"notes", finding.notes}};
}

Diagnostic FromJson(const nlohmann::ordered_json& json) {
    return {json.at("file").get<std::string>(), json.at("line").get<int>(),
            json.at("severity").get<std::string>() == "error" ? Severity::Error : Severity::Warning,
            json.at("text").get<std::string>(), json.at("notes").get<std::vector<std::string>>()};
}

std::string OneLine(const nlohmann::ordered_json& json) {
    return json.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

} // namespace fxhost
