#include "clips/RawFrames.h"

#include <bit>
#include <cerrno>
#include <cstring>

#include "clips/PipeIO.h"
#include "toolkit/Errors.h"
#include "toolkit/PictureConversion.h"

namespace fxhost {

namespace {

static_assert(std::endian::native == std::endian::little, "raw frames are little-endian");

class RawSource final : public FrameSource {
public:
    RawSource(int descriptor, unsigned frameWidth, unsigned frameHeight, unsigned bits, long required,
              AlphaMode alpha)
        : m_Descriptor(descriptor), m_Required(required), m_Alpha(alpha) {
        m_Width = frameWidth;
        m_Height = frameHeight;
        m_Depth = bits;
    }

    std::optional<Picture> read(long number) override {
        while (m_Next < number)
            if (!readNext())
                return std::nullopt;
        const auto frame = readNext();
        if (!frame)
            return std::nullopt;
        Picture picture = ToPicture(*frame, m_Depth);
        if (m_Alpha == AlphaMode::Premultiplied)
            Unpremultiply(picture);
        return picture;
    }
    std::string file(long) const override { return {}; }
    bool isParallel() const override { return false; }

private:
    std::optional<FilePixels> readNext() {
        FilePixels frame;
        frame.width = m_Width;
        frame.height = m_Height;
        frame.depth = m_Depth;
        frame.bytes.resize(RawFrameBytes(m_Width, m_Height, m_Depth));
        const std::size_t count = ReadFully(m_Descriptor, frame.bytes.data(), frame.bytes.size());
        if (count == frame.bytes.size()) {
            ++m_Next;
            return frame;
        }
        if (count == 0 && m_Required == 0 && m_Next > 1)
            return std::nullopt;
        const std::string name = "standard input (--input -): ";
        if (count == 0)
            throw WrongUse(name + "ends before frame " + std::to_string(m_Next) +
                           (m_Required ? "; --frames asks for frame " + std::to_string(m_Required) : ""));
        throw WrongUse(name + "ends within frame " + std::to_string(m_Next) + ", after " +
                       std::to_string(count) + " of the " + std::to_string(frame.bytes.size()) +
                       " bytes that follow from --raw and --depth");
    }

    const int m_Descriptor;
    const long m_Required;
    const AlphaMode m_Alpha;
    long m_Next = 1;
};

class RawSink final : public FrameSink {
public:
    RawSink(int descriptor, AlphaMode alpha) : m_Descriptor(descriptor), m_Alpha(alpha) {}

    void write(const FrameId& frame, const Picture& picture) override {
        const FilePixels pixels = m_Alpha == AlphaMode::Premultiplied
                                      ? ToFilePixels(Premultiplied(picture), true)
                                      : ToFilePixels(picture, true);
        const int error = WriteFully(m_Descriptor, pixels.bytes.data(), pixels.bytes.size());
        if (error == 0)
            return;
        const std::string name = "standard output (--output -): frame " + std::to_string(frame.number);
        if (error == EPIPE)
            throw EffectFailure(name + ": the reading side has closed the pipe");
        throw EffectFailure(name + ": cannot be written: " + std::strerror(error));
    }

private:
    const int m_Descriptor;
    const AlphaMode m_Alpha;
};

} // namespace

std::size_t RawFrameBytes(unsigned width, unsigned height, unsigned depth) {
    return std::size_t{width} * height * depth / 2;
}

std::unique_ptr<FrameSource> ReadRawFrames(int descriptor, unsigned width, unsigned height, unsigned depth,
                                           long required, AlphaMode alpha) {
    return std::make_unique<RawSource>(descriptor, width, height, depth, required, alpha);
}

std::unique_ptr<FrameSink> WriteRawFrames(int descriptor, AlphaMode alpha) {
    return std::make_unique<RawSink>(descriptor, alpha);
}

} // namespace fxhost
