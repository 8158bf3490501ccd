#include "tool/FileWatch.h"

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <map>
#include <thread>

#include "toolkit/Errors.h"

namespace fxhost {

namespace {

namespace fs = std::filesystem;

constexpr std::chrono::milliseconds s_Interval{200};

struct FileState {
    fs::file_time_type time;
    std::uintmax_t size;
    bool operator==(const FileState&) const = default;
};
using Snapshot = std::map<std::string, FileState>;

void Add(const fs::path& path, Snapshot& snapshot) {
    std::error_code ignored;
    if (fs::is_regular_file(path, ignored))
        snapshot[path.string()] = {fs::last_write_time(path, ignored), fs::file_size(path, ignored)};
}

Snapshot Take(const std::vector<std::string>& paths) {
    Snapshot snapshot;
    for (const std::string& path : paths) {
        Add(path, snapshot);
        std::error_code ignored;
        for (const auto& entry : fs::recursive_directory_iterator(path, ignored))
            Add(entry.path(), snapshot);
    }
    return snapshot;
}

} // namespace

int RunOnChange(const std::vector<std::string>& paths, const std::function<int()>& work) {
    for (;;) {
        const Snapshot before = Take(paths);
        if (const int status = work(); IsStopStatus(status))
            return status;
        std::fprintf(stderr, "fxhost: waiting for changes; interrupt with Ctrl+C\n");
        while (Take(paths) == before)
            std::this_thread::sleep_for(s_Interval);
    }
}

} // namespace fxhost
