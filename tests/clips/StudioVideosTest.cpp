#include <gmock/gmock.h>

#include "clips/Timecode.h"
#include "tests/clips/VideoFixture.h"
#include "toolkit/Errors.h"

namespace {

using namespace fxhost;

const std::string s_Hdr = "G(13250,34500)B(7500,3000)R(34000,16000)WP(15635,16450)L(10000000,1)";
const std::string s_X264 = "-c:v libx264 -pix_fmt yuv420p ",
                  s_Tags = "-colorspace bt2020nc -color_primaries bt2020 ";
const std::string s_HdrVideo = "-an -c:v libx265 -pix_fmt yuv420p10le " + s_Tags +
                               "-color_trc smpte2084 -x265-params log-level=error:master-display='" + s_Hdr +
                               "':max-cll=1000,400 ";

struct Row {
    const char* name;
    std::string make; // ffmpeg's arguments for the input, a second with a tone
    const char *input, *output;
    const char* lost;    // the warning; empty when everything is kept
    const char* entries; // of ffprobe
    const char* values;  // what it prints for the output
    std::function<void(ClipOptions&)> ask = [](ClipOptions&) {};
};

class StudioVideosTest : public VideoFixture {
protected:
    StudioVideosTest() {
        writeFile("chapters.txt",
                  ";FFMETADATA1\ntitle=My title\n[CHAPTER]\nTIMEBASE=1/1000\nSTART=0\nEND=500\n"
                  "title=One\n[CHAPTER]\nTIMEBASE=1/1000\nSTART=500\nEND=1000\ntitle=Two\n");
        writeFile("lines.srt", "1\n00:00:00,000 --> 00:00:00,500\nhello\n");
        m_Files = "-i " + at("chapters.txt") + " -i " + at("lines.srt") + " ";
    }

    // Runs a clip and returns its messages.
    std::string messages(const ClipOptions& options, const char* input, const char* output) {
        testing::internal::CaptureStderr();
        std::string failure;
        try {
            run(options, input, output);
        } catch (const std::exception& error) {
            failure = error.what();
        }
        return testing::internal::GetCapturedStderr() + failure;
    }

    static std::string lost(const std::string& messages) {
        const std::string title = "not kept: ";
        const auto begin = messages.find(title);
        return begin == std::string::npos
                   ? ""
                   : messages.substr(begin + title.size(), messages.find('\n', begin) - begin - title.size());
    }

    // Entries of the whole file on one line.
    std::string entries(const std::string& what, const std::string& name) const {
        std::string text =
            shell("ffprobe -v error -show_entries " + what + " -of default=nk=1:nw=1 " + at(name));
        std::replace(text.begin(), text.end(), '\n', ' ');
        return text.substr(0, text.find_last_not_of(' ') + 1);
    }

