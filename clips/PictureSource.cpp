#include "clips/PictureSource.h"

#include <filesystem>

#include "clips/PictureHeader.h"
#include "toolkit/Errors.h"
#include "toolkit/PictureFile.h"

namespace fxhost {

namespace {

std::string SizeText(unsigned width, unsigned height) {
    return std::to_string(width) + "x" + std::to_string(height);
}

class PictureSource final : public FrameSource {
public:
    PictureSource(const NumberPattern& pattern, long first, std::optional<unsigned> depth, AlphaMode alpha)
        : m_Pattern(pattern), m_Alpha(alpha) {
        const Picture picture = readFile(first, depth);
        m_Width = picture.width;
        m_Height = picture.height;
        m_Depth = picture.depth;
        const auto header = ReadPictureHeader(pattern.path(first));
        m_HasAlpha = header && header->hasAlpha;
    }

    std::optional<Picture> read(long number) override {
        Picture picture = readFile(number, m_Depth);
        if (picture.width != m_Width || picture.height != m_Height)
            throw WrongUse(m_Pattern.path(number) + ": " + SizeText(picture.width, picture.height) +
                           " pixels, but --input " + m_Pattern.text() + " started with " +
                           SizeText(m_Width, m_Height) + "; expected pictures of one size");
        return picture;
    }
    std::string file(long number) const override { return m_Pattern.path(number); }
    bool isParallel() const override { return true; }

private:
    Picture readFile(long number, std::optional<unsigned> depth) const {
        const std::string path = m_Pattern.path(number);
        if (!std::filesystem::exists(path))
            throw WrongUse(path + ": no such file; --input " + m_Pattern.text() + " needs it for frame " +
                           std::to_string(number));
        return ReadPicture(path, depth, m_Alpha);
    }

    const NumberPattern m_Pattern;
    const AlphaMode m_Alpha;
};

class StillSource final : public FrameSource {
public:
    StillSource(Picture picture, const std::string& file) : m_Picture(std::move(picture)), m_File(file) {
        m_Width = m_Picture.width;
        m_Height = m_Picture.height;
        m_Depth = m_Picture.depth;
    }
    std::optional<Picture> read(long) override { return m_Picture; }
    std::string file(long) const override { return m_File; }
    bool isParallel() const override { return true; }

private:
    const Picture m_Picture;
    const std::string m_File;
};

} // namespace

std::unique_ptr<FrameSource> OpenPictures(const NumberPattern& pattern, long first,
                                          std::optional<unsigned> depth, AlphaMode alpha) {
    return std::make_unique<PictureSource>(pattern, first, depth, alpha);
}

std::unique_ptr<FrameSource> RepeatPicture(Picture picture, const std::string& file) {
    return std::make_unique<StillSource>(std::move(picture), file);
}

} // namespace fxhost
