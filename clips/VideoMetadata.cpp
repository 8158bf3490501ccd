#include "clips/VideoMetadataJson.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <iterator>
#include <nlohmann/json.hpp>

namespace fxhost {

namespace {

using Json = nlohmann::json;

// Tags that containers write for themselves.
constexpr const char* s_OfContainer[] = {"major_brand", "minor_version", "compatible_brands",     "encoder",
                                         "timecode",    "duration",      "operational_pattern_ul"};

std::string LowerCase(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
    return text;
}

// Tags by their names in lower case, because containers differ in that.
std::map<std::string, std::string> TagsOf(const Json& object) {
    std::map<std::string, std::string> tags;
    const Json all = object.value("tags", Json::object());
    for (const auto& [name, value] : all.items())
        if (value.is_string())
            tags[LowerCase(name)] = value.get<std::string>();
    return tags;
}

std::string Known(const Json& object, const char* name) {
    const std::string text = object.value(name, "");
    return text == "unknown" || text == "reserved" ? "" : text;
}

// "34000/50000" as a number of units of 1/scale.
long Scaled(const Json& object, const char* name, long scale) {
    long over = 0, under = 1;
    if (std::sscanf(object.value(name, "").c_str(), "%ld/%ld", &over, &under) < 1 || under == 0)
        return 0;
    return std::lround(static_cast<double>(over) * static_cast<double>(scale) / static_cast<double>(under));
}

std::string DisplayText(const Json& side) {
    constexpr long chroma = 50000, luminance = 10000;
    const auto pair = [&](const char* name, const char* x, const char* y, long scale) {
        return std::string(name) + "(" + std::to_string(Scaled(side, x, scale)) + "," +
               std::to_string(Scaled(side, y, scale)) + ")";
    };
    return pair("G", "green_x", "green_y", chroma) + pair("B", "blue_x", "blue_y", chroma) +
           pair("R", "red_x", "red_y", chroma) + pair("WP", "white_point_x", "white_point_y", chroma) +
           pair("L", "max_luminance", "min_luminance", luminance);
}

} // namespace

VideoMetadata MetadataOf(const Json& probe, const Json& video) {
    VideoMetadata data;
    const Json format = probe.value("format", Json::object());
    data.tags = TagsOf(format);
    const auto ofVideo = TagsOf(video);
    for (const auto& tags : {ofVideo, data.tags})
        if (const auto found = tags.find("timecode"); found != tags.end() && data.timecode.empty())
            data.timecode = found->second;
    for (const char* name : s_OfContainer)
        data.tags.erase(name);
    data.chapters = probe.value("chapters", Json::array()).size();
    const Json streams = probe.value("streams", Json::array());
    for (const Json& stream : streams) {
        const std::string type = stream.value("codec_type", "");
        const auto tags = TagsOf(stream);
        if (type == "subtitle")
            data.subtitles.push_back(stream.value("codec_name", ""));
        else if (type == "data" && tags.contains("timecode"))
            data.timecode = data.timecode.empty() ? tags.at("timecode") : data.timecode;
        else if (type == "attachment" ||
                 (type == "video" && stream.value("index", 0) != video.value("index", 0)))
            data.otherStreams.push_back(type == "video" ? "another video stream" : type);
    }
    data.primaries = Known(video, "color_primaries");
    data.transfer = Known(video, "color_transfer");
    const std::string aspect = video.value("sample_aspect_ratio", "1:1");
    data.pixelAspect = aspect == "1:1" || aspect == "0:1" ? "" : aspect;
    const std::string order = Known(video, "field_order");
    data.fieldOrder = order == "progressive" ? "" : order;
    data.isFullRange = Known(video, "color_range") == "pc";
    return data;
}

void AddHdr(const Json& frames, VideoMetadata& metadata) {
    const Json all = frames.value("frames", Json::array());
    const Json sides = all.empty() ? Json::array() : all[0].value("side_data_list", Json::array());
    for (const Json& side : sides) {
        const std::string type = side.value("side_data_type", "");
        if (type == "Mastering display metadata")
            metadata.masteringDisplay = DisplayText(side);
        else if (type == "Content light level metadata")
            metadata.contentLight = std::to_string(side.value("max_content", 0)) + "," +
                                    std::to_string(side.value("max_average", 0));
    }
}

std::vector<std::string> LostMetadata(const VideoMetadata& before, const VideoMetadata& after) {
    std::vector<std::string> lost;
    for (const auto& [name, value] : before.tags)
        if (const auto found = after.tags.find(name); found == after.tags.end() || found->second != value)
            lost.push_back(name);
    const auto compare = [&](const std::string& old, const std::string& now, const std::string& name) {
        if (!old.empty() && old != now)
            lost.push_back(name + " " + old);
    };
    if (after.chapters < before.chapters)
        lost.emplace_back("chapters");
    if (after.subtitles.size() < before.subtitles.size())
        lost.push_back("subtitles (" + before.subtitles[after.subtitles.size()] + ")");
    for (const std::string& kind : before.otherStreams)
        lost.push_back(kind);
    compare(before.timecode, after.timecode, "timecode");
    compare(before.primaries, after.primaries, "colour primaries");
    compare(before.transfer, after.transfer, "colour transfer");
    compare(before.pixelAspect, after.pixelAspect, "pixel aspect ratio");
    compare(before.fieldOrder, after.fieldOrder, "field order");
    compare(before.masteringDisplay, after.masteringDisplay, "HDR10 mastering display");
    compare(before.contentLight, after.contentLight, "HDR10 content light level");
    return lost;
}

std::string SubtitleCodec(const std::string& extension, const std::string& from) {
    constexpr const char* texts[] = {"mov_text", "subrip", "srt", "ass", "ssa", "webvtt", "text"};
    const bool isText = std::find(std::begin(texts), std::end(texts), from) != std::end(texts);
    if (extension == ".mkv")
        return from == "mov_text" ? "srt" : "copy";
    if (extension == ".mp4" || extension == ".m4v" || extension == ".mov")
        return !isText ? "" : from == "mov_text" ? "copy" : "mov_text";
    if (extension == ".webm")
        return !isText ? "" : from == "webvtt" ? "copy" : "webvtt";
    return "";
}

} // namespace fxhost
