#include "engine/Config.h"

#include <algorithm>
#include <rapidxml.hpp>

#include "engine/XmlDepth.h"
#include "utils/Utils.h"

namespace {

constexpr int s_DeepestElement = 64; // keys are at the top, so no configuration needs more

} // namespace

struct Config::Document {
    std::string text; // parsed in place, so the document points into it
    rapidxml::xml_document<> xml;
};

Config::Config(void*) : m_Document(std::make_unique<Document>()) {
    std::string& text = m_Document->text;
    text = Utils::ReadWholeTextFile(L"config.xml");
    const std::string original = text; // the parser changes the text
    try {
        CheckXmlDepth(text, s_DeepestElement);
        m_Document->xml.parse<rapidxml::parse_default>(text.data());
    } catch (const rapidxml::parse_error& error) {
        const auto end = original.begin() + (error.where<char>() - text.data());
        throw ConfigError(error.what(), 1 + static_cast<int>(std::count(original.begin(), end, '\n')));
    }
}

Config::~Config() = default;

std::string Config::GetString(const std::wstring& key) const {
    const std::string name = Utils::ToNarrow(key);
    const rapidxml::xml_node<>* const node = m_Document->xml.first_node(name.c_str(), name.size(), true);
    return node ? std::string(node->value(), node->value_size()) : std::string();
}
