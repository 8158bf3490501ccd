#pragma once

#include <cpuid.h>

namespace ImageLib::Simd {

// Instruction sets that the processor has and whose registers the system saves. The compilers' own function
// for this needs a run-time library that not every cross compiler brings. Some versions of macOS enable the
// registers of AVX-512 at their first use only; AVX2 is used there.
struct X86Features {
    bool avx2 = false;
    bool avx512 = false; // F, VL, BW and DQ
};

inline X86Features DetectX86Features() {
    unsigned a = 0, b = 0, c = 0, d = 0;
    constexpr unsigned saved = bit_OSXSAVE | bit_AVX;
    if (!__get_cpuid(1, &a, &b, &c, &d) || (c & saved) != saved || !__get_cpuid_count(7, 0, &a, &b, &c, &d))
        return {};
    unsigned registers = 0, high = 0;
    __asm__("xgetbv" : "=a"(registers), "=d"(high) : "c"(0));
    constexpr unsigned avxRegisters = 0x06, avx512Registers = 0xE6;
    constexpr unsigned avx512 = bit_AVX512F | bit_AVX512VL | bit_AVX512BW | bit_AVX512DQ;
    return {(registers & avxRegisters) == avxRegisters && (b & bit_AVX2) != 0,
            (registers & avx512Registers) == avx512Registers && (b & avx512) == avx512};
}

} // namespace ImageLib::Simd
