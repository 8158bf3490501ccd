#pragma once

#include <cstddef>
#include <vector>

#include "context/Context.h"

namespace fxhost {

// What the script has made and not released, by handle, told by asking the registry for one handle after the
// other. Handles are given out from the lowest free one, so what lies beyond the limit is a script gone wild.
template <class T>
std::vector<T*> LiveResources() {
    constexpr unsigned limit = 1u << 16;
    std::vector<T*> live;
    for (unsigned number = 1; number <= limit; ++number)
        if (T& resource = Context::Current().GetOwnResource<T>(T::Tag + number); &resource != &T::invalid)
            live.push_back(&resource);
    return live;
}

} // namespace fxhost
