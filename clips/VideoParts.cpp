#include "clips/VideoParts.h"

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <fstream>
#include <nlohmann/json.hpp>

#include "clips/ChildProcess.h"
#include "clips/VideoProbe.h"
#include "toolkit/AtomicFile.h"
#include "toolkit/ContentDigest.h"
#include "toolkit/Errors.h"
#include "toolkit/Messages.h"

namespace fxhost {

namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;

constexpr const char* s_ShapeFile = "shape.json";

const VideoJob& Checked(const VideoJob& job) {
    const fs::path target(job.path);
    const fs::path folder = target.has_parent_path() ? target.parent_path() : fs::path(".");
    if (!fs::is_directory(folder))
        throw WrongUse("--output " + target.string() + ": there is no folder " + folder.string());
    if (fs::is_directory(target))
        throw WrongUse("--output " + target.string() + ": is a folder; expected a video file");
    RequireVideoExtension(job.path);
    return job;
}

void WriteText(const fs::path& path, const std::string& text) {
    WriteFileAtomically(path, std::as_bytes(std::span(text)));
}

std::string Seconds(double seconds) {
    char text[40];
    std::snprintf(text, sizeof text, "%.6f", seconds);
    return text;
}

// Moves the time stamps of the joined parts back to the frame grid, without the rounding of the parts.
// Decoding times count the packets, because the last part may be too short for the reordering of the others.
std::string TimeStampFilter(const VideoContent& content) {
    const std::string r = "(" + content.rate.text() + ")", offset = "+" + Seconds(content.start) + "/TB";
    return "setts=pts=round(PTS*TB*" + r + ")/TB/" + r + offset + ":dts=(round(STARTDTS*TB*" + r +
           ")+N)/TB/" + r + offset + ":duration=1/TB/" + r;
}

// Removes the unfinished files that killed runs left beside the output, ".STEM.PROCESS.EXTENSION". The lock
// shows that no run still writes them.
void RemoveLeftovers(const fs::path& output) {
    const std::string before = "." + output.stem().string() + ".", after = output.extension().string();
    std::error_code ignored;
    std::vector<fs::path> leftovers;
    for (const auto& entry : fs::directory_iterator(fs::absolute(output).parent_path(), ignored)) {
        const std::string name = entry.path().filename().string();
        if (name.size() <= before.size() + after.size() || !name.starts_with(before) ||
            !name.ends_with(after))
            continue;
        const std::string process = name.substr(before.size(), name.size() - before.size() - after.size());
        if (process.find_first_not_of("0123456789") == std::string::npos)
            leftovers.push_back(entry.path());
    }
    for (const fs::path& path : leftovers)
        fs::remove(path, ignored);
}

fs::path PartsFolder(const std::string& path) {
    const fs::path target(path);
    return target.parent_path() / ("." + target.filename().string() + ".parts");
}

} // namespace

VideoParts::VideoParts(const VideoJob& job)
    : m_Job(Checked(job)), m_Folder(PartsFolder(job.path)), m_Lock(job.path, {}), m_Record(job.path) {}

void VideoParts::start(const FramePlan& plan) {
    digestParts(plan);
    RemoveLeftovers(m_Job.path);
    if (m_Job.resume)
        m_Record.load();
    m_AllDone = m_Job.resume && m_Record.matches(0, m_Digest, m_Job.path);
    const bool exists = fs::exists(m_Job.path);
    if (exists && !m_AllDone && !m_Job.replace)
        throw WrongUse("--output " + m_Job.path + ": exists, and -n forbids to replace it");
    try {
        if (m_AllDone || !m_Job.resume)
            fs::remove_all(m_Folder);
        m_AllOutdated = m_Job.resume && exists && !m_AllDone && !fs::exists(m_Folder);
        if (!m_AllDone)
            fs::create_directory(m_Folder);
    } catch (const fs::filesystem_error& error) {
        throw EffectFailure("--output " + m_Job.path + ": the folder " + m_Folder.string() +
                            " cannot be created: " + error.code().message());
    }
    sortOutOldParts();
}

