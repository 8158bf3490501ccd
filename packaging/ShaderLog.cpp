#include "packaging/ShaderLog.h"

#include <iterator>
#include <optional>
#include <regex>
#include <sstream>

namespace fxhost {

namespace {

// The format of a message with a line number, and the regex groups of its parts.
struct Form {
    const char* pattern;
    std::size_t string, line, severity, text;
};
constexpr Form s_Forms[] = {
    {R"(^(\d+):(\d+)\(\d+\): (?:preprocessor )?(error|warning): (.*)$)", 1, 2, 3, 4}, // Mesa
    {R"(^(ERROR|WARNING): (\d+):(\d+): (.*)$)", 2, 3, 1, 4},                          // Apple, Intel, AMD
    {R"(^(\d+)\((\d+)\) : (?:fatal )?(error|warning) (.*)$)", 1, 2, 3, 4},            // NVIDIA
};

const std::vector<std::regex>& Patterns() {
    static const std::vector<std::regex> s_Patterns = [] {
        std::vector<std::regex> compiled;
        for (const Form& form : s_Forms)
            compiled.emplace_back(form.pattern, std::regex::icase | std::regex::optimize);
        return compiled;
    }();
    return s_Patterns;
}

bool IsSummary(const std::string& line) {
    static const std::regex s_Summary(R"(^(ERROR: )?\d+ (compilation )?(errors?|warnings?)\b.*)",
                                      std::regex::icase);
    return std::regex_match(line, s_Summary);
}

// Returns 0 for numbers that do not fit.
int ToLine(const std::string& digits) {
    return digits.size() > 9 ? 0 : std::stoi(digits);
}

std::optional<LogMessage> Located(const std::string& line) {
    std::smatch match;
    for (std::size_t i = 0; i < std::size(s_Forms); ++i) {
        const Form& form = s_Forms[i];
        if (!std::regex_match(line, match, Patterns()[i]))
            continue;
        const char first = match[form.severity].str().front();
        return LogMessage{ToLine(match[form.string]), ToLine(match[form.line]),
                          first == 'w' || first == 'W' ? Severity::Warning : Severity::Error,
                          match[form.text]};
    }
    return std::nullopt;
}

LogMessage Unlocated(const std::string& line) {
    static const std::regex s_Marked(R"(^(error|warning): *(.*)$)", std::regex::icase);
    std::smatch match;
    if (!std::regex_match(line, match, s_Marked))
        return {0, 0, Severity::Error, line};
    const char first = match[1].str().front();
    return {0, 0, first == 'w' || first == 'W' ? Severity::Warning : Severity::Error, match[2]};
}

bool StartsMessage(const std::string& line) {
    static const std::regex s_Marked(R"(^(error|warning):.*)", std::regex::icase);
    return std::regex_match(line, s_Marked);
}

} // namespace

std::vector<LogMessage> ParseShaderLog(const std::string& log) {
    std::vector<LogMessage> messages;
    std::istringstream lines(log);
    for (std::string line; std::getline(lines, line);) {
        while (!line.empty() && (line.back() == '\r' || line.back() == ' '))
            line.pop_back();
        if (line.empty() || IsSummary(line))
            continue;
        if (const auto located = Located(line))
            messages.push_back(*located);
        else if (messages.empty() || StartsMessage(line))
            messages.push_back(Unlocated(line));
        else
            messages.back().text += " " + line;
    }
    return messages;
}

} // namespace fxhost
