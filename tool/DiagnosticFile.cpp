#include "tool/DiagnosticFile.h"

#include <cerrno>
#include <cstring>
#include <sstream>
#include <string>

#include "check/DiagnosticJson.h"
#include "toolkit/Errors.h"

namespace fxhost {

namespace {

using Json = nlohmann::ordered_json;

void WriteLine(std::FILE* file, const Json& json) {
    std::fprintf(file, "%s\n", OneLine(json).c_str());
    std::fflush(file);
}

} // namespace

DiagnosticFile::DiagnosticFile() : m_File(std::tmpfile()) {
    if (!m_File)
        throw EffectFailure(std::string("no temporary file can be made: ") + std::strerror(errno));
}

void DiagnosticFile::add(const Diagnostic& diagnostic) {
    WriteLine(m_File.get(), ToJson(diagnostic));
}

void DiagnosticFile::setPending(const std::optional<Diagnostic>& diagnostic) {
    WriteLine(m_File.get(), {{"pending", diagnostic ? ToJson(*diagnostic) : Json()}});
}

std::vector<Diagnostic> DiagnosticFile::readAll() {
    std::string text;
    std::rewind(m_File.get());
    for (int c = std::fgetc(m_File.get()); c != EOF; c = std::fgetc(m_File.get()))
        text += static_cast<char>(c);
    std::vector<Diagnostic> diagnostics;
    std::optional<Diagnostic> pending;
    std::istringstream lines(text.substr(0, text.rfind('\n') + 1)); // the last line may be incomplete
    for (std::string line; std::getline(lines, line);) {
        const Json json = Json::parse(line);
        if (!json.contains("pending"))
            diagnostics.push_back(FromJson(json));
        else
            pending =
                json.at("pending").is_null() ? std::nullopt : std::optional(FromJson(json.at("pending")));
    }
    if (pending)
        diagnostics.push_back(*pending);
    return diagnostics;
}

} // namespace fxhost
