#include "standalone/images/PictureFile.h"

#include <cstring>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "standalone/Errors.h"

namespace {

using namespace fxhost;
using testing::AllOf;
using testing::HasSubstr;
using testing::Property;
using testing::Throws;
namespace fs = std::filesystem;

class PictureFileTest : public testing::Test {
protected:
    PictureFileTest() {
        fs::remove_all(m_Folder);
        fs::create_directories(m_Folder);
    }
    ~PictureFileTest() override { fs::remove_all(m_Folder); }
    std::string At(const std::string& name) const { return (m_Folder / name).string(); }
    std::size_t FileCount() const {
        return static_cast<std::size_t>(
            std::distance(fs::directory_iterator(m_Folder), fs::directory_iterator()));
    }

private:
    const fs::path m_Folder = fs::path(testing::TempDir()) / "fxhost_pictures";
};

// Colours under every alpha, zero included, at an odd size.
template <class T>
Picture Ramp(unsigned width, unsigned height, T full) {
    Picture picture(width, height, sizeof(T) * 8);
    auto* values = reinterpret_cast<T*>(picture.bytes.data());
    for (unsigned i = 0; i < width * height * 4; ++i)
        values[i] = static_cast<T>(full * static_cast<T>(i % 14) / static_cast<T>(13));
    return picture;
}

template <class Exception>
auto Text(const std::string& part) {
    return Throws<Exception>(Property(&std::exception::what, HasSubstr(part)));
}

TEST_F(PictureFileTest, StraightAlphaAndDepthSurviveInEveryFormatThatHasThem) {
    const Picture byte = Ramp<std::uint8_t>(13, 7, 13), word = Ramp<std::uint16_t>(5, 3, 26),
                  real = Ramp<float>(3, 5, 1.5f);
    const struct {
        const char* file;
        const Picture& picture;
    } rows[] = {{"a.png", byte}, {"b.tif", byte}, {"c.png", word},
                {"d.tif", word}, {"e.tif", real}, {"f.exr", real}};
    for (const auto& row : rows) {
        WritePicture(At(row.file), row.picture);
        const Picture back = ReadPicture(At(row.file), std::nullopt);
        EXPECT_EQ(back.depth, row.picture.depth) << row.file;
        EXPECT_EQ(back.width, row.picture.width) << row.file;
        EXPECT_EQ(back.height, row.picture.height) << row.file;
        EXPECT_EQ(back.bytes, row.picture.bytes) << row.file;
    }
    EXPECT_EQ(FileCount(), std::size(rows)) << "temporary files are left";
}

// Written by hand, so that reading is not judged by our own writing.
TEST_F(PictureFileTest, RowsComeTopFirst) {
    std::ofstream(At("two.ppm"), std::ios::binary) << "P6\n1 2\n255\n"
                                                   << "\xff\x10\x20" << std::string("\x01\x02\x03");
    EXPECT_EQ(ReadPicture(At("two.ppm"), std::nullopt).bytes,
              (std::vector<std::uint8_t>{255, 255, 16, 32, 255, 1, 2, 3}));
}

TEST_F(PictureFileTest, FailuresNameTheFileAndLeaveNothingBehind) {
    const std::string text = At("text.png");
    std::ofstream(text) << "no picture";
    EXPECT_THAT([&] { ReadPicture(text, std::nullopt); }, Text<WrongUse>(text));
    EXPECT_THAT([&] { ReadPicture(At("none.png"), std::nullopt); }, Text<WrongUse>("none.png"));
    EXPECT_THAT([&] { ReadPicture(testing::TempDir(), std::nullopt); }, Text<WrongUse>("folder"));
    EXPECT_THAT([&] { RequireWritable(At("out.what")); }, Text<WrongUse>(".png"));
    EXPECT_THAT([&] { RequireWritable(At("missing/out.png")); }, Text<WrongUse>("no folder"));
    fs::create_directory(At("taken.png"));
    EXPECT_THAT([&] { WritePicture(At("taken.png"), Picture(2, 2, 8)); }, Text<EffectFailure>("taken.png"));
    EXPECT_EQ(FileCount(), 2u);
}

TEST_F(PictureFileTest, APictureCutShortIsRefused) {
    WritePicture(At("whole.tif"), Ramp<std::uint8_t>(40, 40, 13));
    fs::resize_file(At("whole.tif"), fs::file_size(At("whole.tif")) / 2);
    EXPECT_THAT([&] { ReadPicture(At("whole.tif"), std::nullopt); }, Text<WrongUse>("whole.tif"));
}

} // namespace
