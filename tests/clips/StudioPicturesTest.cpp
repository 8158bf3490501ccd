#include <OpenImageIO/imageio.h>
#include <array>
#include <cmath>
#include <sstream>

#include "tests/clips/ClipFixture.h"
#include "toolkit/Errors.h"

namespace {

using namespace fxhost;
using OIIO::ImageSpec;
using OIIO::TypeDesc;

// Gives back its input as a new picture, which is what an effect without any change does.
class CopyRenderer final : public FrameRenderer {
public:
    std::vector<Parameter> parameters() override { return {}; }
    Picture render(const FrameInputs& request) override {
        Picture copy = request.input;
        copy.origin = nullptr;
        return copy;
    }
};

// What one file declares and contains, read with the image library alone.
struct PlainFile {
    ImageSpec spec;
    std::vector<float> pixels;
};

PlainFile ReadPlain(const std::string& path, int part = 0) {
    ImageSpec config;
    config.attribute("oiio:UnassociatedAlpha", 1);
    const auto input = OIIO::ImageInput::open(path, &config);
    EXPECT_TRUE(input) << path;
    if (!input || !input->seek_subimage(part, 0))
        return {};
    PlainFile file{input->spec(), {}};
    file.pixels.resize(file.spec.image_pixels() * static_cast<std::size_t>(file.spec.nchannels));
    input->read_image(part, 0, 0, file.spec.nchannels, TypeDesc::FLOAT, file.pixels.data());
    return file;
}

// Values that are exact as half floats and as integers: 0, a quarter, a half and 1 in EXR, any byte
// elsewhere. Alpha is a half or 1, so that EXR colours can be divided and multiplied without rounding.
float PatternValue(const ImageSpec& spec, int x, int y, int c) {
    const int number = x * 7 + y * 5 + c * 3 + (spec.nchannels < 3 ? x * y : 0);
    if (c == spec.alpha_channel)
        return number % 2 ? 1.0f : spec.format.is_floating_point() ? 0.5f : 102.0f / 255;
    if (spec.format.is_floating_point())
        return std::array{0.0f, 0.25f, 0.5f, 0.125f}[static_cast<std::size_t>(number % 4)];
    const int steps = spec.format == TypeDesc::UINT16 ? 65535 : 255;
    return static_cast<float>(number * 2654435 % steps) / static_cast<float>(steps);
}

void WritePlain(const std::string& path, const std::vector<ImageSpec>& parts) {
    const auto output = OIIO::ImageOutput::create(path);
    ASSERT_TRUE(output) << path << OIIO::geterror();
    ASSERT_TRUE(parts.size() == 1 ? output->open(path, parts[0])
                                  : output->open(path, static_cast<int>(parts.size()), parts.data()))
        << path << output->geterror();
    for (std::size_t i = 0; i < parts.size(); ++i) {
        if (i > 0)
            output->open(path, parts[i], OIIO::ImageOutput::AppendSubimage);
        std::vector<float> pixels;
        for (int y = 0; y < parts[i].height; ++y)
            for (int x = 0; x < parts[i].width; ++x)
                for (int c = 0; c < parts[i].nchannels; ++c)
                    pixels.push_back(PatternValue(parts[i], x, y, c));
        ASSERT_TRUE(output->write_image(TypeDesc::FLOAT, pixels.data())) << path << output->geterror();
    }
    ASSERT_TRUE(output->close());
}

struct Row {
    const char* name;
    const char* input; // extension
    TypeDesc::BASETYPE type;
    int channels;
    const char* attributes; // "NAME=VALUE;NAME=VALUE" of the input
    const char* output;     // extension
    TypeDesc::BASETYPE stored;
    const char* lost = ""; // the warning; empty when everything is kept
    double tolerance = 0;
    std::function<void(ClipRequest&)> ask = [](ClipRequest&) {};
};

constexpr auto U8 = TypeDesc::UINT8, U16 = TypeDesc::UINT16, HALF = TypeDesc::HALF, FLOAT = TypeDesc::FLOAT;

void AskDepth32(ClipRequest& request) {
    request.reading.depth = 32;
}

const char* const s_Timecode = "16777216,0"; // 01:00:00:00 as two words of SMPTE 12M

const std::vector<Row>& Rows() {
    static const std::vector<Row> rows = {
        {"RGB stays RGB", "png", U8, 3, "", "png", U8},
        {"RGBA", "png", U8, 4, "", "png", U8},
        {"grey stays grey", "png", U8, 1, "", "png", U8},
        {"grey and alpha", "png", U8, 2, "", "png", U8},
        {"16 bits through float are exact", "png", U16, 3, "", "png", U16, "", 0, AskDepth32},
        {"16 bits with alpha through float", "png", U16, 4, "", "png", U16, "", 0, AskDepth32},
        {"16 bits of grey through float", "png", U16, 1, "", "png", U16, "", 0, AskDepth32},
        {"16 bits of TIFF become float as asked", "tif", U16, 3, "", "tif", FLOAT, "", 1e-7, AskDepth32},
        {"16 bits through the range of the host API", "png", U16, 3, "", "png", U16, "", 2.01 / 65535},
        {"description and author", "png", U8, 3, "ImageDescription=Shot 7;Artist=Ann", "png", U8},
        {"copyright", "png", U8, 3, "Copyright=Ann 2020", "tif", U8},
        {"pixel aspect", "png", U8, 3, "PixelAspectRatio=2.0", "png", U8},
        {"profile", "png", U8, 3, "ICCProfile=icc", "png", U8},
        {"profile to TIFF", "png", U8, 3, "ICCProfile=icc", "tif", U8},
        {"profile to BMP", "png", U8, 3, "ICCProfile=icc", "bmp", U8, "ICCProfile"},
        {"sRGB", "png", U8, 3, "oiio:ColorSpace=sRGB", "png", U8},
        {"alpha to JPEG", "png", U8, 4, "", "jpg", U8, "alpha", 0.7},
        {"16 bits to JPEG", "png", U16, 3, "", "jpg", U8, "16 bits per channel, which are rounded to 8", 0.7},
        {"16 bits to 8 as asked", "png", U16, 3, "", "png", U8, "", 0.51 / 255,
         [](ClipRequest& request) { request.writing.bits = SampleType::Bits8; }},
        {"8 bits to half", "png", U8, 3, "", "exr", HALF, "colour space sRGB", 0.0003},
        {"16 bits to float EXR", "png", U16, 3, "", "exr", FLOAT, "colour space sRGB", 2.01 / 65535},
        {"16 bits to half as asked", "png", U16, 3, "", "exr", HALF, "colour space sRGB", 0.0003,
         [](ClipRequest& request) { request.writing.bits = SampleType::Half; }},
        {"TIFF", "tif", U8, 3, "", "tif", U8},
        {"TIFF with compression", "tif", U8, 3, "compression=lzw", "tif", U8},
        {"TIFF with another compression", "tif", U8, 3, "compression=lzw", "tif", U8, "", 0,
         [](ClipRequest& request) { request.writing.compression = "packbits"; }},
        {"float TIFF", "tif", FLOAT, 3, "", "tif", FLOAT},
        {"TIFF with alpha", "tif", U8, 4, "", "tif", U8},
        {"TIFF with dates and names", "tif", U8, 3, "Artist=Ann;Copyright=Ann;DateTime=2020:01:02 03:04:05",
         "tif", U8},
        {"TIFF to EXR", "tif", FLOAT, 3, "Artist=Ann;ImageDescription=Shot 7", "exr", FLOAT},
        {"grey JPEG", "jpg", U8, 1, "", "jpg", U8, "", 0.02},
        {"JPEG with Exif", "jpg", U8, 3, "FNumber=2.8;Make=Camera", "jpg", U8, "", 0.7},
        {"JPEG with Exif to PNG", "jpg", U8, 3, "FNumber=2.8;Exif:LensModel=Lens", "png", U8, "FNumber"},
        {"half stays half", "exr", HALF, 3, "", "exr", HALF},
        {"half to float as asked", "exr", HALF, 3, "", "exr", FLOAT, "", 0,
         [](ClipRequest& request) { request.writing.bits = SampleType::Float; }},
        {"float", "exr", FLOAT, 3, "", "exr", FLOAT},
        {"half with alpha", "exr", HALF, 4, "", "exr", HALF},
        {"grey EXR", "exr", HALF, 1, "", "exr", HALF},
        {"EXR with PIZ", "exr", HALF, 3, "compression=piz", "exr", HALF},
        {"chromaticities", "exr", HALF, 3, "chromaticities=8", "exr", HALF},
        {"timecode and rate", "exr", HALF, 3, "smpte:TimeCode=tc;FramesPerSecond=25", "exr", HALF},
        {"owner", "exr", HALF, 3, "Copyright=The owner", "exr", HALF},
        {"attribute of a studio", "exr", HALF, 3, "shot=sh010", "exr", HALF},
        {"pixel aspect of EXR", "exr", HALF, 3, "PixelAspectRatio=2.0", "exr", HALF},
        {"EXR to PNG", "exr", HALF, 3, "chromaticities=8;smpte:TimeCode=tc;FramesPerSecond=25", "png", U16,
         "FramesPerSecond, chromaticities, TimeCode, float values, which are clipped to 0..1 and rounded to "
         "16 bits",
         1.0 / 65535},
        {"float EXR to TIFF of 16 bits as asked", "exr", FLOAT, 3, "", "tif", U16, "colour space Linear",
         0.51 / 65535, [](ClipRequest& request) { request.writing.bits = SampleType::Bits16; }},
        {"float EXR to PNG", "exr", FLOAT, 3, "", "png", U16,
         "float values, which are clipped to 0..1 and rounded to 16 bits", 0.51 / 65535},
        {"BMP", "bmp", U8, 3, "", "bmp", U8},
        {"Targa with alpha", "tga", U8, 4, "", "tga", U8},
        {"PPM", "ppm", U8, 3, "", "ppm", U8},
        {"DPX of 10 bits", "dpx", U16, 3, "oiio:BitsPerSample=10", "dpx", U16, "", 1.01 / 1023,
         [](ClipRequest& request) { request.writing.bits = SampleType::Bits10; }},
    };
    return rows;
}

class StudioPicturesTest : public ClipFixture {
protected:
    // Runs a clip of one frame and returns its messages.
    std::string copy(const std::string& input, const std::string& output) {
        ClipRequest request = m_Request;
        request.input = at(input);
        request.output = at(output);
        testing::internal::CaptureStderr();
        ClipOptions options;
        options.frames = "1";
        std::string failure;
        CopyRenderer renderer;
        try {
            Clip clip(options, request);
            clip.run(renderer, {}, {}, [] { return false; });
        } catch (const std::exception& error) {
            failure = error.what();
        }
        return testing::internal::GetCapturedStderr() + failure;
    }

