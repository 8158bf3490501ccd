#include "scripting/PitchScript.h"

#include <gtest/gtest.h>

namespace {

const std::string s_Prelude = [] {
    const std::string text = PitchScript("~");
    return text.substr(0, text.find('~'));
}();

TEST(PitchScriptTest, ThePreludeStandsInFrontInItsGivenForm) {
    EXPECT_EQ(s_Prelude.size(), 1337u);
    EXPECT_EQ(s_Prelude.substr(0, 18), "\n\nvar SV_Type = { ");
    EXPECT_EQ(s_Prelude.substr(s_Prelude.size() - 4), "};\n\n");
    const auto type = s_Prelude.find("SV_Type"), gl = s_Prelude.find("\n\nvar SV_GL"),
               flags = s_Prelude.find("\n\nvar SV_ParamFlags");
    EXPECT_LT(type, gl);
    EXPECT_LT(gl, flags);
    EXPECT_LT(flags, s_Prelude.size());
    EXPECT_NE(s_Prelude.find(
                  "\n\n  /* ------------------------- GL_ARB_texture_swizzle ------------------------ */\n"),
              std::string::npos);
    EXPECT_EQ(ScriptPreludeLines(), 49); // 5 down to the opening of SV_GL, 35 inside, 9 after it
}

TEST(PitchScriptTest, RewritesAsTextAndOnlyWhatItShould) {
    struct Row {
        const char* name;
        const char* source;
        const char* result; // between the prelude and the end
    };
    const char* const stubs = "function preRender(w,h) {};function updateUIFlags() {};";
    const Row rows[] = {
        {"only the first import goes", "import S; import S;", "  import S;"},
        {"every namespace is spelled out", "S.V.getTime() /* S.V.x */", "SV_getTime() /* SV_x */"},
        {"one after the other", "S.V.S.V.x", "SV_SV_x"},
        {"overlaps", "S.S.V.V.", "S.SV_V."},
        {"nothing to do", "function draw() {}", "function draw() {}"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(PitchScript(row.source), s_Prelude + row.result + "\nsetup();\n" + stubs) << row.name;
}

TEST(PitchScriptTest, AMentionedCallbackGetsNoStub) {
    EXPECT_EQ(PitchScript("// preRender"),
              s_Prelude + "// preRender\nsetup();\nfunction updateUIFlags() {};");
    EXPECT_EQ(PitchScript("'preRender updateUIFlags'"), s_Prelude + "'preRender updateUIFlags'\nsetup();\n");
}

} // namespace
