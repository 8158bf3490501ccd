#include "drivers/ScriptErrorCollector.h"

#include <algorithm>
#include <sstream>

#include "packaging/LanguageHints.h"
#include "packaging/ScriptScan.h"

namespace fxhost {

namespace {

// The calls in the author's script: without the first line, which repeats the message, and without calls
// inside the interpreter.
std::vector<std::string> StackLines(const ScriptError& error) {
    std::vector<std::string> lines;
    std::istringstream stack(error.stack);
    for (std::string line; std::getline(stack, line);) {
        line.erase(0, line.find_first_not_of(" \t"));
        if (line.starts_with("at ") && !line.ends_with(" internal") && !line.starts_with("at eval ") &&
            !line.ends_with("(input:1)")) // code that a tool has added
            lines.push_back(line);
    }
    return lines;
}

// "SyntaxError: text (line 3)" without the line number, which the diagnostic contains already.
std::string Message(const ScriptError& error) {
    const std::string suffix = " (line " + std::to_string(error.line) + ")";
    return error.message.ends_with(suffix) ? error.message.substr(0, error.message.size() - suffix.size())
                                           : error.message;
}

} // namespace

ScriptErrorCollector* ScriptErrorCollector::s_Current = nullptr;

ScriptErrorCollector::ScriptErrorCollector(const EffectSource& source) : m_Source(source) {
    s_Current = this;
    Scripting::ErrorCallback = OnError;
}

ScriptErrorCollector::~ScriptErrorCollector() {
    Scripting::ErrorCallback = nullptr;
    s_Current = nullptr;
}

// The engine calls all four callbacks. Explains calls of callbacks that the script does not define.
bool ScriptErrorCollector::explainUndefined(Diagnostic& found, const std::string& evaluated) const {
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

void ScriptErrorCollector::OnError(const ScriptError& error) {
    ScriptErrorCollector& collector = *s_Current;
    const bool isSetup = error.evaluated == "fx.js";
    collector.m_SetupFailed |= isSetup;
    ++collector.m_Count;
    // A script that failed before it defined its callbacks gets no further errors about them.
    if (!isSetup && collector.m_SetupFailed && error.line == 0)
        return;
    Diagnostic found{collector.m_Source.DisplayPath("fx.js"), error.line, Severity::Error, Message(error),
                     StackLines(error)};
    if (!collector.explainUndefined(found, error.evaluated) && !isSetup)
        found.notes.push_back("in the engine's call of " + error.evaluated);
    AddScriptHints(found, collector.m_Source.ReadText("fx.js").value_or(""));
    if (std::find(collector.m_All.begin(), collector.m_All.end(), found) == collector.m_All.end())
        collector.m_All.push_back(std::move(found));
}

std::vector<Diagnostic> ScriptErrorCollector::take() {
    const std::vector<Diagnostic> fresh(m_All.begin() + static_cast<std::ptrdiff_t>(m_Taken), m_All.end());
    m_Taken = m_All.size();
    return fresh;
}

} // namespace fxhost