    // What the messages say is not kept.
    static std::string lost(const std::string& messages) {
        const std::string title = "not kept: ";
        const auto begin = messages.find(title);
        if (begin == std::string::npos)
            return "";
        return messages.substr(begin + title.size(), messages.find('\n', begin) - begin - title.size());
    }

    static ImageSpec specOf(int width, int height, int channels, TypeDesc type,
                            const std::string& attributes) {
        ImageSpec spec(width, height, channels, type);
        if (channels < 3)
            spec.channelnames =
                channels == 1 ? std::vector<std::string>{"Y"} : std::vector<std::string>{"Y", "A"};
        spec.alpha_channel = channels % 2 ? -1 : channels - 1;
        spec.attribute("oiio:UnassociatedAlpha", 1);
        std::istringstream list(attributes);
        for (std::string item; std::getline(list, item, ';');)
            declare(spec, item.substr(0, item.find('=')), item.substr(item.find('=') + 1));
        return spec;
    }

    static void declare(ImageSpec& spec, const std::string& name, const std::string& value) {
        const float chromaticities[] = {0.7347f, 0.2653f, 0, 1, 0.0001f, -0.077f, 0.32168f, 0.33767f};
        const int timecode[] = {0x01020304, 0}, rate[] = {25, 1};
        if (value == "icc") {
            const std::vector<std::uint8_t> profile = profileBytes();
            spec.attribute(name, TypeDesc(TypeDesc::UINT8, static_cast<int>(profile.size())), profile.data());
        } else if (name == "chromaticities")
            spec.attribute(name, TypeDesc(TypeDesc::FLOAT, 8), chromaticities);
        else if (name == "smpte:TimeCode")
            spec.attribute(name, OIIO::TypeTimeCode, timecode);
        else if (name == "FramesPerSecond")
            spec.attribute(name, OIIO::TypeRational, rate);
        else if (value.find_first_not_of("0123456789") == std::string::npos)
            spec.attribute(name, std::stoi(value));
        else if (value.find_first_not_of("0123456789.") == std::string::npos)
            spec.attribute(name, std::stof(value));
        else
            spec.attribute(name, value);
    }