// Frames of an endless clip are not known in advance. Such a clip cannot be resumed either.
void VideoParts::digestParts(const FramePlan& plan) {
    ContentDigest whole;
    whole.add(m_Job.soundIdentity);
    m_PartDigests.assign((plan.frames.size() + PartFrames - 1) / PartFrames, 0);
    for (std::size_t part = 0; part < m_PartDigests.size(); ++part) {
        ContentDigest digest;
        digest.add(m_Job.identity);
        for (std::size_t i = part * PartFrames; i < std::min((part + 1) * PartFrames, plan.frames.size());
             ++i)
            digest.add(plan.frames[i].digest);
        m_PartDigests[part] = digest.value();
        whole.add(digest.value());
    }
    m_Digest = whole.value();
}

// Removes everything but the parts that can be used, and the shape that belongs to them.
void VideoParts::sortOutOldParts() {
    std::set<std::string> usable;
    for (std::size_t part = 0; part < m_PartDigests.size(); ++part)
        usable.insert(nameWithoutExtension(part));
    std::error_code ignored;
    bool hasUsable = false;
    for (const auto& entry : fs::directory_iterator(m_Folder, ignored)) {
        const std::string name = entry.path().stem().string();
        std::size_t index = 0;
        const bool isPart = std::sscanf(name.c_str(), "part%zu-", &index) == 1;
        hasUsable |= usable.contains(name);
        if (isPart && !usable.contains(name))
            m_Outdated.insert(index);
        if (!usable.contains(name) && entry.path().filename() != s_ShapeFile)
            fs::remove(entry.path(), ignored);
    }
    if (hasUsable)
        readShape();
}

void VideoParts::readShape() {
    std::ifstream file(m_Folder / s_ShapeFile);
    const Json shape = Json::parse(file, nullptr, false);
    if (!shape.is_object())
        return;
    m_Shape = {shape.value("width", 0u), shape.value("height", 0u), shape.value("depth", 0u)};
    m_Extension = shape.value("extension", "");
}

void VideoParts::setShape(const Shape& shape, const std::string& extension) {
    m_Shape = shape;
    m_Extension = extension;
    WriteText(m_Folder / s_ShapeFile, Json{{"width", shape.width},
                                           {"height", shape.height},
                                           {"depth", shape.depth},
                                           {"extension", extension}}
                                          .dump());
}

std::string VideoParts::nameWithoutExtension(std::size_t index) const {
    const std::uint64_t digest = index < m_PartDigests.size() ? m_PartDigests[index] : 0;
    char name[48];
    std::snprintf(name, sizeof name, "part%06zu-%016" PRIx64, index, digest);
    return name;
}

fs::path VideoParts::path(std::size_t index) const {
    return m_Folder / (nameWithoutExtension(index) + m_Extension);
}

// An encoder may outlive a killed run for a moment; its process id keeps its part apart from ours.
fs::path VideoParts::unfinishedPath(std::size_t index) const {
    return UnfinishedPath(path(index));
}

bool VideoParts::has(std::size_t index) const {
    return m_AllDone || (m_Shape && fs::exists(path(index)));
}

// The list gives the duration of each part in microseconds, because the files round it.
std::string VideoParts::listFile(std::size_t frames) const {
    std::string list = "ffconcat version 1.0\n";
    for (std::size_t first = 0, index = 0; first < frames; first += PartFrames, ++index) {
        const std::size_t count = std::min(PartFrames, frames - first);
        list += "file " + path(index).filename().string() + "\nduration " +
                Seconds(m_Job.content.rate.timeOf(static_cast<double>(count))) + "\n";
    }
    return list;
}

