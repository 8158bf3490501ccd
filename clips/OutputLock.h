#pragma once

#include <filesystem>
#include <set>
#include <string>

namespace fxhost {

// Keeps two runs from writing the same frames. Each run has a hidden file ".NAME.lock.HOST-PROCESS-N" beside
// the output, which names the run and the frames that it writes, and holds an flock() on it. The system
// releases that lock with the process, so the files of killed runs are recognised as stale and removed. Runs
// with different frames, such as shards, may share an output. Network file systems must support flock().
class OutputLock {
public:
    // `output` is a path with the name of the output, for example "out/f_####.png". `frames` are the numbers
    // that this run writes; an empty set means the whole output. Waits up to two seconds for a run that
    // was just killed. Throws EffectFailure that names the other run, or the file that cannot be created.
    OutputLock(const std::filesystem::path& output, const std::set<long>& frames);
    ~OutputLock();
    OutputLock(const OutputLock&) = delete;
    OutputLock& operator=(const OutputLock&) = delete;

private:
    std::string findHolder(const std::set<long>& frames) const;
    void createEntry(const std::set<long>& frames);
    bool hasEntries() const;

    const std::filesystem::path m_Output;
    std::filesystem::path m_Base;  // ".NAME.lock", locked while the entries are examined
    std::filesystem::path m_Entry; // of this run
    int m_Descriptor = -1;         // of m_Entry
};

} // namespace fxhost
