#pragma once

#include <vector>

// How the library computes; no setting changes a result. Settings may be made from any thread; a call of
// Quantize under way may still use the former ones.
namespace ImageLib {

enum class VectorPath { Plain, Sse2, Avx2, Avx512, Neon };

// The paths that this program holds and this processor can run, slowest first. Plain is always there.
std::vector<VectorPath> SupportedPaths();
const char* PathName(VectorPath path);

// The last of SupportedPaths unless set otherwise. False when the path is not supported: nothing changes
// then.
bool SetVectorPath(VectorPath path);
VectorPath CurrentVectorPath();

// Threads for the mappings that carry no error from pixel to pixel. 0, as at the start, picks the number of
// processors, at most 4, as memory is the limit beyond. Small pictures stay on the calling thread.
void SetThreadCount(unsigned count);
unsigned ThreadCount();

} // namespace ImageLib
