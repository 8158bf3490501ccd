#include "toolkit/ContentDigest.h"

#include <algorithm>
#include <bit>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace fxhost {

namespace {

namespace fs = std::filesystem;

constexpr std::uint64_t s_FnvPrime = 0x100000001b3;

std::string FileBytes(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

bool IsHidden(const fs::path& path) {
    return path.filename().native().starts_with('.');
}

std::vector<fs::path> VisibleFiles(const fs::path& folder) {
    std::vector<fs::path> files;
    std::error_code error;
    const auto options = fs::directory_options::follow_directory_symlink;
    for (fs::recursive_directory_iterator entry(folder, options, error), end; entry != end;
         entry.increment(error)) {
        if (IsHidden(entry->path()))
            entry.disable_recursion_pending();
        else if (entry->is_regular_file(error))
            files.push_back(entry->path());
    }
    std::sort(files.begin(), files.end());
    return files;
}

} // namespace

void ContentDigest::addBytes(const void* bytes, std::size_t count) {
    const auto* const first = static_cast<const unsigned char*>(bytes);
    for (std::size_t i = 0; i < count; ++i)
        m_Value = (m_Value ^ first[i]) * s_FnvPrime;
}

void ContentDigest::add(std::string_view bytes) {
    add(std::uint64_t{bytes.size()});
    addBytes(bytes.data(), bytes.size());
}

void ContentDigest::add(std::uint64_t number) {
    addBytes(&number, sizeof number);
}

void ContentDigest::add(double number) {
    add(std::bit_cast<std::uint64_t>(number));
}

void ContentDigest::addContents(const fs::path& path) {
    std::error_code error;
    if (!fs::is_directory(path, error))
        return add(FileBytes(path));
    for (const fs::path& file : VisibleFiles(path)) {
        add(file.lexically_relative(path).native());
        add(FileBytes(file));
    }
}

void ContentDigest::addFileState(const fs::path& path) {
    std::error_code error;
    add(fs::weakly_canonical(path, error).native());
    add(std::uint64_t{fs::file_size(path, error)});
    add(static_cast<std::uint64_t>(fs::last_write_time(path, error).time_since_epoch().count()));
}

} // namespace fxhost
