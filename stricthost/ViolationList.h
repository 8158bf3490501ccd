#pragma once

#include <mutex>
#include <string>
#include <vector>

namespace stricthost {

// The violations of a plug-in as texts, in the order of their first occurrence. Any thread may add.
class ViolationList {
public:
    // Ignores a text that is already in the list.
    void Add(const std::string& text);
    // Read it while no command runs.
    const std::vector<std::string>& Texts() const { return m_Texts; }

private:
    std::mutex m_Mutex;
    std::vector<std::string> m_Texts;
};

} // namespace stricthost
