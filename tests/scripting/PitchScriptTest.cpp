#include "scripting/PitchScript.h"

#include <gtest/gtest.h>

namespace {

const std::string s_Prelude = [] {
    const std::string text = PitchScript("~");
    return text.substr(0, text.find('~'));
}();

TEST(PitchScriptTest, RewritesAsTextAndOnlyWhatItShould) {
    const std::string preRender = "function preRender(w,h) {};", flags = "function updateUIFlags() {};";
    const struct {
        std::string what, source, result, stubs;
    } rows[] = {
        {"only the first import goes", "import S; import S;", "  import S;", preRender + flags},
        {"every namespace is spelled out", "S.V.getTime() /* S.V.x */", "SV_getTime() /* SV_x */",
         preRender + flags},
        {"one after the other", "S.V.S.V.x", "SV_SV_x", preRender + flags},
        {"overlaps", "S.S.V.V.", "S.SV_V.", preRender + flags},
        {"a mentioned callback gets no stub", "// preRender", "// preRender", flags},
        {"nor do two", "'preRender updateUIFlags'", "'preRender updateUIFlags'", ""},
    };
    for (const auto& row : rows)
        EXPECT_EQ(PitchScript(row.source), s_Prelude + row.result + "\nsetup();\n" + row.stubs) << row.what;
}

} // namespace
