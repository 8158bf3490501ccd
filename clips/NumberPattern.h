#pragma once

#include <optional>
#include <set>
#include <string>
#include <vector>

namespace fxhost {

// The name of numbered files: "in_%04d.exr", "in_%d.exr" or "in_####.exr" (as many digits as "#", more when
// the number is longer). The number stands in the last part of the path. "%%" means "%" in the first two
// forms.
class NumberPattern {
public:
    // Nothing when the name has no place for a number. Throws WrongUse, opened by `option`, for two of them.
    static std::optional<NumberPattern> Parse(const std::string& option, const std::string& path);

    const std::string& text() const { return m_Text; }
    std::string path(long number) const;

    // The numbers of the files that are there, ascending; a number written in another width is none of them.
    std::vector<long> numbersOnDisk() const;
    // Removes what writers of these files left when they were killed; not those of others, which may still be
    // at work.
    void removeLeftovers(const std::set<long>& numbers) const;

private:
    std::string digits(long number) const;
    std::optional<long> numberIn(const std::string& name) const;

    std::string m_Text, m_Folder, m_Before, m_After;
    unsigned m_Width = 1; // digits at least
};

} // namespace fxhost
