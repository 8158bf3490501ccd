#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <span>
#include <string>
#include <vector>

// Decodes the bytes of a fuzzer's input into values, from the first byte to the last. At the end of the input
// all values are 0, so that every sequence of bytes is a valid input.
class FuzzInput {
public:
    FuzzInput(const std::uint8_t* bytes, std::size_t size) : m_Bytes(bytes, size) {}

    bool IsEmpty() const { return m_Bytes.empty(); }

    std::uint8_t Byte() {
        if (m_Bytes.empty())
            return 0;
        const std::uint8_t byte = m_Bytes.front();
        m_Bytes = m_Bytes.subspan(1);
        return byte;
    }

    // A number from 0 to limit - 1; limit is at most 256.
    unsigned Below(unsigned limit) { return Byte() % limit; }

    // Any bit pattern: also NaN and infinities.
    float Float() {
        float value = 0;
        std::uint8_t* const bytes = reinterpret_cast<std::uint8_t*>(&value);
        for (std::size_t i = 0; i < sizeof value; ++i)
            bytes[i] = Byte();
        return value;
    }

    // All bytes that are left.
    std::string Rest() {
        std::string rest(m_Bytes.begin(), m_Bytes.end());
        m_Bytes = {};
        return rest;
    }

    template <class T, std::size_t N>
    const T& Pick(const T (&items)[N]) {
        return items[Below(N)];
    }

private:
    std::span<const std::uint8_t> m_Bytes;
};

// Ends the program, which the fuzzer reports together with the input, when the condition does not hold.
inline void Require(bool condition, const char* what) {
    if (condition)
        return;
    std::fprintf(stderr, "fuzz: a rule was broken: %s\n", what);
    std::abort();
}

// Reads every byte of a memory block, so that the address sanitizer detects a block that is shorter than
// stated.
inline void ReadAll(const void* memory, std::size_t bytes) {
    static volatile unsigned sum = 0;
    for (std::size_t i = 0; i < bytes; ++i)
        sum = sum + static_cast<const unsigned char*>(memory)[i];
}
