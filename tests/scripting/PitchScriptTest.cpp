#include "scripting/PitchScript.h"

#include <gtest/gtest.h>

namespace {

const std::string s_Prelude = [] {
    const std::string text = PitchScript("~");
    return text.substr(0, text.find('~'));
}();

TEST(PitchScriptTest, RewritesImportsNamespacesAndMissingCallbacksTextually) {
    const std::string preRender = "function preRender(w,h) {};", flags = "function updateUIFlags() {};";
    const struct {
        std::string what, source, result, stubs;
    } rows[] = {
        {"only the first import is removed", "import S; import S;", "  import S;", preRender + flags},
        {"namespaces are rewritten everywhere", "S.V.getTime() /* S.V.x */", "SV_getTime() /* SV_x */",
         preRender + flags},
        {"consecutive namespaces", "S.V.S.V.x", "SV_SV_x", preRender + flags},
        {"overlapping namespaces", "S.S.V.V.", "S.SV_V.", preRender + flags},
        {"a callback that is mentioned in a comment", "// preRender", "// preRender", flags},
        {"callbacks that are mentioned in a string", "'preRender updateUIFlags'", "'preRender updateUIFlags'",
         ""},
    };
    for (const auto& row : rows)
        EXPECT_EQ(PitchScript(row.source), s_Prelude + row.result + "\nsetup();\n" + row.stubs) << row.what;
}

} // namespace
