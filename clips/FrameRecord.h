#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <mutex>

namespace fxhost {

// Remembers how the frames of an output were made, in the hidden file ".NAME.record" beside it. The file has
// one line for each written frame: its number, the digest of everything that it depends on, and the size of
// its file in bytes. A later line replaces an earlier one of the same number. Several machines may append at
// the same time.
class FrameRecord {
public:
    // `output` is a path with the name of the output, for example "out/f_####.png".
    explicit FrameRecord(const std::filesystem::path& output);

    // Reads the file; a missing file gives an empty record.
    void load();
    // True when the record knows this frame with this digest, and `file` exists with the recorded size.
    bool matches(long number, std::uint64_t digest, const std::filesystem::path& file) const;
    // Adds the finished `file`. Any thread. A record that cannot be written is not an error: the frame is
    // rendered again by the next run.
    void append(long number, std::uint64_t digest, const std::filesystem::path& file);

private:
    struct Entry {
        std::uint64_t digest = 0, bytes = 0;
        bool operator==(const Entry&) const = default;
    };

    const std::filesystem::path m_Path;
    std::map<long, Entry> m_Entries;
    std::mutex m_Mutex;
};

} // namespace fxhost
