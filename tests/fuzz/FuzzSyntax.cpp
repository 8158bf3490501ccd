// The texts that users type: parameter values, keyframes, frame lists, rates, sizes and file patterns. The
// first byte selects the reader.
#include <filesystem>
#include <fstream>
#include <unistd.h>

#include "clips/Animation.h"
#include "clips/FrameList.h"
#include "clips/FrameRate.h"
#include "clips/KeyframeText.h"
#include "clips/NumberPattern.h"
#include "clips/PipeFormat.h"
#include "tests/fuzz/FuzzInput.h"
#include "toolkit/Errors.h"
#include "toolkit/TextParsing.h"

using namespace fxhost;

namespace {

// One parameter of each type, named after the type's number: "p1" is a slider.
std::vector<Parameter> AllParameters() {
    std::vector<Parameter> parameters;
    for (unsigned type = Parameter::UNKNOWN; type <= Parameter::ANGLE; ++type) {
        const std::string name = "p" + std::to_string(type);
        parameters.emplace_back(name, static_cast<Parameter::Type>(type), "Label " + name);
        parameters.back().handle = Parameter::Tag + type + 1;
        parameters.back().choices = "One|Two|Three";
        parameters.back().choiceCount = 3;
    }
    return parameters;
}

void Evaluate(const Animation& animation) {
    for (const double time : {-1e300, -1.0, 0.0, 0.5, 1.0, 1e300})
        animation.at(time);
}

void ReadAnimationText(const std::string& text) {
    Animation animation;
    AddSetting(animation, text, AllParameters(), {});
    Evaluate(animation);
}

void ReadAnimationFile(const std::string& text) {
    const auto path = std::filesystem::temp_directory_path() / ("fuzz_keys_" + std::to_string(getpid()));
    std::ofstream(path, std::ios::binary) << text;
    Evaluate(ReadAnimation(path.string(), {}, AllParameters(), {}));
}

void ReadFrames(const std::string& text) {
    const FrameList list = FrameList::Parse(text);
    if (list.isOpen() || list.last() > 100000) // so that the list stays short
        return;
    const std::vector<long> numbers = list.numbers(0);
    Require(!numbers.empty() && numbers.front() == list.first() && numbers.back() == list.last(),
            "a frame list stays within its ends");
}

void ReadShard(const std::string& text) {
    const Shard shard = Shard::Parse(text);
    Require(shard.has(shard.index - 1), "a shard contains its first frame");
}

void ReadRate(const std::string& text) {
    const FrameRate rate = FrameRate::Parse(text);
    Require(rate.frames > 0 && rate.seconds > 0 && FrameRate::Parse(rate.text()) == rate,
            "a frame rate is positive and reads back");
}

void ReadPattern(const std::string& text) {
    if (const auto pattern = NumberPattern::Parse("-i", text); pattern && text.find('/') == text.npos) {
        pattern->path(0);
        pattern->path(99999999);
        pattern->numbersOnDisk();
    }
}

void ReadSize(const std::string& text) {
    const PixelSize size = ParsePixelSize("--size", text);
    Require(size.width > 0 && size.height > 0, "a size is positive");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    static constexpr void (*s_Readers[])(const std::string&) = {
        ReadAnimationText, ReadAnimationFile, ReadFrames, ReadShard, ReadRate, ReadPattern, ReadSize};
    FuzzInput input(bytes, size);
    const auto reader = input.Pick(s_Readers);
    try {
        reader(input.Rest());
    } catch (const WrongUse& error) {
        Require(error.what()[0] != '\0', "an error has a text");
    }
    return 0;
}
