#include <OpenImageIO/imageio.h>
#include <algorithm>
#include <filesystem>

#include "toolkit/Errors.h"
#include "toolkit/PictureAttributes.h"
#include "toolkit/PictureConversion.h"
#include "toolkit/PictureFile.h"
#include "toolkit/PictureGeometry.h"
#include "toolkit/TextParsing.h"

namespace fxhost {

namespace {

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

std::string Joined(const std::vector<std::string>& names) {
    std::string text;
    for (const std::string& name : names)
        text += (text.empty() ? "" : ", ") + name;
    return text;
}

// Reads one file, step by step.
class PictureReader {
public:
    PictureReader(const std::string& path, const PictureReading& reading)
        : m_Path(path), m_Reading(reading) {}

    Picture read() {
        open();
        choosePart();
        checkSize();
        FilePixels pixels = chooseChannels(readPixels());
        pixels = TurnedUpright(chooseWindow(std::move(pixels)), orientation());
        const bool premultiplied = isPremultiplied(pixels.alpha >= 0);
        const unsigned depth = m_Reading.depth.value_or(pixels.depth);
        describe(pixels);
        // Premultiplied colours are divided at the higher of both depths.
        Picture picture = ToPicture(pixels, premultiplied ? std::max(pixels.depth, depth) : depth);
        if (premultiplied) {
            Unpremultiply(picture);
            picture = AtDepth(std::move(picture), depth);
        }
        m_Origin.file = std::make_shared<PictureOrigin::File>(std::move(m_File));
        picture.origin = std::make_shared<PictureOrigin>(std::move(m_Origin));
        return picture;
    }

private:
    [[noreturn]] void fail(const std::string& why) const {
        throw WrongUse(m_Path + ": cannot be read as a picture: " + why.substr(0, why.find('\n')));
    }

    const OIIO::ImageSpec& spec() const { return m_Input->spec(); }

    void open() {
        if (std::filesystem::is_directory(m_Path))
            fail("it is a folder");
        OIIO::ImageSpec config;
        config.attribute("oiio:UnassociatedAlpha", 1);
        m_Input = OIIO::ImageInput::open(m_Path, &config);
        if (!m_Input)
            fail(OIIO::geterror());
        m_File.format = m_Input->format_name();
    }

    static std::string PartName(const OIIO::ImageSpec& part, int index) {
        const std::string name =
            part.get_string_attribute("oiio:subimagename", part.get_string_attribute("name"));
        return name.empty() ? std::to_string(index) : name;
    }

    void choosePart() {
        std::vector<std::string> others;
        int chosen = m_Reading.part.empty() ? 0 : -1;
        const int count = std::max(1, spec().get_int_attribute("oiio:subimages", 1));
        for (int i = 0; i < count && m_Input->seek_subimage(i, 0); ++i) {
            const std::string name = PartName(spec(), i);
            if (chosen < 0 && (name == m_Reading.part || std::to_string(i) == m_Reading.part))
                chosen = i;
            if (i != chosen)
                others.push_back(name);
        }
        if (chosen < 0)
            throw WrongUse("--part " + m_Reading.part + ": " + m_Path + " has only the parts " +
                           Joined(others));
        m_Part = chosen;
        if (!m_Input->seek_subimage(m_Part, 0))
            fail(m_Input->geterror());
        if (others.empty())
            return;
        if (m_Reading.part.empty())
            m_Origin.lost.push_back("the parts " + Joined(others) + " (--part chooses one)");
    }

    void checkSize() const {
        const auto inRange = [](int extent) { return extent >= 1 && extent <= static_cast<int>(MaxExtent); };
        for (const auto& [width, height] :
             {std::pair(spec().width, spec().height), std::pair(spec().full_width, spec().full_height)})
            if (!inRange(width) || !inRange(height) || spec().depth > 1 || spec().nchannels < 1)
                fail(std::to_string(width) + "x" + std::to_string(height) + " pixels; at most " +
                     std::to_string(MaxExtent) + " either way are expected");
    }

    FilePixels readPixels() {
        FilePixels file;
        file.width = static_cast<unsigned>(spec().width);
        file.height = static_cast<unsigned>(spec().height);
        file.channels = static_cast<unsigned>(spec().nchannels);
        file.alpha = spec().alpha_channel;
        file.depth = FileDepth(spec().format);
        file.bytes.resize(std::size_t{file.width} * file.height * file.channels * file.depth / 8);
        if (!m_Input->read_image(m_Part, 0, 0, spec().nchannels, TypeOf(file.depth), file.bytes.data()))
            fail(m_Input->geterror());
        return file;
    }

    // Indices of the channels that exist, of these names.
    std::vector<int> indicesOf(const std::vector<std::string>& names) const {
        std::vector<int> indices;
        for (const std::string& name : names)
            if (const int index = spec().channelindex(Trimmed(name)); index >= 0)
                indices.push_back(index);
        return indices;
    }

    // The channels of a layer, "LAYER.x", in the order red, green, blue, alpha, or that of the file.
    std::vector<int> layerChannels(const std::string& layer) const {
        const std::string dot = layer + ".";
        std::vector<int> found = indicesOf({dot + "R", dot + "G", dot + "B", dot + "A"});
        if (!found.empty())
            return found;
        for (int i = 0; i < spec().nchannels && found.size() < 4; ++i)
            if (std::string(spec().channel_name(i)).starts_with(dot))
                found.push_back(i);
        return found;
    }

