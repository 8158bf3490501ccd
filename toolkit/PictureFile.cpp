#include "toolkit/PictureFile.h"

#include <OpenImageIO/filesystem.h>
#include <OpenImageIO/imageio.h>
#include <algorithm>
#include <cctype>
#include <filesystem>
#include <memory>

#include "toolkit/AtomicFile.h"
#include "toolkit/Errors.h"
#include "toolkit/PictureConversion.h"

namespace fxhost {

namespace {

namespace fs = std::filesystem;

unsigned FileDepth(OIIO::TypeDesc type) {
    switch (type.basetype) {
    case OIIO::TypeDesc::UINT8:
    case OIIO::TypeDesc::INT8:
        return 8;
    case OIIO::TypeDesc::UINT16:
    case OIIO::TypeDesc::INT16:
    case OIIO::TypeDesc::UINT32:
    case OIIO::TypeDesc::INT32:
        return 16;
    default:
        return 32;
    }
}

OIIO::TypeDesc TypeOf(unsigned depth) {
    return depth == 8 ? OIIO::TypeDesc::UINT8 : depth == 16 ? OIIO::TypeDesc::UINT16 : OIIO::TypeDesc::FLOAT;
}

std::string Reason(const std::string& text) {
    return text.substr(0, text.find('\n'));
}

Picture AtDepth(const Picture& picture, unsigned depth) {
    return depth == picture.depth ? picture : ToPicture(ToFilePixels(picture, true), depth);
}

// The pixels of a file with premultiplied alpha. They are divided at the higher of both depths.
Picture ReadPremultiplied(const FilePixels& file, unsigned depth) {
    Picture picture = ToPicture(file, std::max(file.depth, depth));
    Unpremultiply(picture);
    return AtDepth(picture, depth);
}

// OpenEXR defines its pixels as premultiplied. Pixels of TIFF are premultiplied unless their tag says
// otherwise.
bool IsPremultiplied(const OIIO::ImageInput& input, AlphaMode mode) {
    const OIIO::ImageSpec& spec = input.spec();
    if (spec.alpha_channel < 0 || mode != AlphaMode::Auto)
        return spec.alpha_channel >= 0 && mode == AlphaMode::Premultiplied;
    const std::string format = input.format_name();
    return format == "openexr" || (format == "tiff" && !spec.get_int_attribute("oiio:UnassociatedAlpha"));
}

bool WritesPremultiplied(const OIIO::ImageOutput& output, AlphaMode mode) {
    const bool isDefault = std::string(output.format_name()) == "openexr";
    return mode == AlphaMode::Premultiplied || (mode == AlphaMode::Auto && isDefault);
}

// Pixels for a file. Premultiplied OpenEXR is multiplied as float, because it stores half or float.
FilePixels PixelsFor(const OIIO::ImageOutput& output, const Picture& picture, bool premultiplied) {
    const bool withAlpha = output.supports("alpha");
    if (!premultiplied || !withAlpha)
        return ToFilePixels(picture, withAlpha);
    const bool isFloat = std::string(output.format_name()) == "openexr";
    Picture multiplied = AtDepth(picture, isFloat ? 32 : picture.depth);
    Premultiply(multiplied);
    return ToFilePixels(multiplied, true);
}

void Write(const std::string& name, const Picture& picture, AlphaMode mode) {
    const auto fail = [](const std::string& why) { throw EffectFailure(Reason(why)); };
    const auto output = OIIO::ImageOutput::create(name);
    if (!output)
        fail(OIIO::geterror());
    const bool premultiplied = WritesPremultiplied(*output, mode);
    const FilePixels file = PixelsFor(*output, picture, premultiplied);
    const OIIO::TypeDesc type = TypeOf(file.depth);
    OIIO::ImageSpec spec(static_cast<int>(file.width), static_cast<int>(file.height),
                         static_cast<int>(file.channels), TypeOf(picture.depth));
    // Without this attribute, TIFF is tagged as premultiplied, and other formats would divide by alpha.
    if (!premultiplied || std::string(output->format_name()) != "tiff")
        spec.attribute("oiio:UnassociatedAlpha", 1);
    // Some format writers do not report a full disk. Where the format allows it, the file is encoded in
    // memory and written here; otherwise the finished file is read back.
    std::vector<unsigned char> bytes;
    OIIO::Filesystem::IOVecOutput memory(bytes);
    const bool inMemory = output->supports("ioproxy") && output->set_ioproxy(&memory);
    if (!output->open(name, spec) || !output->write_image(type, file.bytes.data()) || !output->close())
        fail(output->geterror());
    if (inMemory)
        WriteFile(name, std::as_bytes(std::span(bytes)));
    else
        ReadPicture(name, std::nullopt);
}

} // namespace

Picture ReadPicture(const std::string& path, std::optional<unsigned> depth, AlphaMode mode) {
    const auto fail = [&](const std::string& why) {
        throw WrongUse(path + ": cannot be read as a picture: " + Reason(why));
    };
    if (fs::is_directory(path))
        fail("it is a folder");
    OIIO::ImageSpec config;
    config.attribute("oiio:UnassociatedAlpha", 1);
    const auto input = OIIO::ImageInput::open(path, &config);
    if (!input)
        fail(OIIO::geterror());
    const OIIO::ImageSpec& spec = input->spec();
    const auto inRange = [](int extent) { return extent >= 1 && extent <= static_cast<int>(MaxExtent); };
    if (!inRange(spec.width) || !inRange(spec.height) || spec.depth > 1 || spec.nchannels < 1)
        fail(std::to_string(spec.width) + "x" + std::to_string(spec.height) + " pixels; at most " +
             std::to_string(MaxExtent) + " either way are expected");

    FilePixels file;
    file.width = static_cast<unsigned>(spec.width);
    file.height = static_cast<unsigned>(spec.height);
    file.channels = static_cast<unsigned>(spec.nchannels);
    file.alpha = spec.alpha_channel;
    file.depth = FileDepth(spec.format);
    file.bytes.resize(std::size_t{file.width} * file.height * file.channels * file.depth / 8);
    if (!input->read_image(0, 0, 0, spec.nchannels, TypeOf(file.depth), file.bytes.data()))
        fail(input->geterror());
    if (IsPremultiplied(*input, mode))
        return ReadPremultiplied(file, depth.value_or(file.depth));
    return ToPicture(file, depth.value_or(file.depth));
}

namespace {

// Returns the size of the file in bytes.
std::uint64_t WriteOrTry(const std::string& path, const Picture& picture, AlphaMode mode, bool isTrial) {
    try {
        const AtomicFile file(path);
        Write(file.unfinished().string(), picture, mode);
        const std::uint64_t bytes = fs::file_size(file.unfinished());
        if (!isTrial)
            file.commit();
        return bytes;
    } catch (const std::exception& error) {
        throw EffectFailure(path, std::string("cannot be written: ") + error.what());
    }
}

} // namespace

void WritePicture(const std::string& path, const Picture& picture, AlphaMode mode) {
    WriteOrTry(path, picture, mode, false);
}

std::uint64_t TryPicture(const std::string& path, const Picture& picture, AlphaMode mode) {
    return WriteOrTry(path, picture, mode, true);
}

unsigned LargestDepth(const std::string& path) {
    struct Format {
        const char* extension;
        unsigned depth;
    };
    constexpr Format formats[] = {{".png", 16}, {".jpg", 8}, {".jpeg", 8}, {".bmp", 8},
                                  {".tga", 8},  {".gif", 8}, {".ppm", 16}};
    std::string extension = fs::path(path).extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char c) { return std::tolower(c); });
    for (const Format& format : formats)
        if (extension == format.extension)
            return format.depth;
    return 32;
}

void RequireWritable(const std::string& path) {
    const fs::path target(path);
    if (!OIIO::ImageOutput::create(path)) {
        OIIO::geterror();
        throw WrongUse(path +
                       ": no picture format has this ending; .png, .tif, .exr and .jpg are some that do");
    }
    const fs::path folder = target.has_parent_path() ? target.parent_path() : fs::path(".");
    if (!fs::is_directory(folder))
        throw WrongUse(path + ": there is no folder " + folder.string());
    if (fs::is_directory(target))
        throw WrongUse(path + ": is a folder; a picture file was expected");
}

} // namespace fxhost
