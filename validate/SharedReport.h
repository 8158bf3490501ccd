#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace validate {

// The findings and the latest commands of one test, in memory that the process of the test shares with its
// parent. The parent reads it when the child has ended, even by a crash. Any thread of the child may write.
// Create it before the fork.
class SharedReport {
public:
    SharedReport();
    ~SharedReport();
    SharedReport(const SharedReport&) = delete;
    SharedReport& operator=(const SharedReport&) = delete;

    // Ignores a finding that is already in the report, and findings beyond the capacity of 64.
    void AddFinding(const std::string& text);
    // Logs that a command starts; the result identifies it when it ends. The log keeps the last 40 commands.
    std::size_t BeginCommand(const std::string& text);
    void EndCommand(std::size_t number, long error);

    std::vector<std::string> Findings() const;
    std::size_t CommandCount() const;
    // The last commands, oldest first, each with its error or with the note that it did not return.
    std::vector<std::string> Log() const;

private:
    struct Memory;
    Memory* m_Memory;
};

} // namespace validate
