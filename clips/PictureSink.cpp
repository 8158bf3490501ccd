#include "clips/PictureSink.h"

#include "clips/PictureHeader.h"
#include "toolkit/PictureFile.h"

namespace fxhost {

namespace {

class PictureSink final : public FrameSink {
public:
    PictureSink(const NumberPattern& pattern, bool resume, const std::set<long>& planned)
        : m_Pattern(pattern), m_Resume(resume) {
        RequireWritable(pattern.path(0));
        pattern.removeLeftovers(planned);
    }
    bool isWritten(const FrameId& frame) const override {
        return m_Resume && ReadPictureHeader(m_Pattern.path(frame.number));
    }
    void write(const FrameId& frame, const Picture& picture) override {
        WritePicture(m_Pattern.path(frame.number), picture);
    }
    bool isParallel() const override { return true; }
    bool isResumable() const override { return true; }

private:
    const NumberPattern m_Pattern;
    const bool m_Resume;
};

class DiscardingSink final : public FrameSink {
public:
    void write(const FrameId&, const Picture&) override {}
};

} // namespace

std::unique_ptr<FrameSink> WritePictures(const NumberPattern& pattern, bool resume,
                                         const std::set<long>& planned) {
    return std::make_unique<PictureSink>(pattern, resume, planned);
}

std::unique_ptr<FrameSink> DiscardFrames() {
    return std::make_unique<DiscardingSink>();
}

} // namespace fxhost
