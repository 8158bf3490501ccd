#include "clips/MissingPictures.h"

#include <algorithm>
#include <iterator>

#include "clips/FrameList.h"
#include "toolkit/Errors.h"
#include "toolkit/Messages.h"

namespace fxhost {

namespace {

// The number before, or the first one. `onDisk` is not empty.
long HeldNumber(const std::vector<long>& onDisk, long number) {
    const auto after = std::upper_bound(onDisk.begin(), onDisk.end(), number);
    return after == onDisk.begin() ? onDisk.front() : *(after - 1);
}

const char* Consequence(MissingFrames mode) {
    return mode == MissingFrames::Hold    ? "the frame before is used"
           : mode == MissingFrames::Black ? "black frames are used"
                                          : "these frames are left out";
}

} // namespace

PictureNumbers ApplyMissing(MissingFrames mode, const NumberPattern& pattern, const std::vector<long>& onDisk,
                            std::vector<long>& numbers) {
    PictureNumbers files;
    std::vector<long> missing;
    std::set_difference(numbers.begin(), numbers.end(), onDisk.begin(), onDisk.end(),
                        std::back_inserter(missing));
    const auto present = std::find_first_of(numbers.begin(), numbers.end(), onDisk.begin(), onDisk.end());
    files.model = present == numbers.end() ? onDisk.front() : *present;
    if (missing.empty())
        return files;
    if (mode == MissingFrames::Error)
        throw WrongUse(pattern.path(missing.front()) + ": no such file; --input " + pattern.text() +
                       " needs it for frame " + std::to_string(missing.front()) +
                       (missing.size() > 1 ? ", and " + std::to_string(missing.size() - 1) +
                                                 " more files (frames " + NumbersText(missing) + ")"
                                           : "") +
                       "; --missing hold, black or skip renders without them");
    for (const long number : missing)
        files.substitutes[number] =
            mode == MissingFrames::Hold ? std::optional(HeldNumber(onDisk, number)) : std::nullopt;
    if (mode == MissingFrames::Skip)
        std::erase_if(numbers, [&](long number) { return files.substitutes.contains(number); });
    if (numbers.empty())
        throw WrongUse("--input " + pattern.text() + ": none of the frames exists");
    PrintMessage(MessageKind::Warning, "--input " + pattern.text() + ": " + std::to_string(missing.size()) +
                                           " frames are missing (" + NumbersText(missing) + "); " +
                                           Consequence(mode));
    return files;
}

} // namespace fxhost
