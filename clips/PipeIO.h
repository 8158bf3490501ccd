#pragma once

#include <cstddef>

namespace fxhost {

// Thrown out of a blocking read when the user requests a stop.
struct StoppedByUser {};

// Reads until the buffer is full or the stream ends. Returns the number of bytes. Throws EffectFailure on a
// read error, and StoppedByUser when a stop is requested while no bytes arrive.
std::size_t ReadFully(int descriptor, void* buffer, std::size_t bytes);

// Writes the whole buffer. Returns 0 or the error number, which is EPIPE when the reader has closed the pipe.
// SIGPIPE must be ignored.
int WriteFully(int descriptor, const void* buffer, std::size_t bytes);

} // namespace fxhost
