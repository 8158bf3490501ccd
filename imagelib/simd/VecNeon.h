#pragma once

#include "imagelib/simd/Kernels.h"

#include <arm_neon.h>

// Four lanes of NEON, which is present on every arm64 processor. The operations are described in README.md.
namespace ImageLib::Simd {
namespace {

struct Vec4 {
    static constexpr unsigned Lanes = 4;
    using Float = float32x4_t;
    using Int = uint32x4_t;
    using Pixel = float32x4_t;

    static Float Splat(float value) { return vdupq_n_f32(value); }
    static Float Load(const float* from) { return vld1q_f32(from); }
    static void Store(float* to, Float value) { vst1q_f32(to, value); }
    static Pixel LoadPixel(const Pixel32* from) { return vld1q_f32(&from->alpha); }
    static void StorePixel(Pixel32* to, Pixel value) { vst1q_f32(&to->alpha, value); }
    static Pixel SplatPixel(float value) { return vdupq_n_f32(value); }
    static float Red(Pixel pixel) { return vgetq_lane_f32(pixel, 1); }

    template <int Channel>
    static Float Broadcast(Pixel pixel) {
        return vdupq_laneq_f32(pixel, Channel);
    }

    static void LoadChannels(const void* from, std::ptrdiff_t stride, Float& alpha, Float& red, Float& green,
                             Float& blue) {
        const auto pixel = [&](int i) {
            return LoadPixel(reinterpret_cast<const Pixel32*>(static_cast<const char*>(from) + stride * i));
        };
        const float32x4x2_t ag02 = vzipq_f32(pixel(0), pixel(2)); // a0 a2 r0 r2, g0 g2 b0 b2
        const float32x4x2_t ag13 = vzipq_f32(pixel(1), pixel(3));
        const float32x4x2_t ar = vzipq_f32(ag02.val[0], ag13.val[0]);
        const float32x4x2_t gb = vzipq_f32(ag02.val[1], ag13.val[1]);
        alpha = ar.val[0];
        red = ar.val[1];
        green = gb.val[0];
        blue = gb.val[1];
    }

    static void KeepCloser(Float distance, int index, Float& best, Int& bestIndex) {
        const uint32x4_t closer = vcltq_f32(distance, best);
        bestIndex = vbslq_u32(closer, vdupq_n_u32(static_cast<unsigned>(index)), bestIndex);
        best = vbslq_f32(closer, distance, best);
    }
    static Int ZeroInt() { return vdupq_n_u32(0); }
    static void StoreInt(std::uint32_t* to, Int value) { vst1q_u32(to, value); }

    static Float Min(Float first, Float second) { return vminnmq_f32(first, second); }
    static Float Smallest(Float value) { return vdupq_n_f32(vminnmvq_f32(value)); }
    static unsigned EqualLanes(Float left, Float right) {
        const uint32x4_t bits = {1, 2, 4, 8};
        return vaddvq_u32(vandq_u32(vceqq_f32(left, right), bits));
    }

    static Int Round(Float value) { return vreinterpretq_u32_s32(vcvtnq_s32_f32(value)); }
    static Int LoadInt(const int* from) { return vreinterpretq_u32_s32(vld1q_s32(from)); }
    static Int AddInt(Int left, Int right) { return vaddq_u32(left, right); }
    static Int AndInt(Int left, Int right) { return vandq_u32(left, right); }
    static Int MinInt(Int left, Int right) {
        return vreinterpretq_u32_s32(vminq_s32(vreinterpretq_s32_u32(left), vreinterpretq_s32_u32(right)));
    }
    static int SmallestInt(Int value) { return vminvq_s32(vreinterpretq_s32_u32(value)); }
    static unsigned LessLanes(Int left, Int right) {
        const uint32x4_t bits = {1, 2, 4, 8};
        return vaddvq_u32(
            vandq_u32(vcltq_s32(vreinterpretq_s32_u32(left), vreinterpretq_s32_u32(right)), bits));
    }
    static float SquareOf(Pixel pixel) { return vaddvq_f32(vmulq_f32(pixel, pixel)); }

    static bool FindCell(Pixel pixel, const CellGrid& grid, std::uint32_t& cell) {
        const Float scaled = vmulq_f32(vsubq_f32(pixel, vdupq_n_f32(grid.low)), vdupq_n_f32(grid.scale));
        const Int position = Truncate(scaled);
        cell = vgetq_lane_u32(position, 1) | vgetq_lane_u32(position, 2) << grid.bits |
               vgetq_lane_u32(position, 3) << 2 * grid.bits;
        return !AnyBits(position, SplatInt(grid.OutsideMask()));
    }
    static Int Truncate(Float value) {
        const uint32x4_t integer = vreinterpretq_u32_s32(vcvtq_s32_f32(value)); // saturated, 0 for NaN
        return vbslq_u32(vceqq_f32(value, value), integer, vdupq_n_u32(0x80000000u));
    }
    static Int SplatInt(int value) { return vdupq_n_u32(static_cast<unsigned>(value)); }
    static Int Or(Int left, Int right) { return vorrq_u32(left, right); }
    static Int ShiftLeft(Int value, unsigned bits) {
        return vshlq_u32(value, vdupq_n_s32(static_cast<int>(bits)));
    }
    static bool AnyBits(Int value, Int mask) { return vmaxvq_u32(vandq_u32(value, mask)) != 0; }
};

} // namespace
} // namespace ImageLib::Simd
