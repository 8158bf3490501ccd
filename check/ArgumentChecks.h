#pragma once

#include <string>

#include "check/CallRecorder.h"

namespace fxhost {

// Compares the arguments of a call with what the native function expects: their number, their types, the kind
// and existence of handles, lengths of arrays, known constants. Returns what is wrong with the first bad
// argument and how to correct it; empty when nothing is. Needs the frame lock, because it looks handles up.
std::string ArgumentProblem(const ScriptCall& call);

// The handle in an argument or a result; 0 when it is none.
unsigned HandleIn(const nlohmann::json& value);

} // namespace fxhost
