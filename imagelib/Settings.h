#pragma once

#include <vector>

// How the library computes. No setting changes a result. Settings may be changed from any thread; a call of
// Quantize that is running may still use the previous ones.
namespace ImageLib {

// The implementations of the inner loops: one for any processor, the others for an instruction set.
enum class SimdPath { Scalar, Sse2, Avx2, Avx512, Neon };

// The paths that this program contains and this processor supports, slowest first. The first one is always
// Scalar.
std::vector<SimdPath> SupportedSimdPaths();

// The path's name in lower case, such as "avx2"; "unsupported" when this program does not contain it.
const char* SimdPathName(SimdPath path);

// Selects a path; until then the last of SupportedSimdPaths is used. Returns false and changes nothing when
// the path is not supported.
bool SetSimdPath(SimdPath path);
SimdPath CurrentSimdPath();

// Sets how many threads a pass without error diffusion may use. 0, the initial value, selects the number of
// processors but at most 4, as more threads wait for memory. Small pictures are processed by the calling
// thread alone.
void SetThreadCount(unsigned count);
// Returns the number that is in effect: at least 1.
unsigned ThreadCount();

} // namespace ImageLib
