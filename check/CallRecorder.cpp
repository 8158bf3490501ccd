#include "check/CallRecorder.h"

#include <utility>

#include "check/CallSignatures.h"

namespace fxhost {

namespace {

using Json = nlohmann::json;

// After so many calls a call is reported only when it differs from all earlier ones.
constexpr unsigned s_AllReported = 500;
constexpr char s_CallMark = '\x01'; // first character of a printed text that reports a call

// Wraps each native function in one that reports the call. NAMES is a list of their names.
constexpr char s_Wrapper[] = R"js((function (global, report) {
    function encode(value) {
        if (typeof value === "string") return value.slice(0, 200);
        if (typeof value === "boolean" || typeof value === "number" && isFinite(value)) return value;
        if (Array.isArray(value)) {
            var list = [];
            for (var i = 0; i < value.length && i < 16; ++i) list.push(encode(value[i]));
            return list;
        }
        return { is: typeof value === "number" ? "NaN" : value === null ? "null" : typeof value };
    }
    var calls = 0, natives = {}, seen = {};
    NAMES.forEach(function (name) {
        var native = natives[name] = global[name];
        global[name] = function () {
            var list = [];
            for (var i = 0; i < arguments.length; ++i) list.push(encode(arguments[i]));
            var result = native.apply(this, arguments);
            var text = JSON.stringify([name, list, encode(result)]);
            if (calls < ALL || !seen[text]) report("\u0001" + text);
            seen[text] = true;
            if (++calls === LIMIT) NAMES.forEach(function (other) { global[other] = natives[other]; });
            return result;
        };
    });
}(this, print)))js";

constexpr char s_PassTracer[] = R"js((function (global, report, render, init, read, release) {
    var names = {};
    global.SV_initShader = function (name) {
        var shader = init.apply(this, arguments);
        names[shader] = name;
        return shader;
    };
    global.SV_renderShader = function (shader, target) {
        report("\u0002" + names[shader]);
        var result = render.apply(this, arguments);
        release(read(target));
        report("\u0003");
        return result;
    };
}(this, print, SV_renderShader, SV_initShader, SV_textureToSurface, SV_release)))js";

std::string Replaced(std::string text, const std::string& mark, const std::string& replacement) {
    for (auto at = text.find(mark); at != std::string::npos; at = text.find(mark, at + replacement.size()))
        text.replace(at, mark.size(), replacement);
    return text;
}

// Makes an expression that evaluates a program. The interpreter numbers the lines of evaluated text from 1,
// so they are lines of the prelude, which the engine does not take for the author's.
std::string EvaluationOf(const std::string& program) {
    return "eval(" + Json(program).dump() + "); ";
}

std::string WrapperScript(unsigned limit) {
    Json names = Json::array();
    for (const CallSignature& signature : CallSignatures())
        names.push_back(signature.function);
    const std::string text = Replaced(s_Wrapper, "ALL", std::to_string(s_AllReported));
    return Replaced(Replaced(text, "NAMES", names.dump()), "LIMIT", std::to_string(limit));
}

} // namespace

std::string RecordCalls(const std::string& script, unsigned limit) {
    return EvaluationOf(WrapperScript(limit)) + script;
}

std::string TracePasses(const std::string& script) {
    return EvaluationOf(s_PassTracer) + script;
}

CallRecorder::CallRecorder(std::function<void(const ScriptCall&)> onCall,
                           ScriptMessageListener::Handler onPrint)
    : m_OnCall(std::move(onCall)), m_OnPrint(std::move(onPrint)),
      m_Listener([this](const ScriptMessage& message) { receive(message); }) {}

void CallRecorder::receive(const ScriptMessage& message) {
    if (!message.text.starts_with(s_CallMark))
        return m_OnPrint(message);
    const Json call = Json::parse(message.text.begin() + 1, message.text.end(), nullptr, false);
    if (call.is_discarded()) // text that is not UTF-8
        return;
    m_OnCall({call[0], call[1].get<std::vector<Json>>(), call[2], message.line});
}

} // namespace fxhost
