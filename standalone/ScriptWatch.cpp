#include "standalone/ScriptWatch.h"

#include <algorithm>
#include <sstream>

namespace fxhost {

namespace {

// The traceback without the line that repeats the message.
std::vector<std::string> StackLines(const ScriptError& error) {
    std::vector<std::string> lines;
    std::istringstream stack(error.stack);
    for (std::string line; std::getline(stack, line);) {
        line.erase(0, line.find_first_not_of(" \t"));
        if (!line.empty() && line != error.message)
            lines.push_back(line);
    }
    return lines;
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

void ScriptWatch::heard(const ScriptError& error) {
    Diagnostic found{s_Current->m_Source.Shown("fx.js"), error.line, Severity::Error, error.message,
                     StackLines(error)};
    if (error.evaluated != "fx.js")
        found.notes.push_back("while the engine evaluated " + error.evaluated);
    auto& all = s_Current->m_All;
    if (std::find(all.begin(), all.end(), found) == all.end())
        all.push_back(std::move(found));
}

std::vector<Diagnostic> ScriptWatch::take() {
    const std::vector<Diagnostic> fresh(m_All.begin() + static_cast<std::ptrdiff_t>(m_Taken), m_All.end());
    m_Taken = m_All.size();
    return fresh;
}

} // namespace fxhost
