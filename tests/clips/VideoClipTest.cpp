#include <algorithm>
#include <csignal>
#include <fstream>
#include <gmock/gmock.h>
#include <sys/wait.h>

#include "clips/EncoderPixelFormats.h"
#include "clips/VideoFormat.h"
#include "clips/VideoProbe.h"
#include "clips/VideoSource.h"
#include "tests/clips/VideoFixture.h"
#include "toolkit/Errors.h"
#include "toolkit/PictureFile.h"

namespace {

using namespace fxhost;

class VideoClipTest : public VideoFixture {};

TEST_F(VideoClipTest, LosslessVideoKeepsEveryBitAndAlpha) {
    for (const unsigned depth : {8u, 16u}) {
        for (long number = 1; number <= 3; ++number)
            WritePicture(at("in_" + std::to_string(number) + ".png"), SomePicture(7, 5, depth, number));
        ASSERT_EQ(run({}, "in_#.png", "out.mkv"), ExitOk);
        const VideoInfo info = ProbeVideo(at("out.mkv"));
        EXPECT_EQ(info.bits, depth);
        EXPECT_TRUE(info.hasAlpha);
        EXPECT_EQ(info.packets, 3);
        ASSERT_EQ(run({}, "out.mkv", "back_#.png"), ExitOk);
        for (long number = 1; number <= 3; ++number) { // At depth 8, the clip was inverted twice.
            const Picture back = ReadPicture(at("back_" + std::to_string(number) + ".png"), std::nullopt);
            EXPECT_EQ(back.depth, depth);
            EXPECT_EQ(back.bytes, SomePicture(7, 5, depth, number).bytes) << depth << " " << number;
        }
    }
}

TEST_F(VideoClipTest, JoinedPartsHaveAConstantRateAndTheWholeSound) {
    makeVideo("in.mp4", 110, "30000/1001", "-c:v libx264 -pix_fmt yuv420p -c:a aac");
    for (const char* output : {"out.mp4", "out.mov", "out.mkv"}) {
        ASSERT_EQ(run({}, "in.mp4", output), ExitOk);
        EXPECT_EQ(probe("r_frame_rate,nb_read_frames", output), "30000/1001\n110") << output;
        EXPECT_EQ(soundHash(output), soundHash("in.mp4")) << output;
        EXPECT_FALSE(exists(std::string(".") + output + ".parts"));
    }
    for (const char* output : {"out.mp4", "out.mov"}) {
        const std::string steps =
            shell("ffprobe -v error -select_streams v:0 -show_entries packet=pts -of csv=p=0 " + at(output) +
                  " | tr -d , | sort -n | awk 'NR>1{print $1-p} {p=$1}' | sort -u");
        EXPECT_EQ(steps, "1001\n") << output; // in units of 1/30000 s
    }
}

TEST_F(VideoClipTest, FrameRangeTakesTheSoundOfItsTime) {
    makeVideo("in.mov", 50, "25", "-c:v prores_ks -c:a pcm_s16le");
    ClipOptions options;
    options.frames = "26-50";
    ASSERT_EQ(run(options, "in.mov", "out.mov"), ExitOk);
    EXPECT_EQ(probe("nb_read_frames", "out.mov"), "25");
    const double seconds = std::stod(
        shell("ffprobe -v error -select_streams a -show_entries stream=duration -of default=nk=1:nw=1 " +
              at("out.mov")));
    EXPECT_NEAR(seconds, 1, 0.05);
    EXPECT_EQ(m_Renderer.times.front(), 1); // second 1 of the input
}

TEST_F(VideoClipTest, OtherDecodersSeeTheRenderedColours) {
    Picture flat(64, 48, 8);
    for (std::size_t i = 0; i < flat.bytes.size(); i += 4) {
        const std::uint8_t pixel[] = {255, 55, 155, 205}; // alpha, red, green, blue; inverted 200, 100, 50
        std::copy(pixel, pixel + 4, flat.bytes.begin() + static_cast<long>(i));
    }
    WritePicture(at("in.png"), flat);
    ClipOptions options;
    options.frames = "1-3";
    for (const char* output : {"out.mp4", "out.mov", "out.webm"}) {
        ASSERT_EQ(run(options, "in.png", output), ExitOk);
        // FFmpeg decodes with the colour tags of the file.
        shell("ffmpeg -v error -y -i " + at(output) + " -frames:v 1 -pix_fmt rgb24 " + at("decoded.png"));
        const Picture seen = ReadPicture(at("decoded.png"), 8);
        EXPECT_NEAR(seen.Row(20)[81], 200, 3) << output;
        EXPECT_NEAR(seen.Row(20)[82], 100, 3) << output;
        EXPECT_NEAR(seen.Row(20)[83], 50, 3) << output;
        EXPECT_EQ(probe("color_space", output), "smpte170m") << output;
    }
}

// Half-transparent pixels with the straight colour 200, 100, 50, which premultiplied is 100, 50, 25.
TEST_F(VideoClipTest, OutputsStoreTheAssociationOfTheirFormatOrTheOneAskedFor) {
    Picture flat(64, 48, 8);
    for (std::size_t i = 0; i < flat.bytes.size(); i += 4) {
        const std::uint8_t pixel[] = {128, 55, 155, 205}; // The renderer inverts colours.
        std::copy(pixel, pixel + 4, flat.bytes.begin() + static_cast<long>(i));
    }
    WritePicture(at("in.png"), flat);
    ClipOptions options;
    options.frames = "1";
    const struct {
        const char* output;
        AlphaMode alpha;
        bool premultiplied;
    } rows[] = {{"a_#.png", AlphaMode::Auto, false},  {"b_#.png", AlphaMode::Premultiplied, true},
                {"a_#.tif", AlphaMode::Auto, false},  {"b_#.tif", AlphaMode::Premultiplied, true},
                {"a_#.exr", AlphaMode::Auto, true},   {"b_#.exr", AlphaMode::Straight, false},
                {"a.mov", AlphaMode::Auto, false},    {"b.mov", AlphaMode::Premultiplied, true},
                {"a.mkv", AlphaMode::Straight, false}};
    for (const auto& row : rows) {
        m_Request.writing.alpha = row.alpha;
        ASSERT_EQ(run(options, "in.png", row.output), ExitOk);
        std::string file = row.output;
        std::replace(file.begin(), file.end(), '#', '1');
        shell("ffmpeg -v error -y -i " + at(file) + " -frames:v 1 -f rawvideo -pix_fmt rgba " + at("pixels"));
        const std::string pixels = bytes("pixels");
        const int expected[] = {row.premultiplied ? 100 : 200, row.premultiplied ? 50 : 100,
                                row.premultiplied ? 25 : 50, 128};
        for (std::size_t c = 0; c < 4; ++c)
            EXPECT_NEAR(static_cast<std::uint8_t>(pixels[4 * 650 + c]), expected[c], 3) << file << " " << c;
    }
    m_Request.reading.alpha = AlphaMode::Premultiplied;
    m_Request.writing.alpha = AlphaMode::Auto;
    ASSERT_EQ(run(options, "b.mov", "c_#.png"), ExitOk);
    EXPECT_NEAR(ReadPicture(at("c_1.png"), 8).Row(20)[81], 200, 3); // Deep pictures are not inverted.
}

TEST_F(VideoClipTest, DepthAndAlphaChooseThePixelFormat) {
    WritePicture(at("deep.png"), SomePicture(64, 48, 16, 1));
    m_Request.width = 64;
    m_Request.height = 48;
    ClipOptions options;
    options.frames = "1-2";
    const struct {
        const char *input, *output, *format;
        bool alpha;
    } rows[] = {{"deep.png", "a.mp4", "yuv420p10le", false},
                {"deep.png", "a.mov", "yuva444p12le", true}, // FFmpeg's decoder gives 12 bits of ProRes 4444
                {"deep.png", "a.mkv", "gbrap16le", true},
                {"", "a.webm", "yuv420p", true}};
    for (const auto& row : rows) {
        ASSERT_EQ(run(options, row.input, row.output), ExitOk);
        EXPECT_EQ(probe("pix_fmt", row.output), row.format) << row.output;
        EXPECT_EQ(ProbeVideo(at(row.output)).hasAlpha, row.alpha) << row.output;
    }
    ASSERT_EQ(run(options, "a.webm", "clear_#.png"), ExitOk);
    EXPECT_EQ(ReadPicture(at("clear_1.png"), 8).bytes[0], 0); // the empty layer's alpha
}

TEST_F(VideoClipTest, ResumeAfterAKillGivesTheFileOfASingleRun) {
    makeVideo("in.mp4", 150, "25", "-c:v libx264 -pix_fmt yuv420p -c:a aac");
    for (const char* output : {"out.mp4", "out.mkv"}) {
        m_Renderer.beforeFrame = [] {};
        ASSERT_EQ(run({}, "in.mp4", output), ExitOk);
        const std::string whole = bytes(output);
        std::filesystem::remove(at(output));
        ClipOptions options;
        int frames = 0;
        for (const int last : {110, 50}) { // killed twice, the first time after complete parts
            frames = 0;
            m_Renderer.beforeFrame = [&] {
                if (++frames == last)
                    raise(SIGKILL);
            };
            EXPECT_TRUE(WIFSIGNALED(runInChild(options, "in.mp4", output)));
            EXPECT_FALSE(exists(output));
            options.resume = true;
        }
        frames = 0;
        m_Renderer.beforeFrame = [&] { ++frames; };
        ASSERT_EQ(run(options, "in.mp4", output), ExitOk);
        EXPECT_LT(frames, 150);
        EXPECT_TRUE(bytes(output) == whole) << output;
        frames = 0;
        ASSERT_EQ(run(options, "in.mp4", output), ExitOk); // Nothing is left to do.
        EXPECT_EQ(frames, 0);
        EXPECT_TRUE(bytes(output) == whole) << output;
    }
}

TEST_F(VideoClipTest, ResumeAfterAFailedFrameRendersItsPartAgain) {
    makeVideo("in.mp4", 60, "25", "-c:v libx264 -an");
    ASSERT_EQ(run({}, "in.mp4", "whole.mkv"), ExitOk);
    const auto rendered = [&](const ClipOptions& options) {
        m_Renderer.times.clear();
        EXPECT_EQ(run(options, "in.mp4", "out.mkv"), ExitOk);
        return m_Renderer.times.size();
    };
    m_Renderer.times.clear();
    m_HasFailed = [&] { return m_Renderer.times.size() == 55; };
    EXPECT_THAT([&] { run({}, "in.mp4", "out.mkv"); },
                Says<EffectFailure>("out.mkv: not written", "48 of 60 frames are written", "--resume"));
    EXPECT_FALSE(exists("out.mkv"));
    EXPECT_TRUE(exists("out.failed.png"));
    m_HasFailed = [] { return false; };
    ClipOptions options;
    options.resume = true;
    EXPECT_EQ(rendered(options), 12u);
    EXPECT_TRUE(bytes("out.mkv") == bytes("whole.mkv"));
    EXPECT_FALSE(exists("out.failed.png"));
    EXPECT_EQ(rendered(options), 0u);
    m_Request.identity = 1; // another effect
    EXPECT_EQ(rendered(options), 60u);
    std::filesystem::resize_file(at("out.mkv"), 1000);
    EXPECT_EQ(rendered(options), 60u);
}

TEST_F(VideoClipTest, ResumeUsesOnlyPartsThatWereMadeFromTheSameFrames) {
    makeVideo("in.mp4", 60, "25", "-c:v libx264 -an");
    m_Settings = {"Amount=0:0, 59:59"};
    m_Renderer.beforeFrame = [&] {
        if (m_Renderer.times.size() == 55)
            throw EffectFailure("out of order");
    };
    EXPECT_THAT(
        [&] { run({}, "in.mp4", "out.mp4"); },
        Says<EffectFailure>("out of order", "48 of 60 frames are written as complete parts in", "--resume"));
    m_Renderer.beforeFrame = [] {};
    m_Renderer.times.clear();
    m_Settings = {"Amount=0:1, 59:59"};
    ClipOptions options;
    options.resume = true;
    testing::internal::CaptureStderr();
    EXPECT_EQ(run(options, "in.mp4", "out.mp4"), ExitOk);
    EXPECT_THAT(testing::internal::GetCapturedStderr(),
                testing::HasSubstr("48 of 60 frames are rendered again"));
    EXPECT_EQ(m_Renderer.times.size(), 60u);
    EXPECT_EQ(probe("nb_read_frames", "out.mp4"), "60");
}

TEST_F(VideoClipTest, VideoThatEndsEarlyIsReportedWithItsFrame) {
    makeVideo("in.mp4", 100, "25", "-c:v libx264 -g 10 -an -movflags +faststart");
    ClipOptions options;
    options.frames = "90-120";
    EXPECT_THAT([&] { run(options, "in.mp4", "a_###.png"); },
                Says<WrongUse>("--frames 90-120", "in.mp4 has only 100 frames"));
    EXPECT_FALSE(exists("a_090.png"));
    std::filesystem::resize_file(at("in.mp4"), std::filesystem::file_size(at("in.mp4")) / 2);
    EXPECT_THAT([&] { run({}, "in.mp4", "b_###.png"); },
                Says<WrongUse>("in.mp4", "the video ends early", "of 100", "frames are written", "--resume"));
    EXPECT_TRUE(exists("b_001.png"));

    // On request, the readable frames are the clip.
    options = {};
    options.allowTruncated = true;
    testing::internal::CaptureStderr();
    EXPECT_EQ(run(options, "in.mp4", "c.mkv"), ExitOk);
    EXPECT_THAT(testing::internal::GetCapturedStderr(),
                testing::HasSubstr("the video ends early, before frame"));
    EXPECT_GT(std::stoi(probe("nb_read_frames", "c.mkv")), 20);

    std::ofstream(at("text.mp4")) << "no video";
    EXPECT_THAT([&] { run({}, "text.mp4", "c_#.png"); }, Says<WrongUse>("--input", "text.mp4"));
}

TEST_F(VideoClipTest, UnusableEncoderOptionsAreFoundBeforeTheFirstFrame) {
    WritePicture(at("in_1.png"), SomePicture(64, 48, 8, 1));
    const struct {
        EncoderOptions options;
        const char *output, *message;
    } rows[] = {{{"no_such", "", ""}, "out.mkv", "Unknown encoder 'no_such'"},
                {{"", "yuv999", ""}, "out.mp4", "--pixel-format yuv999: the encoder libx264 takes only"},
                {{"", "rgb24", ""}, "out.mp4", "--pixel-format rgb24"},
                {{"", "", "-crf"}, "out.mp4", "does not accept these options"},
                {{"libvpx-vp9", "", ""}, "out.mov", "does not accept these options"}};
    for (const auto& row : rows) {
        ClipOptions options;
        options.codec = row.options.codec;
        options.pixelFormat = row.options.pixelFormat;
        options.codecOptions = row.options.arguments;
        EXPECT_THAT([&] { run(options, "in_#.png", row.output); },
                    testing::AllOf(Says<WrongUse>(row.message), testing::Not(Says<WrongUse>("--resume"))))
            << row.message;
    }
    EXPECT_THAT(m_Renderer.times, testing::IsEmpty());
    EXPECT_THAT(names(), testing::ElementsAre("in_1.png"));
}

TEST_F(VideoClipTest, SoundFileIsCutToTheFramesAndContainersKeepTheRate) {
    for (int number = 1; number <= 30; ++number)
        WritePicture(at("in_" + std::to_string(number) + ".png"), SomePicture(64, 48, 8, number));
    shell("ffmpeg -v error -y -f lavfi -i sine=frequency=440:duration=5 -c:a pcm_s16le " + at("tone.wav"));
    ClipOptions options;
    options.fps = "25";
    options.audio = at("tone.wav");
    options.frames = "11-30";
    writeFile(".o.4711.mov", "as a killed run leaves it");
    const std::pair<const char*, const char*> rows[] = {
        {"o.mov", "25/1"}, {"o.avi", "25/1"}, {"o.mxf", "25/1"}};
    for (const auto& [name, rate] : rows) {
        ASSERT_EQ(run(options, "in_#.png", name), ExitOk) << name;
        EXPECT_EQ(probe("r_frame_rate,nb_read_frames", name), std::string(rate) + "\n20") << name;
        EXPECT_FALSE(packetTimes("a:0", name).empty()) << name;
    }
    // From 0.4 s to 1.2 s of the file, up to one packet.
    const std::vector<double> times = packetTimes("a:0", "o.mov");
    EXPECT_NEAR(times.front(), 0, 0.03);
    EXPECT_NEAR(times.back(), 0.8, 0.05);
    EXPECT_FALSE(exists(".o.4711.mov"));
    EXPECT_THAT([&] { run(options, "in_#.png", "o_#.png"); }, Says<WrongUse>("--audio: expected a video"));
    options.frames = "1-5x2";
    EXPECT_THAT([&] { run(options, "in_#.png", "o.mov"); }, Says<WrongUse>("frames without gaps"));
    options.audio = at("in_1.png");
    EXPECT_THAT([&] { run(options, "in_#.png", "o.mov"); }, Says<WrongUse>("contains no sound"));
}

TEST_F(VideoClipTest, VideoWhoseFramesChangeSizeIsRejected) {
    makeVideo("in.mp4", 5, "25", "-c:v libx264 -an");
    class Growing final : public FrameRenderer {
    public:
        std::vector<Parameter> parameters() override { return {}; }
        Picture render(const FrameInputs&) override { return Picture(8, m_Height++ < 3 ? 8 : 16, 8); }

    private:
        int m_Height = 0;
    } growing;
    ClipOptions options;
    options.quiet = true;
    m_Request.input = at("in.mp4");
    m_Request.output = at("out.mkv");
    EXPECT_THAT([&] { Clip(options, m_Request).run(growing, {}, {}, [] { return false; }); },
                Says<EffectFailure>("out.mkv: frame 4 has 8x16 pixels, but the video started with 8x8"));
}

// Subsampled chroma is sited between two rows and on the left one of two columns, the default of H.264.
TEST_F(VideoClipTest, SubsampledChromaIsLeftSitedInBothDirections) {
    // One column of blue on black at x = 31: only the samples at 30 and 32 are as near to it as one column,
    // and weigh it with a quarter.
    Picture line(64, 64, 8);
    for (unsigned y = 0; y < 64; ++y)
        for (unsigned x = 0; x < 64; ++x) // The renderer inverts colours, so the other pixels become black.
            for (unsigned c = 0; c < 4; ++c)
                line.Row(y)[4 * x + c] = c == 0 || !(c == 3 && x == 31) ? 255 : 0;
    WritePicture(at("in.png"), line);
    ClipOptions options;
    options.frames = "1";
    options.codecOptions = "-qp 0 -preset ultrafast";
    ASSERT_EQ(run(options, "in.png", "out.mp4"), ExitOk);
    shell("ffmpeg -v error -y -i " + at("out.mp4") + " -f rawvideo " + at("planes"));
    const std::string planes = bytes("planes");
    ASSERT_EQ(planes.size(), 64u * 64 * 3 / 2);
    // BT.601: blue alone has the full 112 above 128.
    const auto blueness = [&](unsigned column) {
        return static_cast<unsigned char>(planes[64 * 64 + 16 * 32 + column]) - 128;
    };
    EXPECT_NEAR(blueness(14), 0, 1);
    EXPECT_NEAR(blueness(15), 28, 1);
    EXPECT_NEAR(blueness(16), 28, 1);
    EXPECT_NEAR(blueness(17), 0, 1);

    // The other way: the sample at 30 is the colour of column 30, and half of that of 29 and 31.
    std::string uneven(64 * 64, 126);
    uneven.append(64 * 64 / 2, '\x80');
    for (unsigned row = 0; row < 32; ++row)
        uneven[64 * 64 + row * 32 + 15] = '\xa0'; // 32 above: blue is more by 32 * 255 / 224 * 1.772
    std::ofstream(at("uneven"), std::ios::binary) << uneven;
    shell("ffmpeg -v error -y -f rawvideo -pix_fmt yuv420p -video_size 64x64 -i " + at("uneven") +
          " -c:v libx264 -qp 0 " + at("in.mkv"));
    ASSERT_EQ(run(options, "in.mkv", "seen_#.png"), ExitOk);
    const Picture seen = ReadPicture(at("seen_1.png"), 8);
    const double grey = (126 - 16) * 255.0 / 219, step = 32 * 255.0 / 224 * 1.772;
    const double expected[] = {grey, grey + step / 2, grey + step, grey + step / 2, grey};
    for (unsigned i = 0; i < 5; ++i)
        EXPECT_NEAR(255 - seen.Row(20)[4 * (28 + i) + 3], expected[i], 1) << i;
}

TEST(VideoFormatTest, OtherEncodersGetTheirMostCommonPixelFormat) {
    const struct {
        std::vector<std::string> formats;
        bool deep, alpha, odd;
        const char* format;
    } rows[] = {{{"gbrp", "yuv444p", "yuv420p", "yuv420p10le"}, false, false, false, "yuv420p"},
                {{"gbrp", "yuv444p", "yuv420p", "yuv420p10le"}, true, true, false, "yuv420p10le"},
                {{"gbrp", "yuv444p", "yuv420p"}, true, false, true, "yuv444p"},
                {{"yuvj420p", "yuvj422p", "yuv420p"}, false, true, false, "yuvj420p"},
                {{"rgb24", "rgba", "rgb48be"}, false, true, false, "rgba"},
                {{"pal8"}, false, false, false, "pal8"},
                {{}, false, false, false, ""}};
    for (const auto& row : rows)
        EXPECT_EQ(PreferredPixelFormat(row.formats, row.deep, row.alpha, row.odd), row.format);
    EXPECT_THAT(EncoderPixelFormats("libx264rgb"), testing::Contains("rgb24"));
    // Only YUV is tagged, and the tags of JPEG are fixed.
    const auto arguments = [](const char* codec) {
        return ChooseVideoFormat("a.mkv", {codec, "", ""}, {}, 1920, 1080, 8).arguments;
    };
    EXPECT_THAT(arguments("libx264rgb"), testing::Not(testing::Contains("-colorspace")));
    EXPECT_THAT(arguments("mjpeg"), testing::IsSupersetOf({"yuvj420p", "pc", "bt470bg"}));
}

TEST(VideoFormatTest, EncoderOptionsTakePrecedenceOverTheExtension) {
    const auto format =
        ChooseVideoFormat("a.mov", {"libx265", "yuv444p12le", "-crf 3  -preset slow"}, {}, 1920, 1080, 16);
    EXPECT_THAT(format.arguments,
                testing::IsSupersetOf({"libx265", "yuv444p12le", "-crf", "3", "-preset", "slow", "bt709"}));
    EXPECT_THAT(format.arguments, testing::Not(testing::Contains("prores_ks")));
    for (const char* path : {"a.gif", "a", "a.MP3"})
        EXPECT_THROW(RequireVideoExtension(path), WrongUse) << path;
    // 4:2:0 needs an even width and height.
    EXPECT_THAT(ChooseVideoFormat("a.mp4", {}, {}, 5, 4, 8).arguments, testing::Contains("yuv444p"));
}

} // namespace