// Adds the sound and the subtitles, which are streams of input 1.
void VideoParts::addSound(std::vector<std::string>& arguments, bool copySound) const {
    const SoundTrack& sound = m_Job.sound;
    const auto add = [&](const std::vector<std::string>& more) {
        arguments.insert(arguments.end(), more.begin(), more.end());
    };
    if (sound.hasSound)
        add({"-map", "1:a"});
    if (sound.hasSound && copySound)
        add({"-c:a", "copy"});
    else if (sound.hasSound && fs::path(m_Job.path).extension() == ".mxf")
        add({"-ar", "48000"}); // the only sampling rate of this container
    std::size_t count = 0;
    for (std::size_t i = 0; i < sound.subtitles.size(); ++i) {
        const std::string codec =
            SubtitleCodec(fs::path(m_Job.path).extension().string(), sound.subtitles[i]);
        if (!codec.empty())
            add({"-map", "1:s:" + std::to_string(i), "-c:s:" + std::to_string(count++), codec});
    }
}

void VideoParts::runJoin(const fs::path& target, bool copySound) const {
    std::vector<std::string> arguments = {"ffmpeg",   "-v", "error",
                                          "-nostdin", "-y", "-f",
                                          "concat",   "-i", FileArgument((m_Folder / "list").string())};
    const SoundTrack& sound = m_Job.sound;
    const MetadataSource& source = m_Job.source;
    const auto add = [&](std::initializer_list<std::string> more) {
        arguments.insert(arguments.end(), more);
    };
    if (!sound.path.empty()) {
        if (sound.start > 0)
            add({"-ss", Seconds(sound.start)});
        if (sound.seconds > 0)
            add({"-t", Seconds(sound.seconds)});
        add({"-i", FileArgument(sound.path)});
    }
    if (!source.path.empty())
        add({"-i", FileArgument(source.path)});
    add({"-map", "0:v:0", "-c:v", "copy"});
    if (!sound.path.empty())
        addSound(arguments, copySound);
    if (!source.path.empty()) {
        const std::string index = sound.path.empty() ? "1" : "2";
        add({"-map_metadata", index, "-map_chapters", source.keepsChapters ? index : "-1"});
        for (const char* name : {"major_brand", "minor_version", "compatible_brands", "encoder", "DURATION"})
            add({"-metadata", std::string(name) + "="});
        add({"-metadata", "timecode=" + source.metadata.timecode});
    }
    const std::string extension = fs::path(m_Job.path).extension().string();
    if (extension == ".avi" || extension == ".mxf") // These store the rate in place of times.
        add({"-r", m_Job.content.rate.text()});
    add({"-bsf:v", TimeStampFilter(m_Job.content), "-video_track_timescale",
         std::to_string(VideoTimescale(m_Job.content)), "-fflags", "+bitexact",
         FileArgument(target.string())});

    ChildProcess process(std::move(arguments), ChildProcess::Pipe::ToStdin);
    process.closePipe();
    if (const int status = process.wait()) {
        std::error_code ignored;
        fs::remove(target, ignored);
        throw EffectFailure(m_Job.path + ": the parts in " + m_Folder.string() +
                            " cannot be joined: " + FailureText("ffmpeg", status, process.stderrText()));
    }
}

void VideoParts::join(std::size_t frames) {
    WriteText(m_Folder / "list", listFile(frames));
    const AtomicFile target(m_Job.path);
    try {
        runJoin(target.unfinished(), true);
    } catch (const EffectFailure&) {
        if (m_Job.sound.path.empty() || !m_Job.sound.hasSound)
            throw;
        runJoin(target.unfinished(), false); // The container may not support the codec of the sound.
    }
    if (!m_Job.source.path.empty())
        PrintLoss(m_Job.path,
                  LostMetadata(m_Job.source.metadata, ProbeMetadata(target.unfinished().string())));
    target.commit();
    m_Record.append(0, m_Digest, m_Job.path);
    fs::remove_all(m_Folder);
}

} // namespace fxhost
