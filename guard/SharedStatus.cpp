#include "guard/SharedStatus.h"

namespace fxhost {

namespace {

SharedStatus s_Unshared;
std::atomic<SharedStatus*> s_Current{&s_Unshared};

} // namespace

SharedStatus& CurrentStatus() {
    return *s_Current;
}

void SetCurrentStatus(SharedStatus* status) {
    s_Current = status ? status : &s_Unshared;
}

} // namespace fxhost
