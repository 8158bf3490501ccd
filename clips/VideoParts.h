#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "clips/FramePlan.h"
#include "clips/FrameRecord.h"
#include "clips/OutputLock.h"
#include "clips/VideoSink.h"

namespace fxhost {

// The folder with the parts of an unfinished video. The name of a part contains the digest of its frames, so
// a part that was made from something else is never used.
class VideoParts {
public:
    // Locks the output. Throws like WriteVideo.
    explicit VideoParts(const VideoJob& job);

    // Creates the folder, or with job.resume finds the parts of an earlier run and removes outdated ones.
    void start(const FramePlan& plan);

    // True when an earlier run already completed the output from the same frames.
    bool isAllDone() const { return m_AllDone; }
    // True for a part that an earlier run encoded from other frames.
    bool isOutdated(std::size_t index) const { return m_AllOutdated || m_Outdated.contains(index); }

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
    void digestParts(const FramePlan& plan);
    void createFolder();
    void readShape();
    void sortOutOldParts();
    std::string nameWithoutExtension(std::size_t index) const;
    std::string listFile(std::size_t frames) const;
    void addSound(std::vector<std::string>& arguments, bool copySound) const;
    void runJoin(const std::filesystem::path& target, bool copySound) const;

    const VideoJob m_Job;
    const std::filesystem::path m_Folder;
    const OutputLock m_Lock;
    FrameRecord m_Record; // of the whole video, as frame 0
    std::vector<std::uint64_t> m_PartDigests;
    std::uint64_t m_Digest = 0; // of the whole video
    std::optional<Shape> m_Shape;
    std::string m_Extension;
    std::set<std::size_t> m_Outdated;
    bool m_AllOutdated = false, m_AllDone = false;
};

} // namespace fxhost
