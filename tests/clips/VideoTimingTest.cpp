#include "clips/FrameTiming.h"

#include <algorithm>
#include <sstream>

#include "tests/clips/VideoFixture.h"

namespace {

using namespace fxhost;
using testing::ElementsAre;

constexpr double s_SoundFrame = 1024 / 44100.0; // seconds of a packet of AAC

class VideoTimingTest : public VideoFixture {
protected:
    // Seconds from the first packet of the sound to the first frame.
    double offset(const std::string& name) const {
        return packetTimes("v:0", name).front() - packetTimes("a:0", name).front();
    }
    // Seconds and hash of each packet of the sound.
    std::vector<std::pair<double, std::string>> soundPackets(const std::string& name) const {
        std::istringstream lines(
            shell("ffprobe -v error -select_streams a:0 -show_data_hash MD5 -show_entries "
                  "packet=pts_time,data_hash -of csv=p=0 " +
                  at(name)));
        std::vector<std::pair<double, std::string>> packets;
        for (std::string line; std::getline(lines, line);)
            if (const auto comma = line.find(",MD5"); comma != std::string::npos && comma > 0)
                packets.emplace_back(std::stod(line), line.substr(comma + 1, 36));
        return packets;
    }
};

TEST_F(VideoTimingTest, VideoThatStartsAfterItsSoundKeepsItsDistance) {
    makeVideo("in.mp4", 50, "25", "-vf setpts=PTS+0.52/TB -fps_mode passthrough -c:v libx264 -bf 0 -c:a aac");
    ASSERT_NEAR(offset("in.mp4"), 0.52, s_SoundFrame * 1.5);
    for (const char* output : {"out.mp4", "out.mkv"}) {
        ASSERT_EQ(run({}, "in.mp4", output), 0);
        EXPECT_NEAR(offset(output), offset("in.mp4"), 0.0015) << output;
        EXPECT_EQ(soundHash(output), soundHash("in.mp4")) << output;
    }
    // Frame 11 is at 0.52 + 10 / 25 = 0.92 s, and stays in sync with the sound of that time.
    ClipOptions options;
    options.frames = "11-40";
    for (const char* output : {"part.mp4", "part.mkv"}) {
        ASSERT_EQ(run(options, "in.mp4", output), 0);
        const auto [time, hash] = soundPackets(output).at(5);
        const auto source = soundPackets("in.mp4");
        const auto same = std::find_if(source.begin(), source.end(),
                                       [&, h = hash](const auto& packet) { return packet.second == h; });
        ASSERT_NE(same, source.end());
        EXPECT_NEAR(time - packetTimes("v:0", output).front(), same->first - 0.92, s_SoundFrame) << output;
    }
}

// The frames 1 to 5, 7, 10 and 13 of a clip of 10 frames per second.
TEST_F(VideoTimingTest, VariableRateIsResampledByTime) {
    const std::string select = "-vf \"select='lt(n,5)+eq(n,6)+eq(n,9)+eq(n,12)'\" -fps_mode vfr ";
    makeVideo("in.mkv", 14, "10", select + "-c:v ffv1 -pix_fmt bgr0 -c:a pcm_s16le");
    makeVideo("all.mkv", 14, "10", "-c:v ffv1 -pix_fmt bgr0 -an");
    ASSERT_EQ(run({}, "in.mkv", "out_##.png"), 0);
    ASSERT_EQ(run({}, "all.mkv", "all_##.png"), 0);
    const int shown[] = {1, 2, 3, 4, 5, 5, 7, 7, 7, 10, 10, 10, 13};
    for (int number = 1; number <= 13; ++number) {
        char output[16], source[16];
        std::snprintf(output, sizeof output, "out_%02d.png", number);
        std::snprintf(source, sizeof source, "all_%02d.png", shown[number - 1]);
        EXPECT_TRUE(bytes(output) == bytes(source)) << number;
    }
    EXPECT_FALSE(exists("out_14.png"));
    EXPECT_NEAR(m_Renderer.times[6], 0.6, 1e-9);
    ClipOptions twenty;
    twenty.fps = "20";
    ASSERT_EQ(run(twenty, "in.mkv", "out.mkv"), 0);
    EXPECT_EQ(probe("r_frame_rate,nb_read_frames", "out.mkv"), "20/1\n25");
    EXPECT_EQ(soundHash("out.mkv"), soundHash("in.mkv"));
}

// A last part of one or two frames has no reordered frames, unlike the others.
TEST_F(VideoTimingTest, AnyNumberOfFramesDeclaresTheExactRate) {
    m_Request.width = m_Request.height = 16;
    for (const char* frames : {"1-49", "1-50", "1-1"}) {
        ClipOptions options;
        options.frames = frames;
        options.fps = "29.97";
        ASSERT_EQ(run(options, "", "out.mp4"), 0);
        EXPECT_EQ(probe("avg_frame_rate", "out.mp4"), "30000/1001") << frames;
    }
}

TEST(FrameTimingTest, RoundedTimesAreConstantAndGapsAreNot) {
    const struct {
        const char* name;
        std::vector<double> times;
        const char* rate; // empty: variable
    } rows[] = {
        {"milliseconds of Matroska", {0.5, 0.533, 0.567, 0.600, 0.633, 0.667}, "30"},
        {"the second candidate", {0, 0.04, 0.08, 0.12}, "25"},
        {"a gap", {0, 0.033, 0.067, 0.133, 0.167}, ""},
        {"a drift", {0, 0.033, 0.066, 0.110, 0.154, 0.2}, ""},
    };
    for (const auto& row : rows) {
        const auto rate = ConstantRate(row.times, {{30, 1}, {25, 1}});
        EXPECT_EQ(rate ? rate->text() : "", row.rate) << row.name;
    }
    EXPECT_THAT(ResampledFrames({0, 0.5, 0.8, 2}, {2, 1}), ElementsAre(1, 2, 3, 3, 4));
    EXPECT_THAT(ResampledFrames({0, 0.5, 0.6, 2}, {2, 1}),
                ElementsAre(1, 3, 3, 3, 4)); // too fast for the second
    EXPECT_EQ(ResamplingRate({0, 0.04, 0.08, 0.2}, {{15, 1}, {30, 1}, {90000, 1}}).text(), "30");
    EXPECT_EQ(ResamplingRate({0, 0.1, 0.2, 0.5}, {{6, 1}, {90000, 1}}).text(), "10");
}

} // namespace
