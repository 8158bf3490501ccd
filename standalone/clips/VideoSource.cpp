#include "standalone/clips/VideoSource.h"

#include "standalone/Errors.h"
#include "standalone/clips/ChildProcess.h"
#include "standalone/clips/PipeIO.h"
#include "standalone/images/Conversion.h"

namespace fxhost {

namespace {

class VideoSource final : public FrameSource {
public:
    VideoSource(const std::string& path, const VideoInfo& info, std::optional<unsigned> asked, long last)
        : m_Path(path), m_Info(info), m_Last(last) {
        m_Width = info.width;
        m_Height = info.height;
        m_Depth = asked.value_or(info.bits > 8 ? 16 : 8);
        m_HasAlpha = info.hasAlpha;
    }

    std::optional<Picture> read(long number) override {
        if (!m_Decoder)
            m_Decoder = std::make_unique<ChildProcess>(arguments(), ChildProcess::Pipe::FromItsOutput);
        std::optional<Picture> picture;
        do
            picture = readNext();
        while (picture && m_Next <= number);
        return picture;
    }
    bool isParallel() const override { return false; }

private:
    bool isDeep() const { return m_Depth > 8; }

    std::vector<std::string> arguments() const {
        std::vector<std::string> list = {"ffmpeg", "-v", "error", "-nostdin"};
        if (m_Info.codec == "vp9" && m_Info.hasAlpha) // the built-in decoder drops it
            list.insert(list.end(), {"-c:v", "libvpx-vp9"});
        std::string scale = "scale=flags=bilinear+accurate_rnd+full_chroma_int";
        if (m_Info.matrix != "gbr" && m_Info.matrix != "rgb")
            scale += ":in_color_matrix=" +
                     ScalerMatrix(m_Info.matrix.empty() ? UsualMatrix(m_Width, m_Height) : m_Info.matrix);
        list.insert(list.end(),
                    {"-i", FileArgument(m_Path), "-map", "0:v:0", "-fps_mode", "passthrough", "-vf", scale,
                     "-pix_fmt", isDeep() ? "rgba64le" : "argb", "-f", "rawvideo", "pipe:1"});
        return list;
    }

    std::optional<Picture> readNext() {
        FilePixels pixels;
        pixels.width = m_Width;
        pixels.height = m_Height;
        pixels.depth = 16;
        Picture picture(m_Width, m_Height, isDeep() ? 0 : 8);
        auto& bytes = isDeep() ? pixels.bytes : picture.bytes;
        bytes.resize(std::size_t{m_Width} * m_Height * (isDeep() ? 8 : 4));
        if (ReadFully(m_Decoder->pipe(), bytes.data(), bytes.size()) != bytes.size()) {
            reportEnd();
            return std::nullopt;
        }
        ++m_Next;
        return isDeep() ? ToPicture(pixels, m_Depth) : picture;
    }

    // Whether the end is where it may be.
    void reportEnd() {
        const int status = m_Decoder->wait();
        const std::string said = m_Decoder->said();
        const std::string where = "--input " + m_Path + ": ";
        if (status != 0 && m_Next == 1)
            throw WrongUse(where + FailureText("ffmpeg", status, said));
        if (status == 0 && said.empty() && m_Last == 0 && m_Next > 1)
            return;
        throw WrongUse(where + "the video ends early, before frame " + std::to_string(m_Next) + " of " +
                       std::to_string(m_Last ? m_Last : std::max(m_Info.promised, m_Info.frames)) +
                       (said.empty() ? "" : " (" + said + ")"));
    }

    const std::string m_Path;
    const VideoInfo m_Info;
    const long m_Last;
    std::unique_ptr<ChildProcess> m_Decoder;
    long m_Next = 1;
};

} // namespace

std::string UsualMatrix(unsigned width, unsigned height) {
    return width >= 1280 || height >= 720 ? "bt709" : "smpte170m";
}

std::string ScalerMatrix(const std::string& matrix) {
    if (matrix == "bt2020nc" || matrix == "bt2020c")
        return "bt2020";
    return matrix == "bt470bg" || matrix == "fcc" || matrix == "smpte240m" || matrix == "bt709" ? matrix
                                                                                                : "smpte170m";
}

std::unique_ptr<FrameSource> OpenVideo(const std::string& path, const VideoInfo& info,
                                       std::optional<unsigned> depth, long last) {
    return std::make_unique<VideoSource>(path, info, depth, last);
}

} // namespace fxhost
