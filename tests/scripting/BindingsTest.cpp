#include <fstream>
#include <iterator>

#include "context/Context.h"
#include "platform/GL.h"
#include "scripting/Bindings.h"
#include "tests/support/ScriptRunner.h"

namespace {

// What the native functions take, give back and refuse, told in script. Nothing here draws.
class BindingsTest : public ScriptRunner {};

TEST_F(BindingsTest, ValuesTravelInTheShapeOfTheirType) {
    Check(R"js(
        var f = SV_initParam("f", SV_Type.FLOAT), a = SV_initParam("a", SV_Type.ANGLE, "Angle");
        var p = SV_initParam("p", SV_Type.POINT), q = SV_initParam("q", SV_Type.POINT2D);
        var c = SV_initParam("c", SV_Type.COLOR), b = SV_initParam("b", SV_Type.BOOL);
        var n = SV_initParam("n", SV_Type.POPUP), t = SV_initParam("t", SV_Type.TEXTURE);
        is([f, a, p], [0x01000001, 0x01000002, 0x01000003]);
        is(SV_setParamValue(f, 0.1), true);
        is(SV_getParamValue(f), 0.10000000149011612);  // the nearest single-precision number
        is(SV_setParamValue(a, "90"), true);
        is(SV_getParamValue(a), 90);
        is(SV_setParamValue(p, [1, 2, 3, 4]), true);
        is(SV_getParamValue(p), [1, 2, 3]);
        is(SV_setParamValue(p, 5), true);              // not an array: nothing changes
        is(SV_getParamValue(p), [1, 2, 3]);
        is(SV_setParamValue(q, [7.5, -1]), true);
        is(SV_getParamValue(q), [7.5, -1]);
        is(SV_setParamValue(c, [0.5, 0.25, 1]), true); // a missing element reads as NaN
        is(SV_getParamValue(c), [0.5, 0.25, 1, NaN]);
        is(SV_setParamValue(b, true), true);
        is(SV_getParamValue(b), 1);
        is(SV_setParamValue(n, 4.9), true);
        is(SV_getParamValue(n), 4);
        is(SV_setParamValue(t, 0x04000007), true);
        is(SV_getParamValue(t), 0x04000007);
        // Types that carry no value give the handle back, as it was given.
        [SV_Type.PATH, SV_Type.GROUP_START, SV_Type.GROUP_END, SV_Type.UNKNOWN, 13, -1].forEach(function (type) {
            var h = SV_initParam("x", type);
            is(SV_setParamValue(h, 3), true);
            is(SV_getParamValue(h), h);
            is(SV_getParamValue(String(h)), h);
        });
    )js");
}

TEST_F(BindingsTest, FlagsRangesAndChoicesReachTheParameter) {
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
    EXPECT_EQ(angle.min.Float(0), -100.0f) << "only sliders have a range";
    EXPECT_EQ(angle.choiceCount, 0u) << "no bar, no entry";
}

TEST_F(BindingsTest, EveryFunctionRefusesWhatIsNoResourceOfItsOwn) {
    Check(R"js(
        var surfaceLike = 0x06000001, gone = SV_initParam("gone", SV_Type.FLOAT);
        is(SV_release(gone), true);
        [0, 5, gone, surfaceLike, 0x02000001, undefined, "text", null, -1, NaN, 1e300].forEach(function (h) {
            [SV_getParamValue(h), SV_setParamValue(h, 1), SV_setParamMinMax(h, 0, 1), SV_setParamChoices(h, "a|b"),
             SV_setParamPrecision(h, 1), SV_setParamEnabled(h, 1), SV_setParamFlags(h, 1), SV_getParamFlags(h),
             SV_blitRenderTarget(h, h), SV_getSurfaceDim(h), SV_setShaderParam(h, h), SV_renderShader(h, h),
             SV_setShaderParamVal(h, "x", 1), SV_setTextureParam(h, SV_GL.TEXTURE_WRAP_S, SV_GL.REPEAT)
            ].forEach(function (answer, i) { is([i, answer], [i, false]); });
            is(SV_getShaderParamType(h, "x"), 0);
            is(SV_release(h), true);
        });
        is(SV_getShaderError(surfaceLike), "Id is not a shader!");
        is(SV_getShaderError(0x02000001), "");
        is([SV_initParam(), SV_initParam("alone"), SV_initShader(), SV_initTexture()], [0, 0, 0, 0]);
        is(SV_setTextureParam(0x04000001, SV_GL.TEXTURE_WRAP_S), false);
        var empty = SV_initSurface(4, 4, 8);
        is([empty, SV_initSurface(1)], [0x06000001, 0x06000002]);
        is(SV_surfaceQuantize(empty, 0, 9, 1, 0, false), false); // it has no pixels yet
        is(SV_surfaceQuantize(0x06000009, 0, 9, 1, 0, false), false);
        is(SV_surfaceQuantize(gone, 0, 9, 1, 0, false), false);
        is([SV_surfaceCopyTo(empty, 0x04000001), SV_surfaceCopyTo(empty, gone), SV_surfaceToTexture(gone)],
           [false, false, false]);
        is(SV_textureToSurface(0), 0);
    )js");
}

TEST_F(BindingsTest, ScriptCodeInsideArgumentsDoesNoHarm) {
    Check(R"js(
        var h = SV_initParam("x", SV_Type.FLOAT), c = SV_initParam("c", SV_Type.COLOR), caught = 0;
        is(SV_setParamValue(h, { valueOf: function () { SV_release(h); return 3; } }), false);
        is(SV_setParamValue(c, [1, 2, { valueOf: function () { SV_release(c); return 3; } }, 4]), false);
        var thrower = { valueOf: function () { throw new Error("no"); }, toString: function () { throw 1; } };
        [function () { SV_setParamMinMax(0, thrower, 1); }, function () { SV_initParam(thrower, 1); },
         function () { SV_initParam("x", thrower); }, function () { SV_initParam("x", 1, thrower); },
         function () { SV_initShader("x", thrower); }, function () { SV_renderShader(1, 2, 3, [thrower]); }
        ].forEach(function (call) { try { call(); } catch (e) { caught += 1; } });
        is(caught, 6);
    )js");
}

TEST_F(BindingsTest, TheAuthorsGuideNamesEveryFunction) {
    std::ifstream file("docs/effects.md");
    const std::string guide{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    ASSERT_FALSE(guide.empty()) << "run from the source folder";
    for (const auto group : {ParameterBindings, RenderTargetBindings, ShaderBindings, TextureBindings,
                             SurfaceBindings, SequenceBindings})
        for (const NativeFunction& function : group())
            EXPECT_NE(guide.find("| `" + std::string(function.name) + "("), std::string::npos)
                << function.name;
}

TEST_F(BindingsTest, ScriptsKnowTheNumbersOfGL) {
    std::string numbers;
    for (const int number :
         {GL_NEAREST, GL_LINEAR, GL_TEXTURE_MAG_FILTER, GL_TEXTURE_MIN_FILTER, GL_TEXTURE_WRAP_S,
          GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE, GL_CLAMP_TO_BORDER, GL_MIRRORED_REPEAT})
        numbers += std::to_string(number) + ",";
    Check("var g = SV_GL; is([g.NEAREST, g.LINEAR, g.TEXTURE_MAG_FILTER, g.TEXTURE_MIN_FILTER, "
          "g.TEXTURE_WRAP_S,"
          " g.TEXTURE_WRAP_T, g.CLAMP_TO_EDGE, g.CLAMP_TO_BORDER, g.MIRRORED_REPEAT, ''].join(), '" +
          numbers + "');");
}

TEST_F(BindingsTest, WithoutAFrameOrASequenceThereIsNothingToTell) {
    Context& registry = Context::Current();
    const char* const ask =
        "is([SV_getTime(), SV_getSequenceRT(), SV_getSequenceTexture(),"
        " SV_setOutputExtent(640.9, 360), SV_getInputOrigin()], [0, 0, 0, true, [0, 0]]);";
    Check(ask);
    EXPECT_EQ(registry.CurrentSequence()->OutputWidth(), 640u);
    EXPECT_EQ(registry.CurrentSequence()->OutputHeight(), 360u);
    registry.SetCurrentSequence(99); // no such sequence
    Check(ask);
}

} // namespace