    std::vector<int> chosenChannels() const {
        const auto names = Split(m_Reading.channels, ',');
        std::vector<int> chosen = indicesOf(names);
        if (chosen.size() != names.size())
            chosen = names.size() == 1 ? layerChannels(names[0]) : std::vector<int>();
        if (chosen.empty() || chosen.size() > 4)
            throw WrongUse("--channels " + m_Reading.channels +
                           ": expected a layer or up to four channels of " + m_Path + ", which has " +
                           Joined(spec().channelnames));
        return chosen;
    }

    // The colours of the file: R, G and B, or else the first three channels, or a grey one.
    std::vector<int> defaultChannels() const {
        std::vector<int> chosen = indicesOf({"R", "G", "B"});
        if (chosen.size() != 3) {
            chosen.clear();
            for (int i = 0; i < spec().nchannels && chosen.size() < 3; ++i)
                if (i != spec().alpha_channel)
                    chosen.push_back(i);
            if (chosen.size() == 2)
                chosen.pop_back();
        }
        if (spec().alpha_channel >= 0)
            chosen.push_back(spec().alpha_channel);
        return chosen;
    }

    bool isAlpha(int channel) const {
        const std::string name = spec().channel_name(channel);
        return channel == spec().alpha_channel || name.ends_with(".A") || name.ends_with(".a");
    }

    FilePixels chooseChannels(FilePixels file) {
        const bool isDefault = m_Reading.channels.empty();
        const std::vector<int> chosen = isDefault ? defaultChannels() : chosenChannels();
        const bool hasAlpha = chosen.size() > 1 && (chosen.size() == 4 || isAlpha(chosen.back()));
        std::vector<std::string> others;
        for (int i = 0; i < spec().nchannels; ++i)
            if (std::find(chosen.begin(), chosen.end(), i) == chosen.end())
                others.push_back(spec().channel_name(i));
        if (isDefault && !others.empty())
            m_Origin.lost.push_back("the channels " + Joined(others) + " (--channels chooses others)");
        m_Origin.isOtherLayout = !isDefault;
        const int alpha = hasAlpha ? static_cast<int>(chosen.size()) - 1 : -1;
        bool isOrdered = file.channels == chosen.size() && file.alpha == alpha;
        for (std::size_t i = 0; i < chosen.size(); ++i)
            isOrdered &= chosen[i] == static_cast<int>(i);
        return isOrdered ? file : SelectedChannels(file, chosen, alpha);
    }

    // The display window, or with overscan the data window as it is.
    FilePixels chooseWindow(FilePixels pixels) {
        const OIIO::ImageSpec& s = spec();
        const int left = s.full_x - s.x, top = s.full_y - s.y;
        if (left == 0 && top == 0 && s.full_width == s.width && s.full_height == s.height)
            return pixels;
        m_Origin.isDataWindow = m_Reading.overscan;
        if (m_Reading.overscan)
            return pixels;
        if (left > 0 || top > 0 || left + s.full_width < s.width || top + s.full_height < s.height)
            m_Origin.lost.push_back("the overscan outside of the display window (--overscan keeps it)");
        return CutWindow(pixels, left, top, static_cast<unsigned>(s.full_width),
                         static_cast<unsigned>(s.full_height));
    }

    int orientation() const { return spec().get_int_attribute("Orientation", 1); }

    // OpenEXR defines its pixels as premultiplied. Pixels of TIFF are premultiplied unless their tag says
    // otherwise.
    bool isPremultiplied(bool hasAlpha) const {
        if (!hasAlpha || m_Reading.alpha != AlphaMode::Auto)
            return hasAlpha && m_Reading.alpha == AlphaMode::Premultiplied;
        return m_File.format == "openexr" ||
               (m_File.format == "tiff" && !spec().get_int_attribute("oiio:UnassociatedAlpha"));
    }

    void describe(const FilePixels& pixels) {
        m_File.spec = spec();
        m_Origin.hasAlpha = pixels.alpha >= 0;
        m_Origin.isGrey = pixels.channels == (m_Origin.hasAlpha ? 2 : 1);
        const float ratio = spec().get_float_attribute("PixelAspectRatio", 1);
        if (ExchangesAxes(orientation()) && ratio > 0)
            m_File.spec.attribute("PixelAspectRatio", 1 / ratio);
    }

    const std::string m_Path;
    const PictureReading m_Reading;
    std::unique_ptr<OIIO::ImageInput> m_Input;
    PictureOrigin m_Origin;
    PictureOrigin::File m_File;
    int m_Part = 0;
};

} // namespace

Picture ReadPicture(const std::string& path, const PictureReading& reading) {
    return PictureReader(path, reading).read();
}

Picture ReadPicture(const std::string& path, std::optional<unsigned> depth, AlphaMode alpha) {
    PictureReading reading;
    reading.depth = depth;
    reading.alpha = alpha;
    return ReadPicture(path, reading);
}

} // namespace fxhost
