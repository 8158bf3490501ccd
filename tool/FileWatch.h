#pragma once

#include <functional>
#include <string>
#include <vector>

namespace fxhost {

// Runs `work`, and runs it again whenever a file in one of the folders, or one of the files, has changed.
// Returns the exit status of the last run when a signal stopped it; otherwise it goes on until the process is
// interrupted.
int RunOnChange(const std::vector<std::string>& paths, const std::function<int()>& work);

} // namespace fxhost
