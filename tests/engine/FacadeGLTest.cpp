#include "context/Context.h"
#include "tests/support/EffectTester.h"

namespace {

class FacadeGLTest : public EffectTester {};

TEST_F(FacadeGLTest, VersionFlagsAndTextsAreReadFromTheConfiguration) {
    Start({{"fx.js", ""},
           {"config.xml",
            "<FXNAME>Glow</FXNAME><MAJOR_VERSION>65</MAJOR_VERSION><MINOR_VERSION>258</MINOR_VERSION>"
            "<BUILD_VERSION>65538</BUILD_VERSION><STAGE_VERSION>6</STAGE_VERSION><FLAGS>12abc</FLAGS>"
            "<FLAGS2>x</FLAGS2><PRIVNUM>-1</PRIVNUM><ABOUT>A</ABOUT><AGEP_ID>I</AGEP_ID>"}});
    EXPECT_EQ(Engine().getVersion(), 1u | 2u << 6 | 2u << 14 | 2u << 30) << "each number is cut to its width";
    EXPECT_EQ(Engine().getFlags(), 12u);
    EXPECT_EQ(Engine().getFlags2(), 0u);
    EXPECT_EQ(Engine().getPrivNum(), 0xFFFFFFFFu);
    EXPECT_EQ(Engine().getString(PluginString::Name), "Glow");
    EXPECT_EQ(Engine().getString(PluginString::About), "A");
    EXPECT_EQ(Engine().getString(PluginString::HostId), "I");
    EXPECT_EQ(Engine().getString(PluginString{3}), "");
    for (const auto& [given, stored] :
         {std::pair{0.005f, 1.0f}, {5.0f, 1.0f}, {4.0f, 4.0f}, {0.01f, 0.01f}, {-1.0f, 1.0f}}) {
        Engine().setCompositionSize(3, 4, given);
        EXPECT_EQ(Context::Current().CompositionScale(), stored)
            << "pixel aspect ratios out of range become 1";
    }
}

TEST_F(FacadeGLTest, TheOutputHasTheSizeOfTheScriptOrElseOfTheInput) {
    Start({{"fx.js", R"js(
        function setup() {}
        function draw() {}
        function preRender(w, h, one) {
            if (w > 100) SV_setOutputExtent(w * 2, w > 500 ? one - 1 : h * 3);
        })js"}});
    unsigned w = 7, h = 8;
    const auto ask = [&](unsigned width, unsigned height) {
        Engine().preRender(width, height, w, h);
        return std::pair(w, h);
    };
    EXPECT_EQ(ask(640, 360), std::pair(1280u, 360u)) << "0 selects the height of the input";
    EXPECT_EQ(ask(64, 36), std::pair(64u, 36u));
    EXPECT_EQ(ask(200, 100), std::pair(400u, 300u));
    ReleaseInstance(m_Instance);
    EXPECT_EQ(ask(640, 360), std::pair(400u, 300u)) << "without an instance the size is unchanged";
}

TEST_F(FacadeGLTest, AnOutputBeyondTheTexturesOfOpenGLHasTheSizeOfTheInput) {
    Start(
        {{"fx.js", "function setup() {}\nfunction draw() {}\n"
                   "function preRender(w, h) { SV_setOutputExtent(w === 1 ? 1e9 : w, h === 1 ? -1 : h); }"}});
    for (const auto& [width, height] : {std::pair{1u, 7u}, {7u, 1u}}) {
        unsigned outWidth = 0, outHeight = 0;
        Engine().preRender(width, height, outWidth, outHeight);
        EXPECT_EQ(std::pair(outWidth, outHeight), std::pair(width, height));
    }
    EXPECT_EQ(m_Log.Errors().size(), 2u);
}

TEST_F(FacadeGLTest, InstancesKeepTheirValuesAndLayersIgnoreSetParam) {
    Start({{"fx.js",
            "function setup() { SV_initParam('x', SV_Type.FLOAT); SV_initParam('l', SV_Type.LAYER); }"}});
    void* const instances[] = {m_Instance, NewInstance()};
    Parameter::Value value;
    for (const unsigned i : {0u, 1u}) {
        Engine().setSequenceData(instances[i]);
        value.SetFloat(0, static_cast<float>(i + 1));
        for (const unsigned index : {0u, 1u, 2u})
            Engine().setParam(index, value);
    }
    EXPECT_EQ(Engine().getParam(0).value.Float(0), 2.0f);
    EXPECT_EQ(Engine().getParam(1).value.Float(0), 0.0f);
    EXPECT_EQ(&Engine().getParam(2), &Parameter::invalid);
    EXPECT_EQ(Parameter::invalid.value.Float(0), 0.0f);
    Engine().setSequenceData(instances[0]);
    EXPECT_EQ(Engine().getParam(0).value.Float(0), 1.0f);
    ReleaseInstance(instances[1]);
    EXPECT_EQ(Context::Current().CreateSequence(), 2u) << "the index of the second instance is free again";
}

TEST_F(FacadeGLTest, ABrokenShaderReplacesTheFrameByItsErrorText) {
    Start({{"fx.js", OneShaderScript(R"js(
        var frames = 0;
        function preRender() { if (frames++) SV_initShader("broken"); })js")},
           {"pixel.frag", PixelShader("vec4(1.0, 0.0, 0.0, 1.0)")},
           {"broken.frag", "void main() { gl_FragColor = undeclared; }"}});
    Frame(TestPicture<std::uint8_t>(160, 64)); // a red frame, whose program stays in use
    auto output = Frame(TestPicture<std::uint8_t>(160, 64));
    const std::string text = Engine().getErrorText();
    EXPECT_EQ(text.substr(0, text.find('\n', 22)), "Shader \"/broken.frag\"\nShader compilation failed:");
    EXPECT_EQ(text.back(), '\n');
    // White letters on a transparent background, in lines of 16 pixels: the name of the shader, the kind of
    // error, and the message of the driver.
    unsigned white[4] = {}, right[4] = {};
    for (unsigned y = 0; y < 64; ++y)
        for (unsigned x = 0; x < 160; ++x) {
            const auto* const p = output.At(x, y);
            ASSERT_TRUE((p[0] == 0 || p[0] == 255) && p[1] == p[0] && p[2] == p[0] && p[3] == p[0]);
            white[y / 16] += p[0] == 255;
            if (p[0] == 255)
                right[y / 16] = std::max(right[y / 16], x);
        }
    for (const unsigned line : {0u, 1u, 2u})
        EXPECT_GT(white[line], 60u) << line;
    EXPECT_LT(right[0] + 10, right[1]) << "a line of 21 letters and one of 26";
}

TEST_F(FacadeGLTest, ErrorTextInTheFrameHasTheAuthorsLine) {
    // Only the first call is rewritten, for which a line is put before the text.
    const auto frame = [&](const char* read) {
        Start({{"fx.js", OneShaderScript("")},
               {"pixel.frag", std::string("uniform sampler2D image;\nvoid main() {\n  vec4 here = ") + read +
                                  "texture2D(image, gl_TexCoord[0].xy));\n  gl_FragColor = undeclared;\n}"}});
        auto picture = Frame(TestPicture<std::uint8_t>(320, 96));
        EXPECT_NE(Engine().getErrorText().find("undeclared"), std::string::npos);
        return picture.channels;
    };
    EXPECT_TRUE(frame("max(vec4(0.0), ") == frame("max(vec4(0.0),"));
}

TEST_F(FacadeGLTest, CallbacksThatThrowAreReportedAndFramesAreRendered) {
    Start({{"fx.js", R"js(
        function setup() { SV_initParam("x", SV_Type.FLOAT); throw 1; }
        function preRender() { throw 2; }
        function draw() { throw 3; }
        function updateUIFlags() { throw 4; })js"}});
    Engine().preUIUpdate();
    Frame(TestPicture<std::uint16_t>(3, 3));
    EXPECT_EQ(Engine().getNumParams(), 1u);
    std::vector<std::string> where;
    for (const ScriptError& error : m_Log.Errors())
        where.push_back(error.evaluated);
    EXPECT_EQ(where, (std::vector<std::string>{"fx.js", "updateUIFlags", "preRender", "draw"}));
}

} // namespace