    // A profile of RGB that libraries accept: a header of 128 bytes and a table with one text.
    static std::vector<std::uint8_t> profileBytes() {
        std::vector<std::uint8_t> bytes(400, 0);
        for (std::size_t i = 152; i < bytes.size();
             ++i) // PNG readers refuse profiles that are short when packed.
            bytes[i] = static_cast<std::uint8_t>(i * i * 7919 % 251);
        const auto put = [&](std::size_t place, const std::string& text) {
            std::copy(text.begin(), text.end(), bytes.begin() + static_cast<std::ptrdiff_t>(place));
        };
        bytes[2] = 400 / 256;
        bytes[3] = 400 % 256;
        bytes[131] = 1;   // entries of the table
        bytes[139] = 144; // where the text is
        bytes[142] = 1;   // its length: 256 bytes
        bytes[8] = 2;     // version
        put(12, "mntrRGB XYZ ");
        put(36, "acsp");
        put(132, "cprt");
        put(144, "text");
        const std::uint8_t white[] = {0, 0, 0xf6, 0xd6, 0, 1, 0, 0, 0, 0, 0xd3, 0x2d};
        std::copy(std::begin(white), std::end(white), bytes.begin() + 68);
        return bytes;
    }
};

// One row for each file: what comes out is exactly what went in, or a warning names what is lost.
TEST_F(StudioPicturesTest, PixelsLayoutAndAttributesAreKeptOrNamed) {
    for (const Row& row : Rows()) {
        const std::string input = std::string("in_1.") + row.input,
                          output = std::string("out_1.") + row.output;
        WritePlain(at(input), {specOf(7, 5, row.channels, row.type, row.attributes)});
        m_Request = {};
        row.ask(m_Request);
        const std::string messages =
            copy(std::string("in_#.") + row.input, std::string("out_#.") + row.output);
        EXPECT_EQ(lost(messages), row.lost) << row.name << messages;
        if (!exists(output)) {
            ADD_FAILURE() << row.name << messages;
            continue;
        }
        const PlainFile before = ReadPlain(at(input)), after = ReadPlain(at(output));
        EXPECT_EQ(after.spec.format, TypeDesc(row.stored)) << row.name;
        const bool losesAlpha = std::string(row.lost) == "alpha";
        ASSERT_EQ(after.spec.nchannels, row.channels - (losesAlpha ? 1 : 0)) << row.name;
        const int colours = after.spec.nchannels;
        for (std::size_t i = 0; i < after.pixels.size(); ++i) {
            const std::size_t from =
                i / static_cast<std::size_t>(colours) * static_cast<std::size_t>(row.channels) +
                i % static_cast<std::size_t>(colours);
            EXPECT_NEAR(after.pixels[i], before.pixels[from], row.tolerance) << row.name << i;
            if (testing::Test::HasFailure() && i > 20)
                break;
        }
        for (const auto& attribute : specOf(1, 1, 3, U8, row.attributes).extra_attribs) {
            const std::string name = attribute.name().string();
            const std::string group =
                name.starts_with("smpte:") ? "TimeCode" : name.substr(0, name.find(':'));
            if (name.starts_with("oiio:") || std::string(row.lost).find(group) != std::string::npos)
                continue;
            const auto* const kept = after.spec.find_attribute(name);
            if (name == "compression" && !m_Request.writing.compression.empty())
                EXPECT_EQ(kept ? kept->get_string() : "", m_Request.writing.compression);
            else
                EXPECT_EQ(kept ? kept->get_string() : "", attribute.get_string()) << row.name << name;
        }
        std::filesystem::remove(at(output));
    }
}

// A 3 by 2 picture whose file has the rows and columns of each orientation; always seen the same.
TEST_F(StudioPicturesTest, EveryOrientationIsTurnedUpright) {
    const char* const stored[] = {
        "abcdef", "cbafed", "fedcba", "defabc", "adbecf",
        "cfbead", "fcebda", "daebfc"}; // from the definition of the tag: where row 0 and column 0 are
    for (int orientation = 1; orientation <= 8; ++orientation) {
        const bool turned = orientation > 4;
        ImageSpec spec(turned ? 2 : 3, turned ? 3 : 2, 1, U8);
        spec.attribute("Orientation", orientation);
        const auto output = OIIO::ImageOutput::create(at("in_1.tif"));
        ASSERT_TRUE(output->open(at("in_1.tif"), spec));
        ASSERT_TRUE(output->write_image(TypeDesc::UINT8, stored[orientation - 1]) && output->close());
        EXPECT_EQ(lost(copy("in_#.tif", "out_#.png")), "");
        const PlainFile seen = ReadPlain(at("out_1.png"));
        std::string letters;
        for (const float value : seen.pixels)
            letters += static_cast<char>(std::lround(value * 255));
        EXPECT_EQ(letters, "abcdef") << orientation;
        EXPECT_EQ(seen.spec.width, 3) << orientation;
    }
}

TEST_F(StudioPicturesTest, EffectsSeeTheDisplayWindowAndOverscanIsKeptWhenAsked) {
    struct Window {
        int x, y, width, height;
    };
    const auto make = [&](const Window& data, const Window& display) {
        ImageSpec spec = specOf(data.width, data.height, 3, HALF, "");
        spec.x = data.x;
        spec.y = data.y;
        spec.full_x = display.x;
        spec.full_y = display.y;
        spec.full_width = display.width;
        spec.full_height = display.height;
        WritePlain(at("in_1.exr"), {spec});
        return spec;
    };
    const auto windowsOf = [&](const PlainFile& file) {
        const ImageSpec& s = file.spec;
        return std::vector<int>{s.x, s.y, s.width, s.height, s.full_x, s.full_y, s.full_width, s.full_height};
    };
    using testing::ElementsAre;
    // The data window is smaller, and the display window does not begin at 0.
    const ImageSpec small = make({12, 21, 3, 2}, {10, 20, 6, 4});
    EXPECT_EQ(lost(copy("in_#.exr", "out_#.exr")), "");
    PlainFile seen = ReadPlain(at("out_1.exr"));
    EXPECT_THAT(windowsOf(seen), ElementsAre(10, 20, 6, 4, 10, 20, 6, 4));
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 6; ++x) {
            const bool inside = x >= 2 && x < 5 && y >= 1 && y < 3;
            EXPECT_EQ(seen.pixels[static_cast<std::size_t>((y * 6 + x) * 3)],
                      inside ? PatternValue(small, x - 2, y - 1, 0) : 0);
        }
    // The data window is larger.
    const ImageSpec large = make({-2, -1, 10, 8}, {0, 0, 6, 5});
    EXPECT_THAT(lost(copy("in_#.exr", "out_#.exr")), testing::HasSubstr("the overscan"));
    seen = ReadPlain(at("out_1.exr"));
    EXPECT_THAT(windowsOf(seen), ElementsAre(0, 0, 6, 5, 0, 0, 6, 5));
    EXPECT_EQ(seen.pixels[0], PatternValue(large, 2, 1, 0));
    m_Request.reading.overscan = true;
    EXPECT_EQ(lost(copy("in_#.exr", "out_#.exr")), "");
    seen = ReadPlain(at("out_1.exr"));
    EXPECT_THAT(windowsOf(seen), ElementsAre(-2, -1, 10, 8, 0, 0, 6, 5));
    EXPECT_EQ(seen.pixels, ReadPlain(at("in_1.exr")).pixels);
    EXPECT_EQ(lost(copy("in_#.exr", "out_#.tif")), "colour space Linear, the display window");
}

