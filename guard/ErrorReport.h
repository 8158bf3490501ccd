#pragma once

#include <functional>

namespace fxhost {

// Runs `work` and returns its exit status. An exception becomes a message on standard error and the exit
// status that belongs to its type.
int RunAndReport(const std::function<int()>& work);

} // namespace fxhost
