#pragma once

#include <functional>

namespace fxhost {

// The exit status of `work`; what it throws becomes a message on standard error and its status.
int StatusOf(const std::function<int()>& work);

} // namespace fxhost
