#include "clips/OutputLock.h"

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include "toolkit/Errors.h"

namespace fxhost {

namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;
using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds s_MaxWait{2};
constexpr std::chrono::milliseconds s_RetryPeriod{50};

[[noreturn]] void ThrowCannotLock(const fs::path& path) {
    throw EffectFailure("cannot create the lock file " + path.string() + ": " + std::strerror(errno));
}

int OpenLockFile(const fs::path& path) {
    const int descriptor = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
    if (descriptor < 0)
        ThrowCannotLock(path);
    return descriptor;
}

// Holds an flock() on a file while it exists.
class FileMutex {
public:
    explicit FileMutex(const fs::path& path) {
        for (;;) {
            m_Descriptor = OpenLockFile(path);
            flock(m_Descriptor, LOCK_EX);
            struct stat opened {
            }, current{};
            fstat(m_Descriptor, &opened);
            if (stat(path.c_str(), &current) == 0 && opened.st_ino == current.st_ino)
                return;
            close(m_Descriptor); // The file was removed by its last user while this one waited.
        }
    }
    ~FileMutex() { close(m_Descriptor); }
    FileMutex(const FileMutex&) = delete;
    FileMutex& operator=(const FileMutex&) = delete;

private:
    int m_Descriptor = -1;
};

// True when the process that created the entry has ended.
bool IsStale(const fs::path& entry) {
    const int descriptor = open(entry.c_str(), O_RDWR | O_CLOEXEC);
    if (descriptor < 0)
        return false;
    // A file system without locks cannot protect the output; then every entry counts as stale.
    const bool stale = flock(descriptor, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
    close(descriptor);
    return stale;
}

// Pairs of first and last number, for a short file.
std::vector<std::pair<long, long>> ToRanges(const std::set<long>& frames) {
    std::vector<std::pair<long, long>> ranges;
    for (const long frame : frames) {
        if (ranges.empty() || ranges.back().second + 1 != frame)
            ranges.emplace_back(frame, frame);
        else
            ranges.back().second = frame;
    }
    return ranges;
}

bool Overlaps(const std::vector<std::pair<long, long>>& ranges, const std::set<long>& frames) {
    if (ranges.empty() || frames.empty())
        return true;
    for (const auto& [first, last] : ranges)
        if (const auto next = frames.lower_bound(first); next != frames.end() && *next <= last)
            return true;
    return false;
}

std::string HostName() {
    char name[256] = "";
    gethostname(name, sizeof name - 1);
    return name;
}

std::string TimeText() {
    const std::time_t now = std::time(nullptr);
    std::tm fields{};
    localtime_r(&now, &fields);
    char text[40];
    std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &fields);
    return text;
}

std::vector<fs::path> FilesStartingWith(const fs::path& prefix) {
    std::vector<fs::path> files;
    std::error_code error;
    const fs::path folder = prefix.has_parent_path() ? prefix.parent_path() : fs::path(".");
    for (const auto& entry : fs::directory_iterator(folder, error))
        if (entry.path().filename().native().starts_with(prefix.filename().native()))
            files.push_back(entry.path());
    return files;
}

} // namespace

OutputLock::OutputLock(const fs::path& output, const std::set<long>& frames)
    : m_Output(output), m_Base(output.parent_path() / ("." + output.filename().string() + ".lock")) {
    const auto deadline = Clock::now() + s_MaxWait;
    for (;; std::this_thread::sleep_for(s_RetryPeriod)) {
        const FileMutex mutex(m_Base);
        const std::string holder = findHolder(frames);
        if (holder.empty()) {
            createEntry(frames);
            return;
        }
        if (Clock::now() > deadline)
            throw EffectFailure("--output " + m_Output.string() + ": " + holder +
                                " is writing it; wait for that run to end, or choose another output");
    }
}

OutputLock::~OutputLock() {
    try {
        const FileMutex mutex(m_Base);
        std::error_code ignored;
        fs::remove(m_Entry, ignored);
        if (!hasEntries())
            fs::remove(m_Base, ignored);
    } catch (const std::exception&) { // Without its folder there is nothing left to remove.
    }
    close(m_Descriptor);
}

bool OutputLock::hasEntries() const {
    return !FilesStartingWith(m_Base.string() + ".").empty();
}

// Describes a running process whose frames overlap; empty when there is none. Removes stale entries.
std::string OutputLock::findHolder(const std::set<long>& frames) const {
    for (const fs::path& entry : FilesStartingWith(m_Base.string() + ".")) {
        std::error_code ignored;
        if (IsStale(entry)) {
            fs::remove(entry, ignored);
            continue;
        }
        std::ifstream file(entry);
        const Json json = Json::parse(file, nullptr, false);
        if (!json.is_object())
            return "another run";
        const auto ranges = json.value("frames", std::vector<std::pair<long, long>>());
        if (Overlaps(ranges, frames))
            return "process " + std::to_string(json.value("process", 0)) + " on " +
                   json.value("host", "an unknown host") + " (started " + json.value("started", "") + ")";
    }
    return {};
}

void OutputLock::createEntry(const std::set<long>& frames) {
    static std::atomic<unsigned> count{0};
    m_Entry =
        m_Base.string() + "." + HostName() + "-" + std::to_string(getpid()) + "-" + std::to_string(++count);
    m_Descriptor = OpenLockFile(m_Entry);
    flock(m_Descriptor, LOCK_EX);
    const std::string text = Json{
        {"process", getpid()},
        {"host", HostName()},
        {"started", TimeText()},
        {"frames",
         ToRanges(frames)}}.dump();
    if (write(m_Descriptor, text.data(), text.size()) != static_cast<ssize_t>(text.size()))
        ThrowCannotLock(m_Entry);
}

} // namespace fxhost
