#include "engine/XmlDepth.h"

#include <rapidxml.hpp>
#include <string_view>

namespace {

// Markup whose content has no elements.
constexpr struct {
    std::string_view begin, end;
} s_Opaque[] = {{"<!--", "-->"}, {"<![CDATA[", "]]>"}, {"<?", "?>"}};

// Returns the position after the next occurrence of `end`, or the length of the text.
std::size_t After(std::string_view xml, std::string_view end, std::size_t from) {
    const auto at = xml.find(end, from);
    return at == std::string_view::npos ? xml.size() : at + end.size();
}

std::size_t SkipOpaque(std::string_view xml, std::size_t at) {
    for (const auto& markup : s_Opaque)
        if (xml.substr(at).starts_with(markup.begin))
            return After(xml, markup.end, at + markup.begin.size());
    return at;
}

// Skips a document type declaration, in which brackets can contain further ones.
std::size_t SkipDocumentType(std::string_view xml, std::size_t at) {
    int brackets = 0;
    for (; at < xml.size() && (xml[at] != '>' || brackets > 0); ++at)
        brackets += xml[at] == '[' ? 1 : xml[at] == ']' ? -1 : 0;
    return at;
}

// Returns the position of the ">" of a start tag. Attributes can contain this character in quotes.
std::size_t EndOfTag(std::string_view xml, std::size_t at) {
    while (at < xml.size() && xml[at] != '>') {
        const auto quote = xml[at] == '"' || xml[at] == '\'' ? xml.find(xml[at], at + 1) : at;
        at = quote == std::string_view::npos ? xml.size() : quote + 1;
    }
    return at;
}

} // namespace

void CheckXmlDepth(const std::string& text, int limit) {
    const std::string_view xml = text;
    int depth = 0;
    for (auto at = xml.find('<'); at != std::string_view::npos; at = xml.find('<', at)) {
        const auto next = SkipOpaque(xml, at);
        if (next != at) {
            at = next;
        } else if (xml.substr(at).starts_with("</")) {
            --depth;
            ++at;
        } else if (xml.substr(at).starts_with("<!")) {
            at = SkipDocumentType(xml, at);
        } else {
            const auto start = at;
            at = EndOfTag(xml, at + 1);
            depth += at > 0 && at <= xml.size() && xml[at - 1] == '/' ? 0 : 1;
            if (depth > limit)
                throw rapidxml::parse_error("elements are nested too deep",
                                            const_cast<char*>(text.data()) + start);
        }
    }
}
