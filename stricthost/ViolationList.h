#pragma once

#include <mutex>
#include <string>
#include <vector>

namespace stricthost {

// What a plug-in did against the rules, as texts in the order of their first occurrence. Any thread may add.
class ViolationList {
public:
    // A text that is already there is not added again.
    void Add(const std::string& text);
    // Read it while no command runs.
    const std::vector<std::string>& Texts() const { return m_Texts; }

private:
    std::mutex m_Mutex;
    std::vector<std::string> m_Texts;
};

} // namespace stricthost
