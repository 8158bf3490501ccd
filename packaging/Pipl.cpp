#include "packaging/Pipl.h"

#include <algorithm>
#include <cstdio>

#include "packaging/InfoPlist.h"

namespace fxhost {

namespace {

constexpr std::uint16_t s_ResourceNumber = 16000;
constexpr std::uint32_t s_DataStart = 256; // size of the header and of the reserved space after it
constexpr std::uint16_t s_MapHead = 28;    // bytes of the map before its type list
constexpr std::size_t s_LongestName = 31;
constexpr std::size_t s_LongestMatchName = 47;
constexpr std::uint16_t s_ApiVersion[2] = {13, 28};

class BigEndian {
public:
    void Put8(unsigned value) { bytes.push_back(static_cast<unsigned char>(value)); }
    void Put16(unsigned value) { Put8(value >> 8), Put8(value); }
    void Put32(std::uint32_t value) { Put16(value >> 16), Put16(value & 0xFFFF); }
    void PutCode(const char* code) { bytes.insert(bytes.end(), code, code + 4); }
    void PutZeros(std::size_t count) { bytes.insert(bytes.end(), count, 0); }
    void Put(const Bytes& more) { bytes.insert(bytes.end(), more.begin(), more.end()); }

    Bytes bytes;
};

// The first bytes of a UTF-8 text, without splitting a character.
std::string Cut(const std::string& text, std::size_t limit) {
    std::size_t length = std::min(text.size(), limit);
    while (length > 0 && length < text.size() && (static_cast<unsigned char>(text[length]) & 0xC0) == 0x80)
        --length;
    return text.substr(0, length);
}

// FNV-1a, 32 bits.
std::uint32_t Checksum(const std::string& text) {
    std::uint32_t sum = 0x811C9DC5;
    for (const char c : text)
        sum = (sum ^ static_cast<unsigned char>(c)) * 0x01000193;
    return sum;
}

Bytes Pascal(const std::string& text) {
    const std::size_t length = std::min<std::size_t>(text.size(), 255);
    Bytes bytes((1 + length + 3) / 4 * 4);
    bytes[0] = static_cast<unsigned char>(length);
    std::copy_n(text.begin(), length, bytes.begin() + 1);
    return bytes;
}

Bytes Word(std::uint32_t value) {
    BigEndian out;
    out.Put32(value);
    return out.bytes;
}

Bytes Code(const char* code) {
    return {code, code + 4};
}

struct Property {
    const char* key;
    Bytes data;
};

} // namespace

std::string MatchNameOf(const std::string& effectId) {
    const std::string identifier = IdentifierOf(effectId);
    const bool isExact = identifier.ends_with(effectId);
    if (isExact && identifier.size() <= s_LongestMatchName)
        return identifier;
    char checksum[16] = {};
    const auto length =
        static_cast<std::size_t>(std::snprintf(checksum, sizeof checksum, "-%08x", Checksum(effectId)));
    return Cut(identifier, s_LongestMatchName - length) + checksum;
}

Bytes PiplProperties(const PiplInfo& info) {
    const Property properties[] = {
        {"kind", Code("eFKT")},
        {"name", Pascal(Cut(info.name, s_LongestName))},
        {"catg", Pascal(Cut(info.category, s_LongestName))},
        {"mi64", Pascal(info.entry)},
        {"ma64", Pascal(info.entry)},
        {"ePVR", Word(2u << 16)},
        {"eSVR", Word(std::uint32_t{s_ApiVersion[0]} << 16 | s_ApiVersion[1])},
        {"eVER", Word(info.version)},
        {"eINF", Word(0)},
        {"eGLO", Word(info.outFlags)},
        {"eGL2", Word(info.outFlags2)},
        {"eMNA", Pascal(info.matchName)},
        {"aeFL", Word(8)},
    };
    BigEndian out;
    out.Put32(0);
    out.Put32(static_cast<std::uint32_t>(std::size(properties)));
    for (const Property& property : properties) {
        out.PutCode("8BIM");
        out.PutCode(property.key);
        out.Put32(0);
        out.Put32(static_cast<std::uint32_t>(property.data.size()));
        out.Put(property.data);
    }
    return out.bytes;
}

Bytes PiplResourceFile(const PiplInfo& info) {
    const Bytes properties = PiplProperties(info);
    const auto dataLength = static_cast<std::uint32_t>(properties.size()) + 4;
    const std::uint32_t mapLength = s_MapHead + 2 + 8 + 12;

    BigEndian out;
    const auto putHeader = [&] {
        out.Put32(s_DataStart);
        out.Put32(s_DataStart + dataLength);
        out.Put32(dataLength);
        out.Put32(mapLength);
    };
    putHeader();
    out.PutZeros(s_DataStart - out.bytes.size());
    out.Put32(static_cast<std::uint32_t>(properties.size()));
    out.Put(properties);

    putHeader();     // the map begins with a copy of the header
    out.PutZeros(8); // next map, file reference, attributes
    out.Put16(s_MapHead);
    out.Put16(mapLength); // no names
    out.Put16(0);         // one type, less one
    out.PutCode("PiPL");
    out.Put16(0);  // one resource of it, less one
    out.Put16(10); // its reference, from the start of the type list
    out.Put16(s_ResourceNumber);
    out.Put16(0xFFFF); // no name
    out.Put32(0);      // attributes, and the offset of the data
    out.Put32(0);
    return out.bytes;
}

} // namespace fxhost