TEST_F(StudioPicturesTest, ChannelsAndPartsAreChosenOrNamed) {
    ImageSpec spec(4, 3, 8, HALF);
    spec.channelnames = {"R", "G", "B", "A", "Z", "glow.R", "glow.G", "glow.B"};
    spec.alpha_channel = 3;
    ImageSpec second = specOf(6, 2, 3, HALF, ""); // also 12 pixels
    second.full_width = 4;                        // The parts share the display window.
    second.full_height = 3;
    spec.attribute("oiio:subimagename", "left");
    second.attribute("oiio:subimagename", "right");
    WritePlain(at("in_1.exr"), {spec, second});
    const auto channel = [&](int part, const std::string& name) {
        const PlainFile file = ReadPlain(at("in_1.exr"), part);
        std::vector<float> values;
        for (std::size_t i = 0; i < 12; ++i)
            values.push_back(file.pixels[i * static_cast<std::size_t>(file.spec.nchannels) +
                                         static_cast<std::size_t>(file.spec.channelindex(name))]);
        return values;
    };
    const auto out = [&](std::size_t index) {
        const PlainFile file = ReadPlain(at("out_1.exr"));
        std::vector<float> values;
        for (std::size_t i = 0; i < 12; ++i)
            values.push_back(file.pixels[i * static_cast<std::size_t>(file.spec.nchannels) + index]);
        return values;
    };
    EXPECT_EQ(lost(copy("in_#.exr", "out_#.exr")),
              "the parts right (--part chooses one), "
              "the channels Z, glow.R, glow.G, glow.B (--channels chooses others)");
    EXPECT_EQ(out(1), channel(0, "G"));
    m_Request.reading.part = "right";
    m_Request.reading.overscan = true; // The window of this part is wider.
    EXPECT_EQ(lost(copy("in_#.exr", "out_#.exr")), "");
    EXPECT_EQ(out(2), channel(1, "B"));
    m_Request.reading.overscan = false;
    m_Request.reading.part = "0";
    m_Request.reading.channels = "glow";
    EXPECT_EQ(lost(copy("in_#.exr", "out_#.exr")), "");
    EXPECT_EQ(out(0), channel(0, "glow.R"));
    EXPECT_EQ(out(2), channel(0, "glow.B"));
    m_Request.reading.channels = "Z";
    EXPECT_EQ(lost(copy("in_#.exr", "out_#.exr")), "");
    EXPECT_EQ(out(0), channel(0, "Z"));
    m_Request.reading.channels = "no";
    EXPECT_THAT(copy("in_#.exr", "out_#.exr"), testing::HasSubstr("--channels no: expected a layer"));
    m_Request.reading = {};
    m_Request.reading.part = "no";
    EXPECT_THAT(copy("in_#.exr", "out_#.exr"), testing::HasSubstr("has only the parts left, right"));
}

TEST_F(StudioPicturesTest, OptionsThatTheFormatDoesNotHaveAreRefused) {
    WritePlain(at("in_1.png"), {specOf(4, 3, 3, U8, "")});
    const struct {
        std::function<void(PictureWriting&)> ask;
        const char *output, *message;
    } rows[] = {
        {[](PictureWriting& w) { w.bits = SampleType::Half; }, "out_#.png", "--bits half: png files"},
        {[](PictureWriting& w) { w.bits = SampleType::Bits8; }, "out_#.exr", "expected one of half float"},
        {[](PictureWriting& w) { w.compression = "lzw"; }, "out_#.exr", "--compression lzw"},
        {[](PictureWriting& w) { w.quality = 9; }, "out_#.png", "--quality"}};
    for (const auto& row : rows) {
        m_Request.writing = {};
        row.ask(m_Request.writing);
        EXPECT_THAT(copy("in_#.png", row.output), testing::HasSubstr(row.message));
    }
}

} // namespace
