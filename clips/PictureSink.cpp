#include "clips/PictureSink.h"

#include <atomic>
#include <filesystem>

#include "clips/FailedPicture.h"
#include "clips/FrameRecord.h"
#include "clips/OutputLock.h"
#include "toolkit/Errors.h"
#include "toolkit/Messages.h"
#include "toolkit/PictureFile.h"

namespace fxhost {

namespace {

namespace fs = std::filesystem;

const PictureJob& Checked(const PictureJob& job) {
    RequireWritable(job.pattern.path(0), job.writing);
    return job;
}

class PictureSink final : public FrameSink {
public:
    explicit PictureSink(const PictureJob& job)
        : m_Job(Checked(job)), m_Lock(job.pattern.normalizedPath(), job.planned),
          m_Record(job.pattern.normalizedPath()) {
        m_Job.pattern.removeLeftovers(m_Job.planned);
        if (m_Job.resume)
            m_Record.load();
    }

    void start(const FramePlan& plan) override {
        for (const FrameId& frame : plan.frames)
            if (!m_Job.replace && fs::exists(path(frame)) && earlier(frame) != Earlier::Complete)
                throw WrongUse("--output " + path(frame) + ": exists, and -n forbids to replace it");
    }
    Earlier earlier(const FrameId& frame) const override {
        if (!m_Job.resume || !fs::exists(path(frame)))
            return Earlier::Nothing;
        const bool same = m_Record.matches(frame.number, frame.digest, path(frame));
        return same ? Earlier::Complete : Earlier::Outdated;
    }
    void write(const FrameId& frame, const Picture& picture) override {
        PictureWriting writing = m_Job.writing;
        writing.reportsLoss = m_ReportsLoss.exchange(false);
        PrintLoss(m_Job.pattern.text(), WritePicture(path(frame), picture, writing));
        m_Record.append(frame.number, frame.digest, path(frame));
        RemoveFailedPicture(path(frame));
    }
    void writeFailed(const FrameId& frame, const Picture& picture) override {
        KeepFailedPicture(path(frame), picture);
    }
    std::uint64_t tryOut(const Picture& picture) const override {
        return TryPicture(m_Job.pattern.path(0), picture, m_Job.writing);
    }
    std::string file(const FrameId& frame) const override { return path(frame); }
    bool isParallel() const override { return true; }
    bool isResumable() const override { return true; }

private:
    std::string path(const FrameId& frame) const { return m_Job.pattern.path(frame.number); }

    const PictureJob m_Job;
    const OutputLock m_Lock;
    FrameRecord m_Record;
    std::atomic<bool> m_ReportsLoss{true};
};

class DiscardingSink final : public FrameSink {
public:
    void write(const FrameId&, const Picture&) override {}
};

} // namespace

std::unique_ptr<FrameSink> WritePictures(const PictureJob& job) {
    return std::make_unique<PictureSink>(job);
}

std::unique_ptr<FrameSink> DiscardFrames() {
    return std::make_unique<DiscardingSink>();
}

} // namespace fxhost
