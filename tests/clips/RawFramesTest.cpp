#include "standalone/clips/RawFrames.h"

#include <array>
#include <csignal>
#include <cstring>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "standalone/Errors.h"
#include "standalone/clips/Progress.h"

namespace {

using namespace fxhost;
using testing::AllOf;
using testing::HasSubstr;
using testing::Property;
using testing::Throws;

template <class Exception>
auto Says(const std::string& part) {
    return Throws<Exception>(Property(&std::exception::what, HasSubstr(part)));
}

class RawFramesTest : public testing::Test {
protected:
    RawFramesTest() {
        EXPECT_EQ(pipe(m_Ends), 0);
        signal(SIGPIPE, SIG_IGN);
    }
    ~RawFramesTest() override {
        closeEnd(0);
        closeEnd(1);
        signal(SIGPIPE, SIG_DFL);
    }
    void closeEnd(int end) {
        if (m_Ends[end] >= 0)
            close(m_Ends[end]);
        m_Ends[end] = -1;
    }
    template <class T>
    void put(const std::vector<T>& values) {
        EXPECT_EQ(write(m_Ends[1], values.data(), values.size() * sizeof(T)),
                  static_cast<ssize_t>(values.size() * sizeof(T)));
    }
    template <class T, std::size_t N>
    std::array<T, N> get() {
        std::array<T, N> values{};
        EXPECT_EQ(read(m_Ends[0], values.data(), sizeof values), static_cast<ssize_t>(sizeof values));
        return values;
    }
    int m_Ends[2] = {-1, -1};
};

// The host's order is alpha, red, green, blue; the pipe's red, green, blue, alpha.
TEST_F(RawFramesTest, LayoutIsRgbaWithFullRange) {
    put<std::uint8_t>({10, 20, 30, 40, 50, 60, 70, 80});
    put<std::uint16_t>({65535, 0, 2, 32768});
    put<float>({1.5f, -0.25f, 0, 0.5f});
    const auto byte = ReadRawFrames(m_Ends[0], 1, 2, 8, 0)->read(1).value();
    EXPECT_EQ(byte.bytes, (std::vector<std::uint8_t>{40, 10, 20, 30, 80, 50, 60, 70}));
    const auto word = ReadRawFrames(m_Ends[0], 1, 1, 16, 0)->read(1).value();
    std::array<std::uint16_t, 4> words{};
    std::memcpy(words.data(), word.bytes.data(), 8);
    EXPECT_EQ(words, (std::array<std::uint16_t, 4>{16384, 32768, 0, 1}));
    const auto real = ReadRawFrames(m_Ends[0], 1, 1, 32, 0)->read(1).value();

    const auto sink = WriteRawFrames(m_Ends[1]);
    sink->write({1, 0}, byte);
    EXPECT_EQ((get<std::uint8_t, 8>()), (std::array<std::uint8_t, 8>{10, 20, 30, 40, 50, 60, 70, 80}));
    sink->write({2, 1}, word);
    EXPECT_EQ((get<std::uint16_t, 4>()), (std::array<std::uint16_t, 4>{65535, 0, 2, 32768}));
    sink->write({3, 2}, real);
    EXPECT_EQ((get<float, 4>()), (std::array<float, 4>{1.5f, -0.25f, 0, 0.5f}));
}

TEST_F(RawFramesTest, FramesAreSkippedAndTheEndIsSeen) {
    put<std::uint8_t>({1, 1, 1, 1, 2, 2, 2, 2, 3, 3, 3, 3});
    closeEnd(1);
    const auto source = ReadRawFrames(m_Ends[0], 1, 1, 8, 0);
    EXPECT_EQ(source->read(3).value().bytes[1], 3);
    EXPECT_FALSE(source->read(4));
    const auto strict = ReadRawFrames(m_Ends[0], 1, 1, 8, 5);
    EXPECT_THAT([&] { strict->read(1); }, Says<WrongUse>("ends before frame 1; --frames asks for 5"));
}

TEST_F(RawFramesTest, HalfAFrameAndAClosedReaderAreErrors) {
    put<std::uint8_t>({1, 1, 1, 1, 2, 2});
    closeEnd(1);
    const auto source = ReadRawFrames(m_Ends[0], 1, 1, 8, 0);
    EXPECT_TRUE(source->read(1));
    EXPECT_THAT([&] { source->read(2); }, Says<WrongUse>("ends within frame 2, after 2 of the 4 bytes"));

    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    close(ends[0]);
    EXPECT_THAT(
        [&] {
            WriteRawFrames(ends[1])->write({7, 0}, Picture(1, 1, 8));
        },
        Says<EffectFailure>("frame 7: the reading side has closed the pipe"));
    close(ends[1]);
}

TEST(ProgressTest, TellsRateAndTimeLeft) {
    EXPECT_EQ(ProgressText(120, 240, 5), "120 of 240 frames, 24.0 frames/s, 0:05 left");
    EXPECT_EQ(ProgressText(1, 3601, 2), "1 of 3601 frames, 0.50 frames/s, 2:00:00 left");
    EXPECT_EQ(ProgressText(240, 240, 10), "240 of 240 frames, 24.0 frames/s");
    EXPECT_EQ(ProgressText(12, 0, 1), "12 frames, 12.0 frames/s");
    EXPECT_EQ(ProgressText(0, 9, 0), "0 of 9 frames");
}

} // namespace
