#include "clips/VideoSink.h"

#include <algorithm>
#include <cstring>
#include <set>
#include <utility>

#include "clips/ChildProcess.h"
#include "clips/FailedPicture.h"
#include "clips/PipeFormat.h"
#include "clips/PipeIO.h"
#include "clips/VideoParts.h"
#include "clips/VideoProbe.h"
#include "toolkit/AtomicFile.h"
#include "toolkit/Errors.h"
#include "toolkit/Messages.h"
#include "toolkit/PictureOrigin.h"

namespace fxhost {

namespace {

namespace fs = std::filesystem;

PipeFormat PipeFormatOf(const VideoParts::Shape& shape, const VideoFormat& format) {
    return {shape.width, shape.height, shape.depth > 8, format.isYuv, format.keepsAlpha};
}

std::vector<std::string> EncoderArguments(const VideoContent& content, const PipeFormat& pipe,
                                          const VideoFormat& format, const std::string& target) {
    std::vector<std::string> list = {"ffmpeg",
                                     "-v",
                                     "error",
                                     "-nostdin",
                                     "-y",
                                     "-f",
                                     "rawvideo",
                                     "-pix_fmt",
                                     pipe.name(),
                                     "-video_size",
                                     std::to_string(pipe.width) + "x" + std::to_string(pipe.height),
                                     "-framerate",
                                     content.rate.text(),
                                     "-i",
                                     "pipe:0"};
    list.insert(list.end(), format.arguments.begin(), format.arguments.end());
    list.insert(list.end(), {"-video_track_timescale", std::to_string(VideoTimescale(content)), "-fflags",
                             "+bitexact", "-flags:v", "+bitexact", FileArgument(target)});
    return list;
}

class VideoSink final : public FrameSink {
public:
    explicit VideoSink(const VideoJob& job) : m_Job(job), m_Parts(job) {}

    void start(const FramePlan& plan) override {
        if (m_Job.options.isAny()) // The user's own options may be wrong.
            tryOut(Picture(m_Job.width, m_Job.height, m_Job.depth));
        m_Parts.start(plan);
    }
    // Encodes one frame in the container of the output.
    std::uint64_t tryOut(const Picture& picture) const override {
        const VideoFormat format = ChooseVideoFormat(m_Job.path, m_Job.options, m_Job.content, picture.width,
                                                     picture.height, picture.depth);
        const PipeFormat pipe = PipeFormatOf({picture.width, picture.height, picture.depth}, format);
        const AtomicFile target(m_Job.path);
        ChildProcess encoder(EncoderArguments(m_Job.content, pipe, format, target.unfinished().string()),
                             ChildProcess::Pipe::ToStdin);
        const auto bytes = FrameOf(picture, pipe);
        WriteFully(encoder.pipe(), bytes.data(), bytes.size());
        encoder.closePipe();
        if (const int status = encoder.wait()) {
            const std::string text = "--output " + m_Job.path +
                                     ": the encoder does not accept these options: " +
                                     FailureText("ffmpeg", status, encoder.stderrText());
            throw WrongUse(text);
        }
        return fs::file_size(target.unfinished());
    }
    Earlier earlier(const FrameId& frame) const override {
        const std::size_t part = frame.place / PartFrames;
        return m_Parts.has(part)          ? Earlier::Complete
               : m_Parts.isOutdated(part) ? Earlier::Outdated
                                          : Earlier::Nothing;
    }

    void write(const FrameId& frame, const Picture& picture) override {
        checkShape(frame, picture);
        reportLoss(picture);
        if (m_Encoder && frame.place / PartFrames != m_Part)
            closePart();
        if (m_Closed && m_Closed->hasEnded())
            finishClosed();
        m_Part = frame.place / PartFrames;
        if (!m_Encoder)
            m_Encoder = std::make_unique<ChildProcess>(arguments(), ChildProcess::Pipe::ToStdin);
        const bool premultiplies = m_Job.alpha == AlphaMode::Premultiplied && m_Format.keepsAlpha;
        const auto bytes =
            premultiplies ? FrameOf(Premultiplied(picture), pipeFormat()) : FrameOf(picture, pipeFormat());
        const int error = WriteFully(m_Encoder->pipe(), bytes.data(), bytes.size());
        if (error)
            failed(*m_Encoder, frame.number, error);
    }

    // Encodes the frame, so that the part keeps its order, but drops the part at its end.
    void writeFailed(const FrameId& frame, const Picture& picture) override {
        if (m_FailedParts.empty())
            KeepFailedPicture(m_Job.path, picture);
        write(frame, picture);
        m_FailedParts.insert(m_Part);
    }

