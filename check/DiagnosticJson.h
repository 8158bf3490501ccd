#pragma once

#include <nlohmann/json.hpp>

#include "packaging/Diagnostic.h"

namespace fxhost {

// {"file", "line", "severity": "error" or "warning", "text", "notes"}
nlohmann::ordered_json ToJson(const Diagnostic& finding);
Diagnostic FromJson(const nlohmann::ordered_json& json);

// JSON text on one line; bytes that are not UTF-8 are replaced.
std::string OneLine(const nlohmann::ordered_json& json);

} // namespace fxhost
