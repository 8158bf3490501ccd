#include "stricthost/Quirks.h"

#include <random>

namespace stricthost {

const QuirkRow* QuirkTable() {
    static const QuirkRow s_Rows[] = {
        {"byte-copies", &Quirks::byteCopies,
         "Copies and saves sequence data byte by byte when the plug-in's flags do not ask for flattening."},
        {"flat-setdown", &Quirks::flatSetdown, "Sends SEQUENCE_SETDOWN with flattened data."},
        {"null-resetup", &Quirks::nullResetup,
         "Duplicates and reopens instances with a SEQUENCE_RESETUP that carries no data."},
        {"resetup-thread", &Quirks::resetupThread, "Sends SEQUENCE_RESETUP on another thread."},
        {"render-copies", &Quirks::renderCopies,
         "Renders with a separate instance, which a SEQUENCE_RESETUP without data sets up."},
        {"get-flattened", &Quirks::getFlattened,
         "Sends GET_FLATTENED_SEQUENCE_DATA instead of SEQUENCE_FLATTEN to plug-ins that support it."},
        {"null-render-data", &Quirks::nullRenderData,
         "After Effects renders without sequence data when the plug-in's flags ask for threaded rendering; a "
         "suite lets the plug-in read it."},
        {"bare-layers", &Quirks::bareLayers,
         "Gives layer parameters no pixels in smart render unless pre-render checked them out as layers."},
        {"limited-copy", &Quirks::limitedCopy,
         "The copy and fill callbacks support the documented depths and channel orders only."},
        {"cleared-out-data", &Quirks::clearedOutData,
         "Clears the output size before FRAME_SETUP instead of proposing one."},
        {"fields", &Quirks::fields,
         "Premiere Pro renders each field alone: half the rows at twice the stride."},
        {"negative-strides", &Quirks::negativeStrides,
         "Premiere Pro stores worlds bottom-up, so their row stride is negative."},
        {"hidden-parameters", &Quirks::hiddenParameters, "Delivers all parameters as hidden and disabled."},
        {"second-global-setup", &Quirks::secondGlobalSetup, "Sends GLOBAL_SETUP twice."},
        {"bgra", &Quirks::bgra,
         "Premiere Pro delivers 8-bit frames as B, G, R, A, whatever formats the plug-in declared."},
        {"upstream-thread", &Quirks::upstreamThread,
         "Renders upstream frames on another thread while the plug-in waits for them."},
        {"bundle-reference", &Quirks::bundleReference,
         "Reports the plug-in's place as a bundle reference and not as a path."},
        {nullptr, nullptr, nullptr},
    };
    return s_Rows;
}

bool EnableQuirk(Quirks& quirks, std::string_view name) {
    for (const QuirkRow* row = QuirkTable(); row->name; ++row)
        if (name == row->name) {
            quirks.*row->flag = true;
            return true;
        }
    return false;
}

Quirks QuirksFromSeed(std::uint32_t seed) {
    std::mt19937 random(seed);
    Quirks quirks;
    for (const QuirkRow* row = QuirkTable(); row->name; ++row)
        quirks.*row->flag = random() % 2 == 0;
    return quirks;
}

std::string QuirkNames(const Quirks& quirks) {
    std::string names;
    for (const QuirkRow* row = QuirkTable(); row->name; ++row)
        if (quirks.*row->flag)
            names += (names.empty() ? "" : ",") + std::string(row->name);
    return names;
}

} // namespace stricthost
