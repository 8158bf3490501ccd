#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "clips/FrameList.h"
#include "clips/VideoSink.h"

namespace fxhost {

// The folder with the parts of an unfinished video, and the file in it that identifies the clip.
class VideoParts {
public:
    // Creates the folder, or continues with an existing one when job.resume is set. Throws like WriteVideo.
    explicit VideoParts(const VideoJob& job);

    // True when an earlier run already completed the output.
    bool isAllDone() const { return m_AllDone; }

    std::string folder() const { return m_Folder.string(); }

    // Path of a complete part.
    std::filesystem::path path(std::size_t index) const;
    // Path of the part while it is encoded by this process.
    std::filesystem::path unfinishedPath(std::size_t index) const;
    bool has(std::size_t index) const;

    // Size in pixels and bits per channel of all frames; known from the first frame on.
    struct Shape {
        unsigned width = 0, height = 0, depth = 0;
        bool operator==(const Shape&) const = default;
    };
    const std::optional<Shape>& shape() const { return m_Shape; }
    void setShape(const Shape& shape, const std::string& extension);

    // Joins the parts, which have `frames` frames in total, and the sound to the output, and removes the
    // folder. Throws EffectFailure and keeps the parts.
    void join(std::size_t frames);

private:
    void readIdentity(const std::string& path);
    std::string listFile(std::size_t frames) const;
    void runJoin(const std::filesystem::path& target, bool copySound) const;

    const VideoJob m_Job;
    const std::filesystem::path m_Folder;
    std::optional<Shape> m_Shape;
    std::string m_Extension;
    bool m_AllDone = false;
};

} // namespace fxhost
