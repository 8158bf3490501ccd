#include "clips/VideoSource.h"

#include "clips/ChildProcess.h"
#include "clips/PipeFormat.h"
#include "clips/PipeIO.h"
#include "clips/VideoColours.h"
#include "clips/VideoFormat.h"
#include "toolkit/Errors.h"
#include "toolkit/Messages.h"

namespace fxhost {

namespace {

class VideoSource final : public FrameSource {
public:
    VideoSource(const std::string& path, const VideoInfo& info, std::optional<unsigned> depth, long required,
                const std::vector<long>& frames, AlphaMode alpha, bool mayEndEarly)
        : m_MayEndEarly(mayEndEarly), m_Path(path), m_Info(info), m_Required(required), m_Frames(frames),
          m_Alpha(alpha) {
        m_Width = info.width;
        m_Height = info.height;
        m_Depth = depth.value_or(info.bits > 8 ? 16 : 8);
        m_HasAlpha = info.hasAlpha;
        m_Pipe = {info.width, info.height, m_Depth > 8, info.isYuv, info.hasAlpha};
    }

    std::optional<Picture> read(long number) override {
        if (!m_Decoder)
            m_Decoder = std::make_unique<ChildProcess>(arguments(), ChildProcess::Pipe::FromStdout);
        const long inFile = fileNumber(number);
        std::optional<Picture> picture = m_Next > inFile ? m_Last : std::nullopt;
        while (m_Next <= inFile) {
            picture = readNext();
            if (!picture)
                return picture;
        }
        if (!m_Frames.empty())
            m_Last = picture; // A resampled clip may show it again.
        return picture;
    }
    std::string file(long) const override { return m_Path; }
    bool isParallel() const override { return false; }

private:
    // A number after the last frame of the clip stays after the last frame of the file.
    long fileNumber(long number) const {
        const auto index = static_cast<std::size_t>(number) - 1;
        if (m_Frames.empty())
            return number;
        return index < m_Frames.size() ? m_Frames[index] : m_Frames.back() + 1;
    }

    std::vector<std::string> arguments() const {
        std::vector<std::string> list = {"ffmpeg", "-v", "error", "-nostdin", "-threads", CodecThreads()};
        if (m_Info.codec == "vp9" && m_Info.hasAlpha) // FFmpeg's own decoder drops the alpha channel.
            list.insert(list.end(), {"-c:v", "libvpx-vp9"});
        list.insert(list.end(),
                    {"-i", FileArgument(m_Path), "-map", "0:v:0", "-fps_mode", "passthrough", "-vf",
                     (m_Info.isDeinterlaced ? "bwdif=mode=send_frame," : "") + ToRgbFilter(m_Info),
                     "-pix_fmt", m_Pipe.name(), "-f", "rawvideo", "pipe:1"});
        return list;
    }

    std::optional<Picture> readNext() {
        std::vector<std::uint8_t> frame(m_Pipe.bytes());
        if (ReadFully(m_Decoder->pipe(), frame.data(), frame.size()) != frame.size()) {
            checkEnd();
            return std::nullopt;
        }
        ++m_Next;
        Picture picture = PictureOf(std::move(frame), m_Pipe, m_Depth);
        if (m_Alpha == AlphaMode::Premultiplied && m_HasAlpha)
            Unpremultiply(picture);
        return picture;
    }

    // Returns when the video may end here, otherwise throws.
    void checkEnd() {
        const int status = m_Decoder->wait();
        const std::string errors = m_Decoder->stderrText();
        const std::string where = "--input " + m_Path + ": ";
        if (status != 0 && m_Next == 1)
            throw WrongUse(where + FailureText("ffmpeg", status, errors));
        if (status == 0 && errors.empty() && m_Required == 0 && m_Next > 1)
            return;
        if (m_MayEndEarly && m_Next > 1) {
            PrintMessage(MessageKind::Warning, where + "the video ends early, before frame " +
                                                   std::to_string(m_Next) + " (" + errors + ")");
            return;
        }
        throw WrongUse(
            where + "the video ends early, before frame " + std::to_string(m_Next) + " of " +
            std::to_string(m_Required ? m_Required : std::max(m_Info.declaredFrames, m_Info.packets)) +
            (errors.empty() ? "" : " (" + errors + ")"));
    }

    const bool m_MayEndEarly;
    const std::string m_Path;
    const VideoInfo m_Info;
    const long m_Required;
    const std::vector<long> m_Frames; // empty, or numbers in the file by number in the clip - 1
    const AlphaMode m_Alpha;
    std::optional<Picture> m_Last;
    PipeFormat m_Pipe;
    std::unique_ptr<ChildProcess> m_Decoder;
    long m_Next = 1;
};

} // namespace

std::unique_ptr<FrameSource> OpenVideo(const std::string& path, const VideoInfo& info,
                                       std::optional<unsigned> depth, long required,
                                       const std::vector<long>& frames, AlphaMode alpha, bool mayEndEarly) {
    return std::make_unique<VideoSource>(path, info, depth, required, frames, alpha, mayEndEarly);
}

} // namespace fxhost
