#include "clips/FrameRecord.h"

#include <cinttypes>
#include <cstdio>
#include <fcntl.h>
#include <fstream>
#include <string>
#include <sys/file.h>
#include <unistd.h>

namespace fxhost {

namespace {

namespace fs = std::filesystem;

} // namespace

FrameRecord::FrameRecord(const fs::path& output)
    : m_Path(output.parent_path() / ("." + output.filename().string() + ".record")) {}

void FrameRecord::load() {
    std::ifstream file(m_Path);
    for (std::string line; std::getline(file, line);) {
        long number = 0;
        Entry entry;
        if (std::sscanf(line.c_str(), "%ld %" SCNx64 " %" SCNu64, &number, &entry.digest, &entry.bytes) == 3)
            m_Entries[number] = entry;
    }
}

bool FrameRecord::matches(long number, std::uint64_t digest, const fs::path& file) const {
    const auto found = m_Entries.find(number);
    std::error_code error;
    const std::uintmax_t bytes = fs::file_size(file, error);
    return found != m_Entries.end() && !error && found->second == Entry{digest, bytes};
}

// The lock makes appending atomic on network file systems too.
void FrameRecord::append(long number, std::uint64_t digest, const fs::path& file) {
    std::error_code error;
    char line[80];
    const int length = std::snprintf(line, sizeof line, "%ld %016" PRIx64 " %ju\n", number, digest,
                                     static_cast<std::uintmax_t>(fs::file_size(file, error)));
    const std::lock_guard lock(m_Mutex);
    const int descriptor = open(m_Path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0666);
    if (descriptor < 0)
        return;
    flock(descriptor, LOCK_EX);
    [[maybe_unused]] const ssize_t written = write(descriptor, line, static_cast<std::size_t>(length));
    close(descriptor);
}

} // namespace fxhost
