#pragma once

#include <optional>
#include <set>
#include <string>
#include <vector>

namespace fxhost {

// The name of numbered files: "in_%04d.exr", "in_%d.exr", "in_####.exr", "in_@@@@.exr", "in_$F4.exr",
// "in_$F.exr" or, for input, "in_*.exr". Each "#" and "@" is one digit; longer numbers take more digits. For
// "*" the files show the number of digits. Only the last component of the path may contain the number. A
// backslash before one of # % @ $ * ? \ makes it a plain character, and "%%" means "%" in names with
// "%d".
class NumberPattern {
public:
    // Nothing when the name has no placeholder. Two placeholders throw WrongUse, whose text starts with
    // `option`.
    static std::optional<NumberPattern> Parse(const std::string& option, const std::string& path);

    const std::string& text() const { return m_Text; }
    std::string path(long number) const;
    // The path with "#" for each digit, which is the same for every spelling of the pattern.
    std::string normalizedPath() const;

    // The numbers of the existing files, ascending. Numbers with another count of digits do not match.
    std::vector<long> numbersOnDisk() const;
    // Removes the temporary files that killed writers left for these numbers. Other numbers may still be in
    // work on another machine.
    void removeLeftovers(const std::set<long>& numbers) const;

private:
    void findWidth(const std::string& option);
    std::string digits(long number) const;
    std::optional<long> numberIn(const std::string& name) const;

    std::string m_Text, m_Folder, m_Before, m_After;
    unsigned m_Width = 1; // smallest number of digits
};

// A path without a placeholder, in which backslashes before # % @ $ * ? \ are removed. A file with this name
// is taken as it is.
std::string PlainPath(const std::string& path);

} // namespace fxhost
