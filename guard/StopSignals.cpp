#include "guard/StopSignals.h"

namespace fxhost {

namespace {

volatile std::sig_atomic_t s_Received = 0, s_First = 0;

void OnSignal(int number) {
    if (s_Received == 0)
        s_First = number;
    s_Received = s_Received + 1;
}

} // namespace

StopSignals::StopSignals() {
    s_Received = 0;
    s_First = 0;
    struct sigaction action {};
    action.sa_handler = OnSignal;
    for (int i = 0; i < 3; ++i)
        sigaction(s_Counted[i], &action, &m_Previous[i]);
}

void StopSignals::restore() {
    for (int i = 0; i < 3; ++i)
        sigaction(s_Counted[i], &m_Previous[i], nullptr);
}

int StopSignals::count() const {
    return s_Received;
}

int StopSignals::first() const {
    return s_First;
}

} // namespace fxhost
