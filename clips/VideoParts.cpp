#include "clips/VideoParts.h"

#include <fstream>
#include <nlohmann/json.hpp>

#include "clips/ChildProcess.h"
#include "clips/VideoProbe.h"
#include "toolkit/AtomicFile.h"
#include "toolkit/Errors.h"

namespace fxhost {

namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;

constexpr const char* s_IdentityFile = "plan.json";

void RequireFolder(const fs::path& target) {
    const fs::path folder = target.has_parent_path() ? target.parent_path() : fs::path(".");
    if (!fs::is_directory(folder))
        throw WrongUse("--output " + target.string() + ": there is no folder " + folder.string());
    if (fs::is_directory(target))
        throw WrongUse("--output " + target.string() + ": is a folder; expected a video file");
}

void WriteText(const fs::path& path, const std::string& text) {
    WriteFileAtomically(path, std::as_bytes(std::span(text)));
}

std::string Seconds(double seconds) {
    char text[40];
    std::snprintf(text, sizeof text, "%.6f", seconds);
    return text;
}

fs::path PartsFolder(const std::string& path) {
    const fs::path target(path);
    return target.parent_path() / ("." + target.filename().string() + ".parts");
}

} // namespace

VideoParts::VideoParts(const VideoJob& job) : m_Job(job), m_Folder(PartsFolder(job.path)) {
    RequireFolder(job.path);
    RequireVideoExtension(job.path);
    const fs::path plan = m_Folder / s_IdentityFile;
    if (job.resume && fs::exists(plan)) {
        readIdentity(plan.string());
        return;
    }
    if (job.resume && fs::exists(job.path)) {
        m_AllDone = job.frames > 0 && ProbeVideo(job.path).packets == static_cast<long>(job.frames);
        if (m_AllDone)
            return;
    }
    try {
        fs::remove_all(m_Folder);
        fs::create_directory(m_Folder);
        WriteText(plan, Json{{"plan", job.identity}}.dump());
    } catch (const fs::filesystem_error& error) {
        throw EffectFailure("--output " + job.path + ": the folder " + m_Folder.string() +
                            " cannot be created: " + error.code().message());
    }
}

void VideoParts::readIdentity(const std::string& path) {
    std::ifstream file(path);
    const Json plan = Json::parse(file, nullptr, false);
    if (!plan.is_object() || plan.value("plan", "") != m_Job.identity)
        throw WrongUse("--resume: " + m_Folder.string() +
                       " contains parts of a clip with other options; give the same options, or start again "
                       "without --resume");
    if (plan.contains("width")) {
        m_Shape = {plan.value("width", 0u), plan.value("height", 0u), plan.value("depth", 0u)};
        m_Extension = plan.value("extension", "");
    }
}

void VideoParts::setShape(const Shape& shape, const std::string& extension) {
    m_Shape = shape;
    m_Extension = extension;
    WriteText(m_Folder / s_IdentityFile, Json{{"plan", m_Job.identity},
                                              {"width", shape.width},
                                              {"height", shape.height},
                                              {"depth", shape.depth},
                                              {"extension", extension}}
                                             .dump());
}

fs::path VideoParts::path(std::size_t index) const {
    char name[32];
    std::snprintf(name, sizeof name, "part%06zu", index);
    return m_Folder / (name + m_Extension);
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

void VideoParts::runJoin(const fs::path& target, bool copySound) const {
    const FrameRate& rate = m_Job.content.rate;
    std::vector<std::string> arguments = {"ffmpeg",   "-v", "error",
                                          "-nostdin", "-y", "-f",
                                          "concat",   "-i", FileArgument((m_Folder / "list").string())};
    const SoundTrack& sound = m_Job.sound;
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
    add({"-map", "0:v:0", "-c:v", "copy"});
    if (!sound.path.empty())
        add({"-map", "1:a"});
    if (!sound.path.empty() && copySound)
        add({"-c:a", "copy"});
    // Moves the time stamps back to the frame grid, without the rounding of the parts.
    const std::string r = rate.text();
    add({"-bsf:v",
         "setts=pts=round(PTS*TB*" + r + ")/TB/(" + r + "):dts=round(DTS*TB*" + r + ")/TB/(" + r + ")",
         "-video_track_timescale", std::to_string(rate.frames), "-fflags", "+bitexact",
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
        if (m_Job.sound.path.empty())
            throw;
        runJoin(target.unfinished(), false); // The container may not support the codec of the sound.
    }
    target.commit();
    fs::remove_all(m_Folder);
}

} // namespace fxhost
