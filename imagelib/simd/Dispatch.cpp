#include "imagelib/Settings.h"
#include "imagelib/simd/Kernels.h"
#if defined(__x86_64__)
#include "imagelib/simd/X86Features.h"
#endif

#include <algorithm>
#include <atomic>
#include <thread>

namespace ImageLib {
namespace {

struct PathRow {
    SimdPath path;
    const char* name;
    const Simd::Kernels* kernels;
    bool (*isSupported)();
};

bool Always() {
    return true;
}

#if defined(__x86_64__)
bool HasAvx2() {
    return Simd::DetectX86Features().avx2;
}
bool HasAvx512() {
    return Simd::DetectX86Features().avx512;
}
#endif

// Slowest first.
const PathRow Paths[] = {
    {SimdPath::Scalar, "scalar", &Simd::ScalarKernels, Always},
#if defined(__x86_64__)
    {SimdPath::Sse2, "sse2", &Simd::Sse2Kernels, Always},
    {SimdPath::Avx2, "avx2", &Simd::Avx2Kernels, HasAvx2},
    {SimdPath::Avx512, "avx512", &Simd::Avx512Kernels, HasAvx512},
#elif defined(__aarch64__)
    {SimdPath::Neon, "neon", &Simd::NeonKernels, Always},
#endif
};

const PathRow* Fastest() {
    const PathRow* fastest = Paths;
    for (const PathRow& row : Paths)
        if (row.isSupported())
            fastest = &row;
    return fastest;
}

std::atomic<const PathRow*>& Current() {
    static std::atomic<const PathRow*> current = Fastest();
    return current;
}

std::atomic<unsigned> s_ThreadCount = 0;

} // namespace

std::vector<SimdPath> SupportedSimdPaths() {
    std::vector<SimdPath> paths;
    for (const PathRow& row : Paths)
        if (row.isSupported())
            paths.push_back(row.path);
    return paths;
}

const char* SimdPathName(SimdPath path) {
    for (const PathRow& row : Paths)
        if (row.path == path)
            return row.name;
    return "unsupported";
}

bool SetSimdPath(SimdPath path) {
    for (const PathRow& row : Paths) {
        if (row.path == path && row.isSupported()) {
            Current() = &row;
            return true;
        }
    }
    return false;
}

SimdPath CurrentSimdPath() {
    return Current().load()->path;
}

void SetThreadCount(unsigned count) {
    s_ThreadCount = count;
}

unsigned ThreadCount() {
    const unsigned count = s_ThreadCount;
    return count ? count : std::clamp(std::thread::hardware_concurrency(), 1u, 4u);
}

const Simd::Kernels& Simd::CurrentKernels() {
    return *Current().load()->kernels;
}

} // namespace ImageLib
