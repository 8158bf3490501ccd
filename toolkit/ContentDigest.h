#pragma once

#include <cstdint>
#include <filesystem>
#include <string_view>

namespace fxhost {

// A 64-bit digest (FNV-1a) of texts, numbers and files, to notice that one of them has changed. It is no
// protection against deliberate collisions.
class ContentDigest {
public:
    // Every call adds the length as well, so that "ab", "c" and "a", "bc" differ.
    void add(std::string_view bytes);
    void add(std::uint64_t number);
    void add(double number);
    // Adds the contents of a file, or of all files of a folder with their relative names. Hidden files are
    // left out, because they do not belong to an effect. A file that cannot be read counts as empty.
    void addContents(const std::filesystem::path& path);
    // Adds the absolute path, size and modification time of a file, which is faster than its contents.
    void addFileState(const std::filesystem::path& path);

    std::uint64_t value() const { return m_Value; }

private:
    void addBytes(const void* bytes, std::size_t count);

    std::uint64_t m_Value = 0xcbf29ce484222325; // FNV offset basis
};

} // namespace fxhost
