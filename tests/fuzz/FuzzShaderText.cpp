// Rewriting of shader texts.
#include <algorithm>

#include "gpu/ShaderPitcher.h"
#include "tests/fuzz/FuzzInput.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    FuzzInput input(bytes, size);
    const unsigned mode = input.Below(4);
    const std::string text = input.Rest();
    findRoutine(text, "texture2D", mode, size / 2);
    ShaderPitcher::addOutputSwizzle(text);
    ShaderPitcher::addTextureFlip(text);
    ShaderPitcher::addTextureLodFlip(text);
    ShaderPitcher::replaceCubemaps(text);
    const auto lines = [](const std::string& t) { return std::count(t.begin(), t.end(), '\n'); };
    const std::string rewritten = ShaderPitcher::rewrite(text);
    Require(lines(rewritten) >= lines(text) + ShaderPitcher::addedLines(text),
            "rewriting keeps the author's lines after the added ones");
    return 0;
}
