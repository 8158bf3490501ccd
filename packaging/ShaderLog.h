#pragma once

#include <string>
#include <vector>

#include "packaging/Diagnostic.h"

namespace fxhost {

// One message of a shader info log.
struct LogMessage {
    int string = 0; // index of the source string that was passed to GL, from 0
    int line = 0;   // line number in that string, from 1; 0 when the driver gives none
    Severity severity = Severity::Error;
    std::string text;

    bool operator==(const LogMessage&) const = default;
};

// Parses the formats that drivers use:
//   Mesa               0:12(5): error: text
//   Apple, Intel, AMD  ERROR: 0:12: text
//   NVIDIA             0(12) : error C1008: text
// Any other line continues the message before it, or is a message without a line number if it comes first.
// Summaries such as "2 compilation errors." are dropped.
std::vector<LogMessage> ParseShaderLog(const std::string& log);

} // namespace fxhost
