#include "utils/Utils.h"

#include <cstdint>
#include <cstdio>
#include <memory>

namespace Utils {

namespace {

constexpr char s_MissingFile[] = "popa";

// Where wchar_t has 16 bits, a code point from U+10000 on is a pair of surrogates. Each holds 10 of its bits
// below these 6.
constexpr std::uint32_t s_HighSurrogates = 0xD800 >> 10, s_LowSurrogates = 0xDC00 >> 10,
                        s_AfterBasicPlane = 0x10000;

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, FileCloser>;

File Open(const std::wstring& name, const char* mode) {
    return File(std::fopen(ToNarrow(ProcessPath(name)).c_str(), mode));
}

template <class Bytes>
Bytes ReadAll(std::FILE* file) {
    Bytes bytes;
    char block[65536];
    while (const std::size_t got = std::fread(block, 1, sizeof block, file))
        bytes.insert(bytes.end(), block, block + got);
    return bytes;
}

} // namespace

std::wstring (*ProcessPath)(const std::wstring&) = PassThrough;
std::string (*ReadWholeTextFileCallback)(const std::wstring&) = nullptr;
std::vector<unsigned char> (*ReadWholeFileCallback)(const std::wstring&) = nullptr;

std::wstring PassThrough(const std::wstring& path) {
    return path;
}

std::string ReadWholeTextFile(const std::wstring& name) {
    if (ReadWholeTextFileCallback)
        return ReadWholeTextFileCallback(name);
    const File file = Open(name, "r");
    if (!file)
        return s_MissingFile;
    auto text = ReadAll<std::string>(file.get());
    if (const auto end = text.find('\0'); end != std::string::npos)
        text.resize(end);
    return text;
}

std::vector<unsigned char> ReadWholeFile(const std::wstring& name) {
    if (ReadWholeFileCallback)
        return ReadWholeFileCallback(name);
    const File file = Open(name, "rb");
    return file ? ReadAll<std::vector<unsigned char>>(file.get()) : std::vector<unsigned char>();
}

std::wstring CreatePath(const std::wstring& directory, const std::wstring& name) {
    return directory + L"/" + name;
}

std::string ToNarrow(const std::wstring& text) {
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        // NOLINTNEXTLINE(bugprone-signed-char-misuse): wchar_t is not a char
        auto code = static_cast<std::uint32_t>(text[i]);
        if (code >> 10 == s_HighSurrogates && i + 1 < text.size() &&
            static_cast<std::uint32_t>(text[i + 1]) >> 10 == s_LowSurrogates)
            code =
                s_AfterBasicPlane + ((code & 0x3FF) << 10 | (static_cast<std::uint32_t>(text[++i]) & 0x3FF));
        const auto put = [&](std::uint32_t byte) { bytes += static_cast<char>(byte); };
        if (code < 0x80) {
            put(code);
        } else if (code < 0x800) {
            put(0xC0 | code >> 6);
            put(0x80 | (code & 0x3F));
        } else if (code >= 0xDC80 && code <= 0xDCFF) { // an escaped byte of a path, see Utils.h
            put(code & 0xFF);
        } else if (code < 0x10000) {
            put(0xE0 | code >> 12);
            put(0x80 | (code >> 6 & 0x3F));
            put(0x80 | (code & 0x3F));
        } else {
            put(0xF0 | (code >> 18 & 7));
            put(0x80 | (code >> 12 & 0x3F));
            put(0x80 | (code >> 6 & 0x3F));
            put(0x80 | (code & 0x3F));
        }
    }
    return bytes;
}

std::wstring ToWide(const std::string& text) {
    constexpr wchar_t replacement = L'\xFFFD';
    std::wstring wide;
    for (std::size_t i = 0; i < text.size();) {
        const auto lead = static_cast<unsigned char>(text[i]);
        const unsigned length = lead < 0x80       ? 1
                                : lead >> 5 == 6  ? 2
                                : lead >> 4 == 14 ? 3
                                : lead >> 3 == 30 ? 4
                                                  : 0;
        std::uint32_t code = length == 1 ? lead : lead & (0xFFu >> (length + 1));
        bool whole = length != 0 && i + length <= text.size();
        for (unsigned k = 1; whole && k < length; ++k) {
            const auto next = static_cast<unsigned char>(text[i + k]);
            whole = next >> 6 == 2;
            code = code << 6 | (next & 0x3F);
        }
        if (whole && code >= s_AfterBasicPlane && sizeof(wchar_t) == 2) {
            code -= s_AfterBasicPlane;
            wide += static_cast<wchar_t>(s_HighSurrogates << 10 | (code >> 10 & 0x3FF));
            code = s_LowSurrogates << 10 | (code & 0x3FF);
        }
        wide += whole ? static_cast<wchar_t>(code) : replacement;
        i += whole ? length : 1;
    }
    return wide;
}

void Log(const char*, ...) {}

} // namespace Utils
