#include "drivers/ScriptWatch.h"

#include <algorithm>
#include <sstream>

#include "packaging/ScriptScan.h"

namespace fxhost {

namespace {

// The calls of the author's script, without the line that repeats the message and the interpreter's own.
std::vector<std::string> StackLines(const ScriptError& error) {
    std::vector<std::string> lines;
    std::istringstream stack(error.stack);
    for (std::string line; std::getline(stack, line);) {
        line.erase(0, line.find_first_not_of(" \t"));
        if (line.starts_with("at ") && !line.ends_with(" internal") && !line.starts_with("at eval "))
            lines.push_back(line);
    }
    return lines;
}

// "SyntaxError: text (line 3)" without what the finding's own line says already.
std::string Message(const ScriptError& error) {
    const std::string suffix = " (line " + std::to_string(error.line) + ")";
    return error.message.ends_with(suffix) ? error.message.substr(0, error.message.size() - suffix.size())
                                           : error.message;
}

} // namespace

ScriptWatch* ScriptWatch::s_Current = nullptr;

ScriptWatch::ScriptWatch(const EffectSource& source) : m_Source(source) {
    s_Current = this;
    Scripting::ErrorCallback = heard;
}

ScriptWatch::~ScriptWatch() {
    Scripting::ErrorCallback = nullptr;
    s_Current = nullptr;
}

// Calls of functions that the script does not define, told in words: the engine calls all four.
bool ScriptWatch::explainUndefined(Diagnostic& found, const std::string& evaluated) const {
    const std::string callback = evaluated == "fx.js" ? "setup" : evaluated;
    if (found.text != "ReferenceError: identifier '" + callback + "' undefined")
        return false;
    const bool hasStandIn = callback == "preRender" || callback == "updateUIFlags";
    const std::string script = m_Source.ReadText("fx.js").value_or("");
    found.line = hasStandIn ? LineOfWord(script, callback) : 0;
    found.text = hasStandIn ? "\"" + callback +
                                  "\" is mentioned but not defined, so the engine puts no stand-in "
                                  "there and its call fails"
                            : "the script defines no function " + callback + "()";
    found.notes.clear();
    return true;
}

void ScriptWatch::heard(const ScriptError& error) {
    ScriptWatch& watch = *s_Current;
    const bool isSetup = error.evaluated == "fx.js";
    watch.m_SetupFailed |= isSetup;
    // Callbacks that a broken script never came to define are no findings of their own.
    if (!isSetup && watch.m_SetupFailed && error.line == 0)
        return;
    Diagnostic found{watch.m_Source.Shown("fx.js"), error.line, Severity::Error, Message(error),
                     StackLines(error)};
    if (!watch.explainUndefined(found, error.evaluated) && !isSetup)
        found.notes.push_back("in the engine's call of " + error.evaluated);
    if (std::find(watch.m_All.begin(), watch.m_All.end(), found) == watch.m_All.end())
        watch.m_All.push_back(std::move(found));
}

std::vector<Diagnostic> ScriptWatch::take() {
    const std::vector<Diagnostic> fresh(m_All.begin() + static_cast<std::ptrdiff_t>(m_Taken), m_All.end());
    m_Taken = m_All.size();
    return fresh;
}

} // namespace fxhost
