#include "validate/Pipl.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string_view>

namespace validate {

namespace {

namespace fs = std::filesystem;

// A property is "8BIM", its key, an id, a length and its data, all numbers big-endian.
std::optional<std::uint32_t> Property(std::string_view bytes, const char* key) {
    const std::size_t at = bytes.find("8BIM" + std::string(key));
    if (at == std::string_view::npos || at + 20 > bytes.size())
        return std::nullopt;
    std::uint32_t value = 0;
    for (const char byte : bytes.substr(at + 16, 4))
        value = value << 8 | static_cast<unsigned char>(byte);
    return value;
}

std::string ResourceBytes(const fs::path& bundle) {
    const fs::path folder = bundle / "Contents" / "Resources";
    std::error_code problem;
    for (const auto& entry : fs::directory_iterator(folder, problem))
        if (entry.path().extension() == ".rsrc") {
            std::ifstream file(entry.path(), std::ios::binary);
            return {std::istreambuf_iterator<char>(file), {}};
        }
    return {};
}

} // namespace

std::optional<Pipl> ReadPipl(const std::string& bundle) {
    const std::string bytes = ResourceBytes(bundle);
    const auto flags = Property(bytes, "eGLO"), flags2 = Property(bytes, "eGL2"),
               version = Property(bytes, "eVER");
    if (!flags || !flags2 || !version)
        return std::nullopt;
    return Pipl{*flags, *flags2, *version};
}

} // namespace validate
