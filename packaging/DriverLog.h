#pragma once

#include <string>
#include <vector>

#include "packaging/Diagnostic.h"

namespace fxhost {

// One message of a driver's shader log.
struct LogMessage {
    int string = 0; // which of the source strings handed to GL, from 0
    int line = 0;   // in the driver's count, from 1; 0 when the driver names none
    Severity severity = Severity::Error;
    std::string text;

    bool operator==(const LogMessage&) const = default;
};

// Reads the forms that drivers use:
//   Mesa               0:12(5): error: text
//   Apple, Intel, AMD  ERROR: 0:12: text
//   NVIDIA             0(12) : error C1008: text
// Other lines are messages without a line when they follow none, else they continue the one before; counts
// such as "2 compilation errors." are dropped.
std::vector<LogMessage> ParseDriverLog(const std::string& log);

} // namespace fxhost
