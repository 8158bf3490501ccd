#include "toolkit/PictureFile.h"

#include <OpenImageIO/filesystem.h>
#include <OpenImageIO/imageio.h>
#include <algorithm>
#include <filesystem>
#include <memory>

#include "toolkit/AtomicFile.h"
#include "toolkit/Errors.h"
#include "toolkit/PictureAttributes.h"
#include "toolkit/PictureConversion.h"
#include "toolkit/PictureFormats.h"

namespace fxhost {

namespace {

namespace fs = std::filesystem;

std::string Reason(const std::string& text) {
    return text.substr(0, text.find('\n'));
}

// The TIFF library reads the file while it adds these, which files in memory do not support.
bool IsExif(const OIIO::ParamValue& attribute) {
    const std::string name = attribute.name().string();
    return name.starts_with("Exif:") || name.starts_with("GPS:") || name == "FNumber" ||
           name == "ExposureTime";
}

// Writes one file, step by step.
class PictureWriter {
public:
    PictureWriter(const std::string& name, const Picture& picture, const PictureWriting& writing)
        : m_Name(name), m_Picture(picture), m_Writing(writing), m_Origin(picture.origin.get()),
          m_Output(OIIO::ImageOutput::create(name)) {
        if (!m_Output)
            fail(OIIO::geterror());
        m_Format = m_Output->format_name();
        m_Type = StoredType(m_Format, picture.depth, writing.bits,
                            m_Origin && m_Origin->file->spec.format == OIIO::TypeDesc::HALF);
    }

    std::vector<std::string> write() {
        const FilePixels pixels = filePixels();
        const OIIO::ImageSpec spec = specOf(pixels);
        // Some format writers do not report a full disk. Where the format allows it, the file is encoded in
        // memory and written here; otherwise the finished file is read back.
        std::vector<unsigned char> bytes;
        OIIO::Filesystem::IOVecOutput memory(bytes);
        const bool hasExif = std::any_of(spec.extra_attribs.begin(), spec.extra_attribs.end(), IsExif);
        const bool inMemory = !(m_Format == "tiff" && hasExif) && m_Output->supports("ioproxy") &&
                              m_Output->set_ioproxy(&memory);
        const OIIO::TypeDesc type = pixels.depth == 8    ? OIIO::TypeDesc::UINT8
                                    : pixels.depth == 16 ? OIIO::TypeDesc::UINT16
                                                         : OIIO::TypeDesc::FLOAT;
        if (!m_Output->open(m_Name, spec) || !m_Output->write_image(type, pixels.bytes.data()) ||
            !m_Output->close())
            fail(m_Output->geterror());
        if (inMemory)
            WriteFile(m_Name, std::as_bytes(std::span(bytes)));
        else
            ReadPicture(m_Name, std::nullopt);
        return m_Writing.reportsLoss ? loss() : std::vector<std::string>();
    }

private:
    [[noreturn]] static void fail(const std::string& why) { throw EffectFailure(Reason(why)); }

    bool isExr() const { return m_Format == "openexr"; }

    bool isPremultiplied() const {
        return m_Writing.alpha == AlphaMode::Premultiplied || (m_Writing.alpha == AlphaMode::Auto && isExr());
    }

    // A picture from a file without alpha gets none unless the effect made it transparent.
    bool hasAlpha() const {
        return m_Output->supports("alpha") && !(m_Origin && !m_Origin->hasAlpha && IsOpaque(m_Picture));
    }

    FilePixels filePixels() const {
        const bool withAlpha = hasAlpha();
        const bool isGrey =
            m_Origin && m_Origin->isGrey && HoldsGrey(m_Format, withAlpha) && IsGrey(m_Picture);
        const unsigned channels = (isGrey ? 1 : 3) + (withAlpha ? 1 : 0);
        const unsigned depth = m_Type == SampleType::Bits8                                 ? 8
                               : m_Type == SampleType::Half || m_Type == SampleType::Float ? 32
                                                                                           : 16;
        if (!withAlpha || !isPremultiplied())
            return ToFilePixels(m_Picture, channels, depth);
        // Premultiplied OpenEXR is multiplied as float, because it stores half or float.
        Picture multiplied = AtDepth(m_Picture, isExr() ? 32 : m_Picture.depth);
        Premultiply(multiplied);
        return ToFilePixels(multiplied, channels, depth);
    }

    OIIO::ImageSpec specOf(const FilePixels& pixels) const {
        const OIIO::TypeDesc type = m_Type == SampleType::Bits8   ? OIIO::TypeDesc::UINT8
                                    : m_Type == SampleType::Half  ? OIIO::TypeDesc::HALF
                                    : m_Type == SampleType::Float ? OIIO::TypeDesc::FLOAT
                                                                  : OIIO::TypeDesc::UINT16;
        OIIO::ImageSpec spec(static_cast<int>(pixels.width), static_cast<int>(pixels.height),
                             static_cast<int>(pixels.channels), type);
        if (pixels.channels < 3) {
            spec.channelnames = {"Y", "A"};
            spec.channelnames.resize(pixels.channels);
        }
        spec.alpha_channel = pixels.alpha;
        if (m_Origin)
            addOrigin(spec);
        // Without this attribute, TIFF is tagged as premultiplied, and other formats would divide by alpha.
        if (!isPremultiplied() || m_Format != "tiff")
            spec.attribute("oiio:UnassociatedAlpha", 1);
        if (m_Type == SampleType::Bits10)
            spec.attribute("oiio:BitsPerSample", 10);
        if (m_Format == "jpeg")
            spec.attribute("jpeg:subsampling", "4:4:4");
        if (!m_Writing.compression.empty())
            spec.attribute("compression", m_Writing.compression);
        if (m_Writing.quality)
            spec.attribute("CompressionQuality", *m_Writing.quality);
        return spec;
    }

