#include "packaging/InfoPlist.h"

#include <cctype>

namespace fxhost {

namespace {

constexpr char s_IdentifierPrefix[] = "org.shaderfx.";

std::string Escaped(const std::string& text) {
    std::string escaped;
    for (const char c : text)
        escaped += c == '&' ? "&amp;" : c == '<' ? "&lt;" : c == '>' ? "&gt;" : std::string(1, c);
    return escaped;
}

} // namespace

std::string IdentifierOf(const std::string& name) {
    std::string identifier = s_IdentifierPrefix;
    for (const char c : name)
        identifier += std::isalnum(static_cast<unsigned char>(c)) ? c : '-';
    return identifier;
}

std::string InfoPlist(const BundleInfo& info) {
    const std::pair<const char*, std::string> keys[] = {
        {"CFBundleDevelopmentRegion", "English"},
        {"CFBundleExecutable", info.executable},
        {"CFBundleIdentifier", info.identifier},
        {"CFBundleInfoDictionaryVersion", "6.0"},
        {"CFBundleName", info.name},
        {"CFBundlePackageType", "eFKT"},
        {"CFBundleSignature", "FXTC"},
        {"CFBundleVersion", info.version},
    };
    std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                       "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
                       "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
                       "<plist version=\"1.0\">\n<dict>\n";
    for (const auto& [key, value] : keys)
        text += std::string("\t<key>") + key + "</key>\n\t<string>" + Escaped(value) + "</string>\n";
    return text + "</dict>\n</plist>\n";
}

} // namespace fxhost
