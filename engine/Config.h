#pragma once

#include <memory>
#include <string>

// The effect's "config.xml": one top-level element a key, its text the value. Read once at construction;
// malformed XML throws the parser's error out of the constructor.
class Config {
public:
    explicit Config(void* module); // the module is not used
    ~Config();

    // The value of a key, white space kept; empty when there is no such element. Names compare byte for byte.
    std::string GetString(const std::wstring& key) const;

private:
    struct Document;
    std::unique_ptr<Document> m_Document;
};
