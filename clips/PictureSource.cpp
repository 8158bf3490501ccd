#include "clips/PictureSource.h"

#include <filesystem>

#include "toolkit/Errors.h"
#include "toolkit/PictureFile.h"
#include "toolkit/PictureOrigin.h"

namespace fxhost {

namespace {

std::string SizeText(unsigned width, unsigned height) {
    return std::to_string(width) + "x" + std::to_string(height);
}

// EXR and DPX files may state it.
std::optional<FrameRate> RateOf(const PictureOrigin& origin) {
    try {
        const std::string text = FrameRateText(origin);
        return text.empty() ? std::nullopt : std::optional(FrameRate::Parse(text));
    } catch (const WrongUse&) { // It is not a rate.
        return std::nullopt;
    }
}

class PictureSource final : public FrameSource {
public:
    PictureSource(const NumberPattern& pattern, const PictureNumbers& numbers, const PictureReading& reading)
        : m_Pattern(pattern), m_Numbers(numbers), m_Reading(reading) {
        const Picture picture = readFile(numbers.model);
        m_Width = picture.width;
        m_Height = picture.height;
        m_Depth = picture.depth;
        m_Reading.depth = m_Depth;
        m_HasAlpha = picture.origin->hasAlpha;
        m_Rate = RateOf(*picture.origin);
    }

    std::optional<Picture> read(long frame) override {
        const auto file = fileNumber(frame);
        if (!file)
            return black();
        const long number = *file;
        Picture picture = readFile(number);
        if (picture.width != m_Width || picture.height != m_Height)
            throw WrongUse(m_Pattern.path(number) + ": " + SizeText(picture.width, picture.height) +
                           " pixels, but --input " + m_Pattern.text() + " started with " +
                           SizeText(m_Width, m_Height) + "; expected pictures of one size");
        return picture;
    }
    std::string file(long frame) const override {
        const auto number = fileNumber(frame);
        return number ? m_Pattern.path(*number) : "";
    }
    bool isParallel() const override { return true; }

private:
    std::optional<long> fileNumber(long frame) const {
        const auto found = m_Numbers.substitutes.find(frame);
        return found == m_Numbers.substitutes.end() ? frame : found->second;
    }

    Picture black() const {
        Picture picture(m_Width, m_Height, m_Depth);
        if (!m_HasAlpha)
            MakeOpaque(picture);
        return picture;
    }

    Picture readFile(long number) const {
        const std::string path = m_Pattern.path(number);
        if (!std::filesystem::exists(path))
            throw WrongUse(path + ": no such file; --input " + m_Pattern.text() + " needs it for frame " +
                           std::to_string(number));
        return ReadPicture(path, m_Reading);
    }

    const NumberPattern m_Pattern;
    const PictureNumbers m_Numbers;
    PictureReading m_Reading;
};

class StillSource final : public FrameSource {
public:
    StillSource(Picture picture, const std::string& file) : m_Picture(std::move(picture)), m_File(file) {
        m_Width = m_Picture.width;
        m_Height = m_Picture.height;
        m_Depth = m_Picture.depth;
        m_HasAlpha = !m_Picture.origin || m_Picture.origin->hasAlpha;
    }
    std::optional<Picture> read(long) override { return m_Picture; }
    std::string file(long) const override { return m_File; }
    bool isParallel() const override { return true; }

private:
    const Picture m_Picture;
    const std::string m_File;
};

} // namespace

std::unique_ptr<FrameSource> OpenPictures(const NumberPattern& pattern, const PictureNumbers& numbers,
                                          const PictureReading& reading) {
    return std::make_unique<PictureSource>(pattern, numbers, reading);
}

std::unique_ptr<FrameSource> RepeatPicture(Picture picture, const std::string& file) {
    return std::make_unique<StillSource>(std::move(picture), file);
}

} // namespace fxhost
