#include "clips/FrameDigests.h"

#include "toolkit/ContentDigest.h"

namespace fxhost {

namespace {

constexpr unsigned s_WordCount = 4; // of a parameter's value

std::string_view BytesOf(const Picture& picture) {
    return {reinterpret_cast<const char*>(picture.bytes.data()), picture.bytes.size()};
}

void AddSetting(ContentDigest& digest, const ParameterSetting& setting) {
    digest.add(std::uint64_t{setting.index});
    for (unsigned i = 0; i < s_WordCount; ++i)
        digest.add(static_cast<std::uint64_t>(setting.value.Int(i)));
}

} // namespace

FrameDigests::FrameDigests(std::uint64_t common, const FrameSource& source, const Animation& animation,
                           const std::vector<LayerInput>& layers)
    : m_Source(source), m_Animation(animation) {
    ContentDigest digest;
    for (const std::uint64_t number : {common, std::uint64_t{source.depth()}, std::uint64_t{source.width()},
                                       std::uint64_t{source.height()}})
        digest.add(number);
    for (const LayerInput& layer : layers) {
        digest.add(std::uint64_t{layer.index});
        digest.add(BytesOf(layer.picture));
    }
    m_Common = digest.value();
}

std::uint64_t FrameDigests::of(long number, double time) const {
    ContentDigest digest;
    digest.add(m_Common);
    digest.addFileState(m_Source.file(number));
    digest.add(static_cast<std::uint64_t>(number));
    digest.add(time);
    for (const ParameterSetting& setting : m_Animation.at(time))
        AddSetting(digest, setting);
    return digest.value();
}

} // namespace fxhost
