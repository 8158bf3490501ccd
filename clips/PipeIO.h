#pragma once

#include <cstddef>

namespace fxhost {

// Thrown out of a wait when the user asks for a stop.
struct StoppedByUser {};

// Reads until the buffer is full or the other side has no more; the bytes read. Throws EffectFailure on an
// error, StoppedByUser while it waits for bytes.
std::size_t ReadFully(int descriptor, void* buffer, std::size_t bytes);

// Writes everything. 0, or the error number: EPIPE when the other side has gone (SIGPIPE must be ignored).
int WriteFully(int descriptor, const void* buffer, std::size_t bytes);

} // namespace fxhost