    void addOrigin(OIIO::ImageSpec& spec) const {
        const OIIO::ImageSpec& file = m_Origin->file->spec;
        CopyAttributes(*m_Origin, spec);
        if ((spec.nchannels < 3) != m_Origin->isGrey) // A profile is for one kind of colours.
            spec.erase_attribute("ICCProfile");
        if (m_Format == "tiff" &&
            !spec.format.is_floating_point()) // It is the default, and stored as Exif data.
            spec.erase_attribute("oiio:ColorSpace");
        const std::string compression = file.get_string_attribute("compression");
        if (m_Format == m_Origin->file->format && IsLossless(m_Format, compression))
            spec.attribute("compression", compression);
        if (!isExr())
            return;
        const auto hasSize = [&](int width, int height) {
            return spec.width == width && spec.height == height;
        };
        if (m_Origin->isDataWindow && hasSize(file.width, file.height)) {
            spec.x = file.x;
            spec.y = file.y;
            spec.full_x = file.full_x;
            spec.full_y = file.full_y;
            spec.full_width = file.full_width;
            spec.full_height = file.full_height;
        } else if (!m_Origin->isDataWindow && hasSize(file.full_width, file.full_height)) {
            spec.x = spec.full_x = file.full_x;
            spec.y = spec.full_y = file.full_y;
        }
    }

    // What the file does not keep, found by reading its header.
    std::vector<std::string> loss() const {
        std::vector<std::string> lost = m_Origin ? m_Origin->lost : std::vector<std::string>();
        const auto input = OIIO::ImageInput::open(m_Name);
        if (!input)
            fail(OIIO::geterror());
        const OIIO::ImageSpec& written = input->spec();
        if (m_Origin)
            for (const std::string& name : LostAttributes(*m_Origin, written))
                lost.push_back(name);
        if (m_Origin && m_Origin->isDataWindow &&
            (written.x == written.full_x && written.width == written.full_width))
            lost.push_back("the display window");
        if (!m_Output->supports("alpha") && !IsOpaque(m_Picture))
            lost.push_back("alpha");
        if (const unsigned bits = BitsOf(m_Type); m_Writing.bits == SampleType::Auto && bits < neededBits())
            lost.push_back((neededBits() == 32 ? "float values, which are clipped to 0..1 and rounded to "
                                               : "16 bits per channel, which are rounded to ") +
                           std::to_string(bits) + (neededBits() == 32 ? " bits" : ""));
        return lost;
    }

    // The bits per channel of the input, where the picture still has them.
    unsigned neededBits() const {
        if (m_Origin && m_Origin->file->spec.format == OIIO::TypeDesc::HALF && m_Picture.depth == 32)
            return m_Type == SampleType::Half ? 16 : 32;
        const unsigned ofFile = m_Origin ? static_cast<unsigned>(m_Origin->file->spec.format.size()) * 8 : 32;
        return std::min(m_Picture.depth, ofFile);
    }

    const std::string m_Name;
    const Picture& m_Picture;
    const PictureWriting m_Writing;
    const PictureOrigin* const m_Origin;
    const std::unique_ptr<OIIO::ImageOutput> m_Output;
    std::string m_Format;
    SampleType m_Type = SampleType::Auto;
};

// Returns the size of the file in bytes.
std::uint64_t WriteOrTry(const std::string& path, const Picture& picture, const PictureWriting& writing,
                         bool isTrial, std::vector<std::string>& lost) {
    try {
        const AtomicFile file(path);
        lost = PictureWriter(file.unfinished().string(), picture, writing).write();
        const std::uint64_t bytes = fs::file_size(file.unfinished());
        if (!isTrial)
            file.commit();
        return bytes;
    } catch (const std::exception& error) {
        throw EffectFailure(path, std::string("cannot be written: ") + error.what());
    }
}

} // namespace

std::vector<std::string> WritePicture(const std::string& path, const Picture& picture,
                                      const PictureWriting& writing) {
    std::vector<std::string> lost;
    WriteOrTry(path, picture, writing, false, lost);
    return lost;
}

void WritePicture(const std::string& path, const Picture& picture, AlphaMode alpha) {
    PictureWriting writing;
    writing.alpha = alpha;
    WritePicture(path, picture, writing);
}

std::uint64_t TryPicture(const std::string& path, const Picture& picture, const PictureWriting& writing) {
    std::vector<std::string> lost;
    return WriteOrTry(path, picture, writing, true, lost);
}

void RequireWritable(const std::string& path, const PictureWriting& writing) {
    const fs::path target(path);
    const auto output = OIIO::ImageOutput::create(path);
    if (!output) {
        OIIO::geterror();
        throw WrongUse(path +
                       ": no picture format has this ending; .png, .tif, .exr and .jpg are some that do");
    }
    RequireOptions(output->format_name(), writing);
    const fs::path folder = target.has_parent_path() ? target.parent_path() : fs::path(".");
    if (!fs::is_directory(folder))
        throw WrongUse(path + ": there is no folder " + folder.string());
    if (fs::is_directory(target))
        throw WrongUse(path + ": is a folder; a picture file was expected");
}

} // namespace fxhost
