#include "check/ScriptChecks.h"

#include <algorithm>
#include <map>
#include <regex>
#include <set>

#include "check/CallSignatures.h"
#include "packaging/ScriptScan.h"
#include "scripting/PitchScript.h"
#include "toolkit/TextParsing.h"

namespace fxhost {

namespace {

using Names = std::set<std::string>;

// The members of the constant objects, read from the text that the engine puts before every script.
std::map<std::string, Names> ConstantObjects() {
    static const std::regex s_Object(R"(var (SV_\w+) = \{([^}]*)\})"), s_Member(R"((\w+)\s*:)");
    const std::string prelude = PitchScript("");
    std::map<std::string, Names> objects;
    for (std::sregex_iterator at(prelude.begin(), prelude.end(), s_Object), end; at != end; ++at) {
        const std::string body = WithoutComments(at->str(2));
        for (std::sregex_iterator name(body.begin(), body.end(), s_Member); name != end; ++name)
            objects[at->str(1)].insert(name->str(1));
    }
    return objects;
}

Names Functions() {
    Names names;
    for (const CallSignature& signature : CallSignatures())
        names.insert(signature.function);
    return names;
}

// ". Did you mean X?" for the closest name, empty when none is close.
std::string Suggestion(const std::string& word, const Names& names) {
    const std::string closest = ClosestWord(word, {names.begin(), names.end()});
    return closest.empty() ? "" : "; did you mean " + closest + "?";
}

} // namespace

std::vector<Diagnostic> CheckScript(const std::string& file, const std::string& script) {
    static const std::regex s_Use(R"(\b(SV_|S\.V\.)(\w+)(?:\s*\.\s*(\w+))?)");
    static const auto s_Objects = ConstantObjects();
    static const Names s_Functions = Functions();
    const std::string text = WithoutStrings(WithoutComments(script));
    std::vector<Diagnostic> found;
    for (std::sregex_iterator at(text.begin(), text.end(), s_Use), end; at != end; ++at) {
        const std::string name = "SV_" + at->str(2), member = at->str(3);
        const auto object = s_Objects.find(name);
        std::string problem;
        if (object == s_Objects.end() && !s_Functions.contains(name))
            problem = "there is no " + name + Suggestion(name, s_Functions);
        else if (object != s_Objects.end() && !member.empty() && !object->second.contains(member))
            problem = name + " has no member " + member + Suggestion(member, object->second);
        if (!problem.empty())
            found.push_back({file,
                             LineAt(text, static_cast<std::size_t>(at->position())),
                             Severity::Warning,
                             problem,
                             {}});
    }
    return found;
}

} // namespace fxhost
