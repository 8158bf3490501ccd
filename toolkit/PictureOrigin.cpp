#include "toolkit/PictureAttributes.h"

#include <algorithm>
#include <iterator>

namespace fxhost {

namespace {

constexpr const char* s_ColourSpace = "oiio:ColorSpace";

// Attributes that describe the encoding of a file, or that are always there.
constexpr const char* s_OfEncoding[] = {"compression",
                                        "CompressionQuality",
                                        "Orientation",
                                        "planarconfig",
                                        "name",
                                        "version",
                                        "type",
                                        "lineOrder",
                                        "Software",
                                        "textureformat",
                                        "wrapmodes",
                                        "fovcot",
                                        "thumbnail_width",
                                        "thumbnail_height",
                                        "thumbnail_nchannels",
                                        "thumbnail_image",
                                        "Exif:ColorSpace",
                                        "Exif:ExifVersion",
                                        "Exif:FlashPixVersion",
                                        "Exif:PixelXDimension",
                                        "Exif:PixelYDimension"};

// Attributes that are copied where possible, but whose loss changes nothing.
constexpr const char* s_Harmless[] = {"XResolution", "YResolution", "ResolutionUnit", "screenWindowWidth",
                                      "screenWindowCenter"};

template <std::size_t N>
bool IsIn(const char* const (&list)[N], const std::string& name) {
    return std::find(std::begin(list), std::end(list), name) != std::end(list);
}

bool Describes(const PictureOrigin& origin, const OIIO::ParamValue& attribute) {
    const std::string name = attribute.name().string();
    if (name == s_ColourSpace)
        return true;
    return !name.starts_with("oiio:") && !name.starts_with(origin.file->format + ":") &&
           !name.starts_with("ICCProfile:") && !IsIn(s_OfEncoding, name);
}

// A group such as "Exif:FNumber" counts as one name.
std::string NameForPeople(const OIIO::ParamValue& attribute) {
    const std::string name = attribute.name().string();
    if (name == s_ColourSpace)
        return "colour space " + attribute.get_string();
    return name.starts_with("smpte:") ? name.substr(6) : name.substr(0, name.find(':'));
}

// Colours of integers are taken for sRGB everywhere. A ratio of 1 is the default.
bool IsDefault(const OIIO::ParamValue& attribute, const OIIO::ImageSpec& written) {
    const std::string name = attribute.name().string();
    if (name == s_ColourSpace)
        return attribute.get_string() == "sRGB" && !written.format.is_floating_point();
    return name == "PixelAspectRatio" && attribute.get_float() == 1;
}

bool IsKept(const OIIO::ParamValue& attribute, const OIIO::ImageSpec& written) {
    const auto* const found = written.find_attribute(attribute.name().string());
    if (attribute.name() != s_ColourSpace)
        return found != nullptr;
    return found && found->get_string() == attribute.get_string();
}

template <class Condition>
std::vector<std::string> NamesIf(const PictureOrigin& origin, const Condition& condition) {
    std::vector<std::string> names;
    for (const OIIO::ParamValue& attribute : origin.file->spec.extra_attribs) {
        if (!Describes(origin, attribute) || IsIn(s_Harmless, attribute.name().string()) ||
            !condition(attribute))
            continue;
        const std::string name = NameForPeople(attribute);
        if (std::find(names.begin(), names.end(), name) == names.end())
            names.push_back(name);
    }
    return names;
}

} // namespace

void CopyAttributes(const PictureOrigin& origin, OIIO::ImageSpec& spec) {
    for (const OIIO::ParamValue& attribute : origin.file->spec.extra_attribs)
        if (Describes(origin, attribute))
            spec.extra_attribs.add_or_replace(attribute);
}

std::vector<std::string> LostAttributes(const PictureOrigin& origin, const OIIO::ImageSpec& written) {
    return NamesIf(origin, [&](const OIIO::ParamValue& attribute) {
        return !IsDefault(attribute, written) && !IsKept(attribute, written);
    });
}

std::vector<std::string> AttributeNames(const PictureOrigin& origin) {
    OIIO::ImageSpec integers;
    integers.format = OIIO::TypeDesc::UINT8;
    return NamesIf(origin,
                   [&](const OIIO::ParamValue& attribute) { return !IsDefault(attribute, integers); });
}

std::string FrameRateText(const PictureOrigin& origin) {
    const auto* const found = origin.file->spec.find_attribute("FramesPerSecond");
    if (!found)
        return "";
    if (found->type() != OIIO::TypeRational)
        return found->get_string();
    const auto* const parts = static_cast<const int*>(found->data());
    return std::to_string(parts[0]) + "/" + std::to_string(parts[1]);
}

} // namespace fxhost
