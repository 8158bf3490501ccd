#pragma once

#include <functional>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "drivers/ScriptMessageListener.h"

namespace fxhost {

// One call of a native function. Numbers, booleans and short texts are themselves; arrays keep their first 16
// elements. Everything else is {"is": "undefined"}, "null", "NaN", "function" or "object".
struct ScriptCall {
    std::string function;
    std::vector<nlohmann::json> arguments;
    nlohmann::json result;
    int line = 0; // line of the call in fx.js, from 1; 0 when unknown
};

// Returns the script with a first statement, on the author's first line, that makes the native functions
// report their first `limit` calls, or all when it is 0. The script behaves as before, and after the last of
// these calls it also runs as fast as before.
std::string RecordCalls(const std::string& script, unsigned limit = 0);

// Returns the script with a first statement that waits for the GPU after each pass. SV_renderShader prints
// PassBegins and the name of the shader before the pass, and PassEnds after it.
std::string TracePasses(const std::string& script);
inline constexpr char PassBegins = '\x02', PassEnds = '\x03';

// Receives the calls and the printed text of a script that RecordCalls has changed, from construction to
// destruction. Only one recorder may exist at a time.
class CallRecorder {
public:
    // The functions are called while the script runs, so they must not call the engine. A call is reported
    // after the native function has returned.
    CallRecorder(std::function<void(const ScriptCall&)> onCall, ScriptMessageListener::Handler onPrint);

private:
    void receive(const ScriptMessage& message);

    std::function<void(const ScriptCall&)> m_OnCall;
    ScriptMessageListener::Handler m_OnPrint;
    ScriptMessageListener m_Listener;
};

} // namespace fxhost
