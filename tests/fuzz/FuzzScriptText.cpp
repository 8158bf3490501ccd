// Preprocessing of fx.js, and the conversion of its line numbers.
#include <algorithm>

#include "scripting/PitchScript.h"
#include "tests/fuzz/FuzzInput.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string source(reinterpret_cast<const char*>(bytes), size);
    const std::string program = PitchScript(source);
    const auto lines = static_cast<int>(std::count(source.begin(), source.end(), '\n'));
    Require(std::count(program.begin(), program.end(), '\n') >= lines + ScriptPreludeLines(),
            "preprocessing keeps the author's lines after the prelude");
    for (const int line : {-1, 0, 1, ScriptPreludeLines(), ScriptPreludeLines() + 1, 0x7FFFFFFF})
        Require(AuthorLine(line) >= 0, "a line number is not negative");
    return 0;
}
