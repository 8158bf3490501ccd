#include <fstream>
#include <iterator>

#include "context/Context.h"
#include "platform/GL.h"
#include "scripting/Bindings.h"
#include "tests/support/ScriptRunner.h"

namespace {

// Arguments and results of the native functions, checked by scripts that do not draw.
class BindingsTest : public ScriptRunner {};

TEST_F(BindingsTest, ParameterValuesHaveTheShapeOfTheirType) {
    CheckFile("values.js");
}

TEST_F(BindingsTest, FlagsRangesAndChoicesAreStoredInTheParameter) {
    Check(R"js(
        var h = SV_initParam("f", SV_Type.FLOAT, "Label"), a = SV_initParam("a", SV_Type.ANGLE);
        is(SV_setParamFlags(h, SV_ParamFlags.ScaleByWidth | SV_ParamFlags.ScaleByHeight), true);
        is([SV_setParamPrecision(h, 4), SV_setParamPrecision(h, 3)], [true, true]);
        is(SV_getParamFlags(h), 0x03000018);
        is(SV_setParamEnabled(h, 0), true);
        is(SV_getParamFlags(h), 0x0300001A);
        is(SV_setParamEnabled(h, 7), true);
        is(SV_getParamFlags(h), 0x03000018);
        is(SV_setParamFlags(h, 0x80000008), true);
        is(SV_getParamFlags(h), 0x80000008 | 0);
        is(SV_setParamMinMax(h, -1, 2.5), true);
        is(SV_setParamMinMax(a, -1, 2.5), true);
        is(SV_setParamChoices(h, "one|two|three"), true);
        is(SV_setParamChoices(a, "alone"), true);
    )js");
    const Parameter& slider = Context::Current().GetParamByIdx(0);
    EXPECT_EQ(slider.label, "Label");
    EXPECT_EQ(slider.min.Float(0), -1.0f);
    EXPECT_EQ(slider.max.Float(0), 2.5f);
    EXPECT_EQ(slider.choices, "one|two|three");
    EXPECT_EQ(slider.choiceCount, 3u);
    const Parameter& angle = Context::Current().GetParamByIdx(1);
    EXPECT_EQ(angle.min.Float(0), -100.0f) << "only a slider has a range";
    EXPECT_EQ(angle.choiceCount, 0u) << "an entry without a bar counts as none";
}

TEST_F(BindingsTest, FunctionsRefuseHandlesOfOtherTypesAndOfReleasedResources) {
    CheckFile("refusals.js");
}

TEST_F(BindingsTest, ArgumentsWhoseConversionReleasesOrThrowsAreRefused) {
    CheckFile("conversions.js");
}

// U+1F3A8 and U+10FFFF need surrogate pairs; the last character of the label is half a pair.
TEST_F(BindingsTest, CharactersBeyondTheFirstPlaneArriveAsUtf8) {
    Check(R"js(
        SV_initParam("\uD83C\uDFA8", SV_Type.POPUP, "a\uD83C\uDFA8\uDBFF\uDFFF\u00E9\uD7FF\uDFA8");
        SV_setParamChoices(0x01000001, "🎨|two");
        SV_initShader("🎨", "// 🎨\nvoid main() {}");
    )js");
    const Parameter& parameter = Context::Current().GetParamByIdx(0);
    EXPECT_EQ(parameter.name, "\xF0\x9F\x8E\xA8");
    EXPECT_EQ(parameter.label, "a\xF0\x9F\x8E\xA8\xF4\x8F\xBF\xBF\xC3\xA9\xED\x9F\xBF\xEF\xBF\xBD");
    EXPECT_EQ(parameter.choices, "\xF0\x9F\x8E\xA8|two");
    const Shader& shader = Context::Current().GetResource<Shader>(0x02000001);
    EXPECT_EQ(shader.name(), L"\U0001F3A8");
    EXPECT_EQ(shader.source(), "// \xF0\x9F\x8E\xA8\nvoid main() {}");
    Load("function setup() { throw new Error('🎨'); }");
    EXPECT_EQ(m_Log.Errors().back().message, "Error: \xF0\x9F\x8E\xA8");
}

TEST_F(BindingsTest, ImpossibleOutputExtentsAreIgnoredAndReportedWithTheirLine) {
    Load("function setup() {\n  SV_setOutputExtent(0, 36);\n  SV_setOutputExtent(-5, 100);\n"
         "  SV_setOutputExtent(100, -Infinity);\n}");
    EXPECT_EQ(Context::Current().CurrentSequence()->OutputWidth(), 0u);
    EXPECT_EQ(Context::Current().CurrentSequence()->OutputHeight(), 36u);
    ASSERT_EQ(m_Log.Errors().size(), 2u);
    EXPECT_EQ(m_Log.Errors()[0].line, 3);
    EXPECT_EQ(m_Log.Errors()[1].line, 4);
    EXPECT_NE(m_Log.Errors()[0].message.find("SV_setOutputExtent(-5, 100) is ignored"), std::string::npos);
}

TEST_F(BindingsTest, TheEffectGuideDescribesEveryFunction) {
    std::ifstream file("docs/effects.md");
    const std::string guide{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    ASSERT_FALSE(guide.empty()) << "run from the source folder";
    for (const auto group : {ParameterBindings, RenderTargetBindings, ShaderBindings, TextureBindings,
                             SurfaceBindings, SequenceBindings})
        for (const NativeFunction& function : group())
            EXPECT_NE(guide.find("| `" + std::string(function.name) + "("), std::string::npos)
                << function.name;
}

TEST_F(BindingsTest, GLConstantsOfScriptsHaveTheValuesOfOpenGL) {
    const std::pair<const char*, int> rows[] = {{"NEAREST", GL_NEAREST},
                                                {"LINEAR", GL_LINEAR},
                                                {"TEXTURE_MAG_FILTER", GL_TEXTURE_MAG_FILTER},
                                                {"TEXTURE_MIN_FILTER", GL_TEXTURE_MIN_FILTER},
                                                {"TEXTURE_WRAP_S", GL_TEXTURE_WRAP_S},
                                                {"TEXTURE_WRAP_T", GL_TEXTURE_WRAP_T},
                                                {"CLAMP_TO_EDGE", GL_CLAMP_TO_EDGE},
                                                {"CLAMP_TO_BORDER", GL_CLAMP_TO_BORDER},
                                                {"MIRRORED_REPEAT", GL_MIRRORED_REPEAT}};
    for (const auto& [name, value] : rows)
        Check("is(['" + std::string(name) + "', SV_GL." + name + "], ['" + name + "', " +
              std::to_string(value) + "]);");
}

TEST_F(BindingsTest, FrameQueriesReturnZeroWithoutAFrameOrASequence) {
    Context& registry = Context::Current();
    const char* const ask = R"js(is([SV_getTime(), SV_getSequenceRT(), SV_getSequenceTexture(),
        SV_setOutputExtent(640.9, 360), SV_getInputOrigin()], [0, 0, 0, true, [0, 0]]);)js";
    Check(ask);
    EXPECT_EQ(registry.CurrentSequence()->OutputWidth(), 640u);
    EXPECT_EQ(registry.CurrentSequence()->OutputHeight(), 360u);
    registry.SetCurrentSequence(99); // there is no such sequence
    Check(ask);
}

} // namespace
