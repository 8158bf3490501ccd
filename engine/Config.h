#pragma once

#include <memory>
#include <string>

// The effect's "config.xml". Each top-level element is a key, and its text is the value.
// Threads: only the constructor changes the object.
class Config {
public:
    // Reads the file. The module has no effect. Throws rapidxml::parse_error when the XML is malformed.
    explicit Config(void* module);
    ~Config();

    // Returns the value of a key with its white space, or an empty text when there is no such element. Keys
    // are compared byte for byte.
    std::string GetString(const std::wstring& key) const;

private:
    struct Document;
    std::unique_ptr<Document> m_Document;
};
