#include "clips/VideoProbe.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <sstream>

#include "clips/ChildProcess.h"
#include "clips/FrameTiming.h"
#include "clips/VideoMetadataJson.h"
#include "pictures/Picture.h"
#include "toolkit/Errors.h"
#include "toolkit/TextParsing.h"

namespace fxhost {

namespace {

using Json = nlohmann::json;

std::vector<std::string> Probe(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), {"ffprobe", "-v", "error", "-of", "json"});
    return arguments;
}

// 0 when there is no such entry. ffprobe writes most numbers as texts.
double Number(const Json& object, const char* name) {
    const auto found = object.find(name);
    if (found == object.end())
        return 0;
    if (found->is_number())
        return found->get<double>();
    return found->is_string() ? std::atof(found->get<std::string>().c_str()) : 0;
}

// Empty when there is no such entry, or its value is a placeholder of ffprobe.
std::string Text(const Json& object, const char* name) {
    const auto found = object.find(name);
    if (found == object.end() || !found->is_string() || *found == "unknown" || *found == "reserved")
        return "";
    return found->get<std::string>();
}

// The average rate and the one that FFmpeg guesses from the time stamps.
std::vector<FrameRate> DeclaredRates(const Json& stream, const std::string& path) {
    std::vector<FrameRate> rates;
    for (const char* name : {"avg_frame_rate", "r_frame_rate"}) {
        long frames = 0, seconds = 0;
        if (std::sscanf(Text(stream, name).c_str(), "%ld/%ld", &frames, &seconds) == 2 && frames > 0 &&
            seconds > 0)
            rates.push_back({frames, seconds});
    }
    if (rates.empty())
        throw WrongUse(path + ": the video has no frame rate; expected a video file for --input");
    return rates;
}

// Seconds of "00:00:03.870000000", which is how Matroska stores durations; 0 for any other text.
double ClockSeconds(const std::string& text) {
    int hours = 0, minutes = 0;
    double seconds = 0;
    if (std::sscanf(text.c_str(), "%d:%d:%lf", &hours, &minutes, &seconds) != 3)
        return 0;
    return hours * 3600 + minutes * 60 + seconds;
}

long DeclaredFrames(const Json& stream, const FrameRate& rate) {
    if (const double frames = Number(stream, "nb_frames"); frames > 0)
        return std::lround(frames);
    double seconds = Number(stream, "duration");
    if (seconds <= 0)
        seconds = ClockSeconds(Text(stream.value("tags", Json::object()), "DURATION"));
    return std::lround(seconds * rate.perSecond());
}

// True for a rotation by a quarter turn.
bool IsRotated(const Json& stream) {
    double degrees = 0;
    const Json sideData = stream.value("side_data_list", Json::array());
    for (const Json& side : sideData)
        if (side.contains("rotation"))
            degrees = Number(side, "rotation");
    return std::lround(degrees / 90) % 2 != 0;
}

void FillPixelFormat(const std::string& name, VideoInfo& info) {
    const auto formats = Json::parse(OutputOf(Probe({"-show_pixel_formats"}), "the pixel formats"));
    for (const Json& format : formats.at("pixel_formats")) {
        if (format.value("name", "") != name)
            continue;
        const Json flags = format.value("flags", Json::object());
        info.hasAlpha = Number(flags, "alpha") > 0;
        info.isYuv = Number(flags, "rgb") == 0 && Number(flags, "palette") == 0 &&
                     Number(format, "nb_components") >= 3;
        const Json components = format.value("components", Json::array());
        for (const Json& component : components)
            info.bits = std::max(info.bits, static_cast<unsigned>(Number(component, "bit_depth")));
    }
}

Json ProbeFile(const std::string& path) {
    if (!std::filesystem::exists(path))
        throw WrongUse("--input " + path + ": no such file");
    try {
        return Json::parse(
            OutputOf(Probe({"-show_format", "-show_streams", "-show_chapters", FileArgument(path)}), path));
    } catch (const EffectFailure& error) {
        const std::string text = error.what();
        if (text.find("is it installed") != std::string::npos)
            throw;
        throw WrongUse("--input " + text + " (expected a picture or a video)");
    }
}

// The stream of the frames; empty when there is none.
Json VideoStream(const Json& probe) {
    const Json streams = probe.value("streams", Json::array());
    for (const Json& stream : streams) {
        const bool isCover = Number(stream.value("disposition", Json::object()), "attached_pic") > 0;
        if (Text(stream, "codec_type") == "video" && !isCover)
            return stream;
    }
    return Json::object();
}

// HDR10 data are in the frames.
Json ProbeFirstFrame(const std::string& path) {
    return Json::parse(OutputOf(
        Probe({"-select_streams", "v:0", "-show_frames", "-read_intervals", "%+#1", FileArgument(path)}),
        path));
}

