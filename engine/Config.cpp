#include "engine/Config.h"

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
    m_Document->text = Utils::ReadWholeTextFile(L"config.xml");
    CheckXmlDepth(m_Document->text, s_DeepestElement);
    m_Document->xml.parse<rapidxml::parse_default>(m_Document->text.data());
}

Config::~Config() = default;

std::string Config::GetString(const std::wstring& key) const {
    const std::string name = Utils::ToNarrow(key);
    const rapidxml::xml_node<>* const node = m_Document->xml.first_node(name.c_str(), name.size(), true);
    return node ? std::string(node->value(), node->value_size()) : std::string();
}