    void finish(std::size_t frames) override {
        closePart();
        finishClosed();
        if (!m_FailedParts.empty())
            throw EffectFailure(m_Job.path + ": not written, because the effect failed in some frames");
        if (!m_Parts.isAllDone())
            m_Parts.join(frames);
        RemoveFailedPicture(m_Job.path);
    }

    // A later run starts the unfinished part again. Until then the part can be played.
    void keepPartialOutput() override {
        try {
            finishClosed();
        } catch (const std::exception&) { // The run has already failed for another reason.
        }
        if (!m_Encoder)
            return;
        m_Encoder->closePipe();
        m_Encoder->wait();
        m_Encoder.reset();
        dropIfFailed(m_Part);
    }

    std::size_t durableFrames(std::size_t written) const override {
        while (m_CompleteParts * PartFrames < written && m_Parts.has(m_CompleteParts))
            ++m_CompleteParts;
        return std::min(written, m_CompleteParts * PartFrames);
    }
    bool isResumable() const override { return true; }
    std::string file(const FrameId&) const override { return m_Job.path; }
    std::string partsFolder() const override { return m_Parts.folder(); }

private:
    void checkShape(const FrameId& frame, const Picture& picture) {
        const VideoParts::Shape shape{picture.width, picture.height, picture.depth};
        if (m_Parts.shape() && shape != *m_Parts.shape())
            throw EffectFailure(
                m_Job.path + ": frame " + std::to_string(frame.number) + " has " +
                std::to_string(shape.width) + "x" + std::to_string(shape.height) +
                " pixels, but the video started with " + std::to_string(m_Parts.shape()->width) + "x" +
                std::to_string(m_Parts.shape()->height) + "; only numbered pictures may change size");
        if (m_Format.arguments.empty())
            m_Format = ChooseVideoFormat(m_Job.path, m_Job.options, m_Job.content, shape.width, shape.height,
                                         shape.depth);
        if (!m_Parts.shape())
            m_Parts.setShape(shape, m_Format.partExtension);
    }

    // Pictures have data that videos do not keep. Once.
    void reportLoss(const Picture& picture) {
        if (!picture.origin || std::exchange(m_HasReportedLoss, true))
            return;
        std::vector<std::string> lost = picture.origin->lost;
        for (const std::string& name : AttributeNames(*picture.origin))
            lost.push_back(name);
        PrintLoss(m_Job.path, lost);
    }

    PipeFormat pipeFormat() const { return PipeFormatOf(*m_Parts.shape(), m_Format); }

    std::vector<std::string> arguments() const {
        return EncoderArguments(m_Job.content, pipeFormat(), m_Format,
                                m_Parts.unfinishedPath(m_Part).string());
    }

    // Ends the input of the encoder, which finishes while the next part is being encoded.
    void closePart() {
        finishClosed();
        if (!m_Encoder)
            return;
        m_Encoder->closePipe();
        m_Closed = std::move(m_Encoder);
        m_ClosedPart = m_Part;
    }

    void finishClosed() {
        if (!m_Closed)
            return;
        const auto encoder = std::move(m_Closed);
        if (encoder->wait() != 0)
            failed(*encoder, -1, 0);
        if (!dropIfFailed(m_ClosedPart))
            fs::rename(m_Parts.unfinishedPath(m_ClosedPart), m_Parts.path(m_ClosedPart));
    }

    bool dropIfFailed(std::size_t part) const {
        std::error_code ignored;
        return m_FailedParts.contains(part) && fs::remove(m_Parts.unfinishedPath(part), ignored);
    }

    // number: frame that could not be written, or -1. error: number of the write error.
    [[noreturn]] void failed(ChildProcess& encoder, long number, int error) {
        encoder.closePipe();
        const int status = encoder.wait();
        throw EffectFailure(m_Job.path + ": " + (number < 0 ? "" : "frame " + std::to_string(number) + ": ") +
                            (status ? FailureText("ffmpeg", status, encoder.stderrText())
                                    : std::string("cannot encode: ") + std::strerror(error)));
    }

    const VideoJob m_Job;
    VideoParts m_Parts;
    VideoFormat m_Format;
    std::unique_ptr<ChildProcess> m_Encoder, m_Closed;
    std::size_t m_Part = 0, m_ClosedPart = 0;
    std::set<std::size_t> m_FailedParts;
    bool m_HasReportedLoss = false;
    mutable std::size_t m_CompleteParts = 0; // without a gap, from the beginning; a lower bound
};

} // namespace

std::unique_ptr<FrameSink> WriteVideo(const VideoJob& job) {
    return std::make_unique<VideoSink>(job);
}

} // namespace fxhost