    std::string m_Files;
};

TEST_F(StudioVideosTest, MetadataIsKeptOrNamed) {
    const std::string chapters = "-map 0 -map 1 -map_metadata 2 " + s_X264;
    const std::string subtitles = "-map 0 -map 1 -map 3 " + s_X264;
    const char *const tags = "format_tags=title:chapter_tags=title",
                      *const colours = "stream=color_primaries,color_transfer";
    const Row rows[] = {
        {"title and chapters", chapters, "a.mp4", "o.mp4", "", tags, "One Two My title"},
        {"to Matroska", chapters, "a.mp4", "o.mkv", "", tags, "One Two My title"},
        {"to QuickTime", chapters, "a.mkv", "o.mov", "", tags, "One Two My title"},
        {"chapters of a range", chapters, "a.mkv", "o.mp4", "chapters", tags, "My title",
         [](ClipOptions& options) { options.frames = "3-20"; }},
        {"timecode", s_X264 + "-timecode 01:00:00:00", "a.mov", "o.mov", "", "stream_tags=timecode",
         "01:00:00:00 01:00:00:00"},
        {"timecode of a range", s_X264 + "-timecode 01:00:00:20", "a.mov", "o.mov", "chapters",
         "stream_tags=timecode", "01:00:01:05 01:00:01:05",
         [](ClipOptions& options) { options.frames = "11-"; }},
        {"timecode to Matroska", s_X264 + "-timecode 01:00:00:00", "a.mov", "o.mkv", "",
         "format_tags=timecode", "01:00:00:00"},
        {"subtitles", subtitles + "-c:s mov_text", "a.mp4", "o.mp4", "", "stream=codec_name",
         "h264 aac mov_text bin_data"},
        {"subtitles to Matroska", subtitles + "-c:s mov_text", "a.mp4", "o.mkv", "", "stream=codec_name",
         "ffv1 aac subrip"},
        {"subtitles from Matroska", subtitles + "-c:s ass", "a.mkv", "o.mp4", "", "stream=codec_name",
         "h264 vorbis mov_text bin_data"},
        {"pixel aspect", s_X264 + "-an -vf setsar=4/3", "a.mp4", "o.mkv", "", "stream=sample_aspect_ratio",
         "4:3"},
        {"pixel aspect of ProRes", s_X264 + "-an -vf setsar=4/3", "a.mp4", "o.mov", "",
         "stream=sample_aspect_ratio", "4:3"},
        {"colours in lossless RGB", s_X264 + s_Tags + "-an -color_trc bt2020-10", "a.mp4", "o.mkv", "",
         colours, "bt2020-10 bt2020"},
        {"colours in H.264", s_X264 + s_Tags + "-an -color_trc bt2020-10", "a.mkv", "o.mp4", "", colours,
         "bt2020-10 bt2020"},
        {"full range", s_X264 + "-an -vf scale=out_range=pc -color_range pc", "a.mp4", "o.mp4", "",
         "stream=color_range", "pc"},
        {"HDR10", s_HdrVideo, "a.mp4", "o.mp4", "", colours, "smpte2084 bt2020"},
        {"HDR10 to Matroska", s_HdrVideo, "a.mp4", "o.mkv",
         "HDR10 mastering display G(13250,34500)B(7500,3000)R(34000,16000)WP(15635,16450)L(10000000,1), "
         "HDR10 content light level 1000,400",
         colours, "smpte2084 bt2020"},
        {"two films", "-map 0 -map 0:v -map 1 " + s_X264, "a.mkv", "o.mkv", "another video stream",
         "stream=codec_name", "ffv1 vorbis"},
    };
    for (const Row& row : rows) {
        // Inputs: 0 pattern, 1 tone, 2 chapters, 3 subtitles.
        makeVideo(row.input, 25, "25", m_Files + row.make);
        ClipOptions options;
        row.ask(options);
        const std::string text = messages(options, row.input, row.output);
        EXPECT_EQ(lost(text), row.lost) << row.name;
        ASSERT_TRUE(exists(row.output)) << row.name << text;
        EXPECT_EQ(entries(row.entries, row.output), row.values) << row.name << text;
        std::filesystem::remove(at(row.output));
    }
}

TEST_F(StudioVideosTest, InterlacedVideoIsRefusedOrDeinterlacedOrKept) {
    makeVideo("in.mp4", 20, "25", "-an -vf setfield=tff -c:v libx264 -flags +ilme+ildct -x264-params tff=1");
    ClipOptions options;
    EXPECT_THAT([&] { run(options, "in.mp4", "out_##.png"); },
                Says<WrongUse>("in.mp4: is interlaced", "--interlaced deinterlace"));
    options.interlacing = Interlacing::Deinterlace;
    EXPECT_EQ(lost(messages(options, "in.mp4", "out.mkv")), "");
    EXPECT_EQ(probe("nb_read_frames", "out.mkv"), "20");
    options.interlacing = Interlacing::Keep;
    EXPECT_EQ(lost(messages(options, "in.mp4", "out.mkv")), "field order tt");
}

TEST(VideoMetadataTest, TimecodeIsCountedWithAndWithoutDroppedNumbers) {
    const struct {
        const char* from;
        long frames;
        FrameRate rate;
        const char* to;
    } rows[] = {{"01:00:00:24", 1, {25, 1}, "01:00:01:00"},
                {"23:59:59:23", 1, {24, 1}, "00:00:00:00"},
                {"00:00:59;29", 1, {30000, 1001}, "00:01:00;02"},
                {"00:09:59;29", 1, {30000, 1001}, "00:10:00;00"},
                {"00:00:00;00", 17982, {30000, 1001}, "00:10:00;00"}, // frames in ten minutes
                {"00:00:59;59", 1, {60000, 1001}, "00:01:00;04"},
                {"01:00:00;00", 0, {30000, 1001}, "01:00:00;00"},
                {"text", 5, {25, 1}, "text"}};
    for (const auto& row : rows)
        EXPECT_EQ(TimecodeLater(row.from, row.frames, row.rate), row.to) << row.from;
}

} // namespace
