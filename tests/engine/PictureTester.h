#pragma once

#include <cmath>

#include "tests/support/EffectTester.h"

// Compares whole frames pixel by pixel with values that the tests compute.
class PictureTester : public EffectTester {
protected:
    template <class Channel>
    static TestPicture<Channel> Noise(unsigned width, unsigned height) {
        constexpr double full = sizeof(Channel) == 1 ? 255.9 : 32768.9; // truncated
        TestPicture<Channel> picture(width, height);
        std::uint32_t state = 12345 + width * 31 + height;
        for (Channel& channel : picture.channels) {
            state = state * 1664525u + 1013904223u;
            const double unit = (state >> 8) / 16777215.0;
            channel = static_cast<Channel>(sizeof(Channel) == 4 ? 3.0 * unit - 1.0 : unit * full);
        }
        return picture;
    }

    // `expected(x, y, channel)` is in the host's range. 16-bit results of the engine run to 65535; the
    // adapter halves them and rounds the upper half up.
    template <class Channel, class Expected>
    static void Compare(TestPicture<Channel> output, double tolerance, Expected expected) {
        for (unsigned y = 0; y < output.height; ++y)
            for (unsigned x = 0; x < output.width; ++x)
                for (unsigned k = 0; k < 4; ++k) {
                    double channel = output.At(x, y)[k];
                    if (sizeof(Channel) == 2)
                        channel = std::floor(channel / 2.0) + (channel > 32768.0);
                    ASSERT_NEAR(channel, expected(x, y, k), tolerance)
                        << "depth " << sizeof(Channel) * 8 << " of " << output.width << "x" << output.height
                        << " at " << x << "," << y << " channel " << k;
                }
    }

    // Renders a frame at every depth. The row stride of the input is `padding` pixels more than its width.
    void ExpectFramesComeBack(unsigned width, unsigned height, unsigned padding) {
        const auto check = [&]<class Channel>(Channel, double tolerance) {
            auto input = Noise<Channel>(width, height);
            Compare(Frame(input, 0, padding * 4 * sizeof(Channel)), tolerance,
                    [&](unsigned x, unsigned y, unsigned k) { return input.At(x, y)[k]; });
        };
        check(std::uint8_t{}, 0.0);
        check(std::uint16_t{}, 0.0);
        check(float{}, 4e-6); // filtering between texels changes the last bits
    }
};
