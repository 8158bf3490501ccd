#include "toolkit/Alpha.h"

#include "tests/support/TestFiles.h"
#include "toolkit/PictureFile.h"

namespace {

using namespace fxhost;
using testing::ElementsAre;
using testing::FloatEq;

template <class Channel>
Picture OnePixel(const std::vector<Channel>& channels) { // alpha, red, green, blue
    Picture picture(1, 1, 8 * sizeof(Channel));
    std::copy(channels.begin(), channels.end(), reinterpret_cast<Channel*>(picture.bytes.data()));
    return picture;
}

template <class Channel>
std::vector<Channel> ChannelsOf(const Picture& picture) {
    const auto* first = reinterpret_cast<const Channel*>(picture.bytes.data());
    return {first, first + 4};
}

TEST(AlphaTest, IntegersAreMultipliedAndDividedWithRoundingAndClamping) {
    using Bytes = std::vector<std::uint8_t>;
    const struct {
        const char* name;
        Bytes pixel, multiplied, divided;
    } rows[] = {{"half", {128, 200, 100, 50}, {128, 100, 50, 25}, {128, 255, 199, 100}},
                {"opaque", {255, 200, 100, 50}, {255, 200, 100, 50}, {255, 200, 100, 50}},
                {"clear", {0, 200, 100, 50}, {0, 200, 100, 50}, {0, 200, 100, 50}},
                {"faint", {1, 200, 100, 1}, {1, 1, 0, 0}, {1, 255, 255, 255}}};
    for (const auto& row : rows) {
        EXPECT_EQ(Premultiplied(OnePixel(row.pixel)).bytes, row.multiplied) << row.name;
        Picture divided = OnePixel(row.pixel);
        Unpremultiply(divided);
        EXPECT_EQ(divided.bytes, row.divided) << row.name;
    }
    using Words = std::vector<std::uint16_t>;
    const Picture deep = Premultiplied(OnePixel(Words{8192, 32768, 16384, 2}));
    EXPECT_EQ(ChannelsOf<std::uint16_t>(deep), (Words{8192, 8192, 4096, 1}));
}

class AlphaFileTest : public FolderTest {};

// The picture has half alpha and the straight colours 0.5, 0.25, 2.
TEST_F(AlphaFileTest, FilesStoreAndDeclareTheirAssociation) {
    constexpr AlphaMode automatic = AlphaMode::Auto, straight = AlphaMode::Straight,
                        premultiplied = AlphaMode::Premultiplied;
    const struct {
        const char* file;
        AlphaMode write, read;
        float red, green, blue;
    } rows[] = {
        {"auto.exr", automatic, straight, 0.25f, 0.125f, 1}, // what the file contains
        {"auto.exr", automatic, automatic, 0.5f, 0.25f, 2},
        {"straight.exr", straight, straight, 0.5f, 0.25f, 2},
        {"straight.exr", straight, automatic, 1, 0.5f, 4},
        {"auto.tif", automatic, straight, 0.5f, 0.25f, 2},
        {"auto.tif", automatic, automatic, 0.5f, 0.25f, 2},
        {"associated.tif", premultiplied, straight, 0.25f, 0.125f, 1},
        {"associated.tif", premultiplied, automatic, 0.5f, 0.25f, 2}, // by its tag
    };
    for (const auto& row : rows) {
        WritePicture(at(row.file), OnePixel<float>({0.5f, 0.5f, 0.25f, 2}), row.write);
        const Picture picture = ReadPicture(at(row.file), std::nullopt, row.read);
        EXPECT_THAT(ChannelsOf<float>(picture),
                    ElementsAre(FloatEq(0.5f), FloatEq(row.red), FloatEq(row.green), FloatEq(row.blue)))
            << row.file << " read as " << static_cast<int>(row.read);
    }
}

TEST_F(AlphaFileTest, PngIsStraightUnlessAskedOtherwise) {
    const std::vector<std::uint8_t> pixel = {128, 200, 100, 50};
    WritePicture(at("a.png"), OnePixel(pixel));
    EXPECT_EQ(ReadPicture(at("a.png"), std::nullopt).bytes, pixel);
    WritePicture(at("b.png"), OnePixel(pixel), AlphaMode::Premultiplied);
    EXPECT_THAT(ReadPicture(at("b.png"), std::nullopt).bytes, ElementsAre(128, 100, 50, 25));
    EXPECT_THAT(ReadPicture(at("b.png"), std::nullopt, AlphaMode::Premultiplied).bytes,
                ElementsAre(128, 199, 100, 50));
}

} // namespace
