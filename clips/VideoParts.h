#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "clips/FrameList.h"
#include "clips/VideoSink.h"

namespace fxhost {

// The folder in which a video's parts wait to be joined, and the plan in it.
class VideoParts {
public:
    // Makes the folder, or goes on with the one that is there. Throws as WriteVideo.
    explicit VideoParts(const VideoJob& job);

    // Whether the output is there, whole, from an earlier run with --resume.
    bool isAllDone() const { return m_AllDone; }

    std::filesystem::path part(std::size_t index) const;
    std::filesystem::path unfinished(std::size_t index) const;
    bool has(std::size_t index) const;

    // Size and depth of the frames, once they are known.
    struct Shape {
        unsigned width = 0, height = 0, depth = 0;
        bool operator==(const Shape&) const = default;
    };
    const std::optional<Shape>& shape() const { return m_Shape; }
    void setShape(const Shape& shape, const std::string& ending);

    // Joins the parts, which hold `frames` frames together, with the sound to the output and removes the
    // folder. Throws EffectFailure; the parts are still there then.
    void join(std::size_t frames);

private:
    void readPlan(const std::string& path);
    std::string listFile(std::size_t frames) const;
    void runJoin(const std::filesystem::path& target, bool copySound) const;

    const VideoJob m_Job;
    const std::filesystem::path m_Folder;
    std::optional<Shape> m_Shape;
    std::string m_Ending;
    bool m_AllDone = false;
};

} // namespace fxhost
