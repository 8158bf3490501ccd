#pragma once

#include <memory>
#include <stdexcept>
#include <string>

// Thrown when config.xml is malformed. what() describes the fault.
class ConfigError : public std::runtime_error {
public:
    ConfigError(const std::string& text, int line) : std::runtime_error(text), m_Line(line) {}
    int line() const { return m_Line; } // from 1

private:
    int m_Line;
};

// The effect's "config.xml". Each top-level element is a key, and its text is the value.
// Threads: only the constructor changes the object.
class Config {
public:
    // Reads the file. The module has no effect. Throws ConfigError when the XML is malformed.
    explicit Config(void* module);
    ~Config();

    // Returns the value of a key with its white space, or an empty text when there is no such element. Keys
    // are compared byte for byte.
    std::string GetString(const std::wstring& key) const;

private:
    struct Document;
    std::unique_ptr<Document> m_Document;
};
