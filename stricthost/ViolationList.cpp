#include "stricthost/ViolationList.h"

#include <algorithm>

namespace stricthost {

void ViolationList::Add(const std::string& text) {
    const std::lock_guard lock(m_Mutex);
    if (std::find(m_Texts.begin(), m_Texts.end(), text) == m_Texts.end())
        m_Texts.push_back(text);
}

} // namespace stricthost
