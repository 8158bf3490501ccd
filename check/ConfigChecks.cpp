#include "check/ConfigChecks.h"

#include <algorithm>
#include <iterator>
#include <regex>

#include "packaging/ScriptScan.h"
#include "toolkit/TextParsing.h"

namespace fxhost {

namespace {

struct Setting {
    const char* name;
    bool isNumber;
    bool isRequired;
};
constexpr Setting s_Settings[] = {
    {"FXNAME", false, false},       {"ABOUT", false, false},        {"AGEP_ID", false, false},
    {"MAJOR_VERSION", true, false}, {"MINOR_VERSION", true, false}, {"BUILD_VERSION", true, false},
    {"STAGE_VERSION", true, false}, {"FLAGS", true, true},          {"FLAGS2", true, true},
    {"PRIVNUM", true, false},
};

const Setting* Find(const std::string& name) {
    const auto* const found = std::find_if(std::begin(s_Settings), std::end(s_Settings),
                                           [&](const Setting& setting) { return setting.name == name; });
    return found == std::end(s_Settings) ? nullptr : found;
}

struct Element {
    std::string name, parent, text;
    int line;
};

std::string WithoutXmlComments(std::string text) {
    for (auto at = text.find("<!--"); at != std::string::npos; at = text.find("<!--", at)) {
        const auto end = std::min(text.find("-->", at), text.size() - 3) + 3;
        std::replace_if(
            text.begin() + static_cast<std::ptrdiff_t>(at), text.begin() + static_cast<std::ptrdiff_t>(end),
            [](char c) { return c != '\n'; }, ' ');
    }
    return text;
}

// All elements with the text up to the next tag.
std::vector<Element> Elements(const std::string& xml) {
    static const std::regex s_Tag(R"(<(/?)([A-Za-z_][\w.-]*)[^>]*?(/?)>([^<]*))");
    std::vector<Element> elements;
    std::vector<std::string> open;
    const std::string text = WithoutXmlComments(xml);
    for (std::sregex_iterator at(text.begin(), text.end(), s_Tag), end; at != end; ++at) {
        if (at->length(1)) {
            if (!open.empty())
                open.pop_back();
            continue;
        }
        elements.push_back({at->str(2), open.empty() ? "" : open.back(), Trimmed(at->str(4)),
                            LineAt(text, static_cast<std::size_t>(at->position()))});
        if (!at->length(3))
            open.push_back(at->str(2));
    }
    return elements;
}

// PF_OutFlag2_SUPPORTS_THREADED_RENDERING
constexpr unsigned long s_ThreadedRendering = 0x8000000;

bool AsksForThreads(const Element& element) {
    return element.name == "FLAGS2" &&
           (std::strtoul(element.text.c_str(), nullptr, 10) & s_ThreadedRendering);
}

std::string Problem(const Element& element, const std::vector<Element>& all) {
    const Setting* const setting = Find(element.name);
    if (setting && !element.parent.empty())
        return element.name + " is inside <" + element.parent +
               ">, where the engine does not find it; each setting must be a separate element at the "
               "top level";
    const bool isRoot = std::any_of(all.begin(), all.end(),
                                    [&](const Element& other) { return other.parent == element.name; });
    if (!setting && element.parent.empty() && !isRoot)
        return "there is no setting " + element.name;
    const bool isDecimal =
        !element.text.empty() && element.text.find_first_not_of("0123456789") == std::string::npos;
    if (setting && setting->isNumber && !isDecimal)
        return element.name + " is \"" + element.text + "\", but must be a decimal number" +
               (element.text.starts_with("0x")
                    ? " (" + std::to_string(std::strtoul(element.text.c_str(), nullptr, 16)) + ")"
                    : "");
    if (AsksForThreads(element))
        return "FLAGS2 asks for threaded rendering, 134217728 (0x8000000), so After Effects renders without "
               "instance data, and the layer passes through unchanged; leave that flag out";
    return "";
}

} // namespace

std::vector<Diagnostic> CheckConfig(const std::string& file, const std::string& text) {
    const std::vector<Element> elements = Elements(text);
    std::vector<Diagnostic> found;
    const auto warn = [&](int line, const std::string& problem) {
        found.push_back({file, line, Severity::Warning, problem, {}});
    };
    for (const Element& element : elements)
        if (const std::string problem = Problem(element, elements); !problem.empty())
            warn(element.line, problem);
    for (const Setting& setting : s_Settings)
        if (setting.isRequired && std::none_of(elements.begin(), elements.end(), [&](const Element& element) {
                return element.name == setting.name;
            }))
            warn(0, std::string(setting.name) +
                        " is missing; without it hosts use 8 bits per channel and no smart render (the usual "
                        "values are FLAGS 33554432 and FLAGS2 5120)");
    return found;
}

} // namespace fxhost