struct Packets {
    std::vector<double> times; // seconds, in the order of the file
    long count = 0;            // of all packets that are shown
    long discarded = 0;        // decoded but not shown, because an edit list starts after them
};

Packets ReadPackets(const std::string& path) {
    std::istringstream lines(OutputOf({"ffprobe", "-v", "error", "-of", "csv=p=0", "-select_streams", "v:0",
                                       "-show_entries", "packet=pts_time,flags", FileArgument(path)},
                                      path));
    Packets packets;
    for (std::string line; std::getline(lines, line);) {
        const auto comma = std::min(line.find(','), line.size());
        if (line.find('D', comma) != std::string::npos) {
            ++packets.discarded;
            continue;
        }
        ++packets.count;
        if (const auto time = ParseNumber(line.substr(0, comma)))
            packets.times.push_back(*time);
    }
    return packets;
}

// `fileStart`: the time that the file begins with, in seconds.
void FillTiming(const Json& stream, const std::string& path, double fileStart, VideoInfo& info) {
    const std::vector<FrameRate> rates = DeclaredRates(stream, path);
    Packets packets = ReadPackets(path);
    info.rate = rates.front();
    info.packets = packets.count;
    std::sort(packets.times.begin(), packets.times.end());
    if (packets.times.empty() || static_cast<long>(packets.times.size()) != packets.count)
        packets.times.clear();
    else
        info.start = std::max(packets.times.front() - fileStart, 0.0);
    if (packets.times.size() > 1) {
        const auto constant = ConstantRate(packets.times, rates);
        info.isVariable = !constant;
        info.rate = constant ? *constant : ResamplingRate(packets.times, rates);
    }
    info.times = std::move(packets.times);
    info.declaredFrames = DeclaredFrames(stream, info.rate) - packets.discarded;
}

} // namespace

std::string FileArgument(const std::string& path) {
    return "file:" + path;
}

bool IsVideoName(const std::string& path) {
    constexpr const char* extensions[] = {".mp4", ".m4v",  ".mov", ".mkv",  ".webm", ".avi", ".mxf",
                                          ".mpg", ".mpeg", ".ts",  ".m2ts", ".ogv",  ".wmv", ".y4m"};
    std::string extension = std::filesystem::path(path).extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
    return std::find(std::begin(extensions), std::end(extensions), extension) != std::end(extensions);
}

VideoMetadata ProbeMetadata(const std::string& path) {
    const Json found = ProbeFile(path);
    const Json video = VideoStream(found);
    VideoMetadata metadata = MetadataOf(found, video);
    if (metadata.transfer == "smpte2084")
        AddHdr(ProbeFirstFrame(path), metadata);
    return metadata;
}

void RequireSound(const std::string& option, const std::string& path) {
    const Json found = ProbeFile(path);
    const Json streams = found.value("streams", Json::array());
    for (const Json& stream : streams)
        if (Text(stream, "codec_type") == "audio")
            return;
    throw WrongUse(option + " " + path + ": contains no sound");
}

VideoInfo ProbeVideo(const std::string& path) {
    const Json found = ProbeFile(path);
    VideoInfo info;
    const Json stream = VideoStream(found);
    const Json* const video = &stream;
    if (stream.empty())
        throw WrongUse("--input " + path + ": contains no video");
    const Json streams = found.value("streams", Json::array());
    for (const Json& other : streams)
        info.hasSound |= Text(other, "codec_type") == "audio";
    info.width = static_cast<unsigned>(Number(*video, "width"));
    info.height = static_cast<unsigned>(Number(*video, "height"));
    if (IsRotated(*video))
        std::swap(info.width, info.height);
    if (info.width < 1 || info.height < 1 || info.width > MaxExtent || info.height > MaxExtent)
        throw WrongUse("--input " + path + ": " + std::to_string(info.width) + "x" +
                       std::to_string(info.height) + " pixels; expected at most " +
                       std::to_string(MaxExtent) + " in each direction");
    FillTiming(*video, path, Number(found.value("format", Json::object()), "start_time"), info);
    info.codec = Text(*video, "codec_name");
    info.matrix = Text(*video, "color_space");
    info.metadata = MetadataOf(found, *video);
    if (info.metadata.transfer == "smpte2084") // HDR10
        AddHdr(ProbeFirstFrame(path), info.metadata);
    FillPixelFormat(Text(*video, "pix_fmt"), info);
    const Json tags = video->value("tags", Json::object());
    for (const char* name : {"alpha_mode", "ALPHA_MODE"}) // WebM stores alpha outside the pixel format.
        info.hasAlpha |= Text(tags, name) == "1";
    return info;
}

} // namespace fxhost
