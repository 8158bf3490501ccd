#include "imagelib/Settings.h"
#include "imagelib/vector/Kernels.h"

#include <algorithm>
#include <atomic>
#include <thread>

namespace ImageLib {
namespace {

struct PathRow {
    VectorPath path;
    const char* name;
    const Vector::Kernels* kernels;
    bool (*isSupported)();
};

bool Always() {
    return true;
}

#if defined(__x86_64__)
bool HasAvx2() {
    return __builtin_cpu_supports("avx2");
}
bool HasAvx512() {
    return __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512vl") &&
           __builtin_cpu_supports("avx512bw") && __builtin_cpu_supports("avx512dq");
}
#endif

// Slowest first.
const PathRow kPaths[] = {
    {VectorPath::Plain, "plain", &Vector::PlainKernels, Always},
#if defined(__x86_64__)
    {VectorPath::Sse2, "sse2", &Vector::Sse2Kernels, Always},
    {VectorPath::Avx2, "avx2", &Vector::Avx2Kernels, HasAvx2},
    {VectorPath::Avx512, "avx512", &Vector::Avx512Kernels, HasAvx512},
#elif defined(__aarch64__)
    {VectorPath::Neon, "neon", &Vector::NeonKernels, Always},
#endif
};

const PathRow* Fastest() {
    const PathRow* fastest = kPaths;
    for (const PathRow& row : kPaths)
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

std::vector<VectorPath> SupportedPaths() {
    std::vector<VectorPath> paths;
    for (const PathRow& row : kPaths)
        if (row.isSupported())
            paths.push_back(row.path);
    return paths;
}

const char* PathName(VectorPath path) {
    for (const PathRow& row : kPaths)
        if (row.path == path)
            return row.name;
    return "unsupported";
}

bool SetVectorPath(VectorPath path) {
    for (const PathRow& row : kPaths) {
        if (row.path == path && row.isSupported()) {
            Current() = &row;
            return true;
        }
    }
    return false;
}

VectorPath CurrentVectorPath() {
    return Current().load()->path;
}

void SetThreadCount(unsigned count) {
    s_ThreadCount = count;
}

unsigned ThreadCount() {
    const unsigned count = s_ThreadCount;
    return count ? count : std::clamp(std::thread::hardware_concurrency(), 1u, 4u);
}

const Vector::Kernels& Vector::CurrentKernels() {
    return *Current().load()->kernels;
}

} // namespace ImageLib
