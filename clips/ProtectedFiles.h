#pragma once

#include <map>
#include <string>
#include <sys/types.h>
#include <utility>

namespace fxhost {

// The files that a run reads and must not overwrite. Files are compared, not paths, so other spellings, links
// and file systems that ignore case are recognised.
class ProtectedFiles {
public:
    // Ignores files that do not exist.
    void add(const std::string& path);
    // Throws WrongUse when an output with this path would overwrite one of the files.
    void requireOther(const std::string& output) const;

private:
    std::map<std::pair<dev_t, ino_t>, std::string> m_Files; // paths by device and inode
};

} // namespace fxhost
