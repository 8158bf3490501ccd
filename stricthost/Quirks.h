#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace stricthost {

// Behaviour of real editing programs that a plug-in must survive although the most forgiving host does not
// show it. All of it is allowed by the plug-in interface. Each field has a name and a description in
// QuirkTable().
struct Quirks {
    bool byteCopies = false;
    bool flatSetdown = false;
    bool nullResetup = false;
    bool resetupThread = false;
    bool renderCopies = false;
    bool getFlattened = false;
    bool nullRenderData = false;
    bool bareLayers = false;
    bool limitedCopy = false;
    bool clearedOutData = false;
    bool fields = false;
    bool negativeStrides = false;
    bool hiddenParameters = false;
    bool secondGlobalSetup = false;
    bool bgra = false;
    bool upstreamThread = false;
    bool bundleReference = false;
};

struct QuirkRow {
    const char* name; // for command lines
    bool Quirks::*flag;
    const char* description; // one sentence
};

// The last row has no name.
const QuirkRow* QuirkTable();

// Switches the named quirk on; false for an unknown name.
bool EnableQuirk(Quirks& quirks, std::string_view name);

// A reproducible selection: each quirk is on or off with equal probability.
Quirks QuirksFromSeed(std::uint32_t seed);

// The names of the quirks that are on, separated by commas; empty for none.
std::string QuirkNames(const Quirks& quirks);

} // namespace stricthost
