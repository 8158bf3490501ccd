#include "clips/RawFrames.h"

#include <csignal>
#include <unistd.h>

#include "clips/Progress.h"
#include "tests/support/TestFiles.h"
#include "toolkit/Errors.h"

namespace {

using namespace fxhost;
using Bytes = std::vector<std::uint8_t>;

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
        close(m_Ends[end]);
        m_Ends[end] = -1;
    }
    void put(const Bytes& bytes) {
        EXPECT_EQ(write(m_Ends[1], bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    }
    Bytes get(std::size_t size) {
        Bytes bytes(size);
        EXPECT_EQ(read(m_Ends[0], bytes.data(), size), static_cast<ssize_t>(size));
        return bytes;
    }
    int m_Ends[2] = {-1, -1};
};

// A picture has alpha, red, green, blue; the pipe has red, green, blue, alpha, low bytes first.
TEST_F(RawFramesTest, FramesAreRgbaWithFullRangeInBothDirections) {
    const struct {
        unsigned height, depth;
        Bytes raw, host;
    } rows[] = {
        {2, 8, {10, 20, 30, 40, 50, 60, 70, 80}, {40, 10, 20, 30, 80, 50, 60, 70}},
        // 65535, 0, 2, 32768 to 32768, 0, 1, 16384
        {1, 16, {255, 255, 0, 0, 2, 0, 0, 128}, {0, 64, 0, 128, 0, 0, 1, 0}},
        // 1.5, -0.25, 0, 0.5
        {1,
         32,
         {0, 0, 192, 63, 0, 0, 128, 190, 0, 0, 0, 0, 0, 0, 0, 63},
         {0, 0, 0, 63, 0, 0, 192, 63, 0, 0, 128, 190, 0, 0, 0, 0}},
    };
    for (const auto& row : rows) {
        put(row.raw);
        const Picture picture = ReadRawFrames(m_Ends[0], 1, row.height, row.depth, 0)->read(1).value();
        EXPECT_EQ(picture.bytes, row.host) << row.depth;
        WriteRawFrames(m_Ends[1])->write({1, 0}, picture);
        EXPECT_EQ(get(row.raw.size()), row.raw) << row.depth;
    }
}

TEST_F(RawFramesTest, EarlierFramesAreSkippedAndAnEarlyEndIsReported) {
    put({1, 1, 1, 1, 2, 2, 2, 2, 3, 3, 3, 3, 4, 4});
    closeEnd(1);
    const auto source = ReadRawFrames(m_Ends[0], 1, 1, 8, 0), strict = ReadRawFrames(m_Ends[0], 1, 1, 8, 5);
    EXPECT_EQ(source->read(3).value().bytes[1], 3);
    EXPECT_THAT([&] { source->read(4); }, Says<WrongUse>("ends within frame 4, after 2 of the 4 bytes"));
    EXPECT_FALSE(source->read(4));
    EXPECT_THAT([&] { strict->read(1); }, Says<WrongUse>("ends before frame 1; --frames asks for frame 5"));
}

TEST_F(RawFramesTest, WritingToAClosedPipeIsAnError) {
    closeEnd(0);
    const auto sink = WriteRawFrames(m_Ends[1]);
    EXPECT_THAT(
        [&] {
            sink->write({7, 0}, Picture(1, 1, 8));
        },
        Says<EffectFailure>("frame 7: the reading side has closed the pipe"));
}

TEST(ProgressTest, TextShowsCountRateAndTimeLeft) {
    EXPECT_EQ(ProgressText(120, 240, 5), "120 of 240 frames, 24.0 frames/s, 0:05 left");
    EXPECT_EQ(ProgressText(1, 3601, 2), "1 of 3601 frames, 0.50 frames/s, 2:00:00 left");
    EXPECT_EQ(ProgressText(240, 240, 10), "240 of 240 frames, 24.0 frames/s");
    EXPECT_EQ(ProgressText(12, 0, 1), "12 frames, 12.0 frames/s");
    EXPECT_EQ(ProgressText(0, 9, 0), "0 of 9 frames");
}

} // namespace
