#include <algorithm>

#include "context/Context.h"
#include "scripting/Scripting.h"
#include "tests/support/EffectTester.h"

namespace {

class FacadeGLTest : public EffectTester {};

TEST_F(FacadeGLTest, OneObjectWhateverIsAsked) {
    EXPECT_EQ(GetPlugin(0), GetPlugin(7));
}

TEST_F(FacadeGLTest, TheConfigurationIsPackedAndParsed) {
    Start({{"fx.js", ""},
           {"config.xml",
            "<FXNAME>Glow</FXNAME><MAJOR_VERSION>1</MAJOR_VERSION><MINOR_VERSION>2</MINOR_VERSION>"
            "<BUILD_VERSION>3</BUILD_VERSION><STAGE_VERSION>0</STAGE_VERSION><FLAGS>12abc</FLAGS>"
            "<FLAGS2>x</FLAGS2><PRIVNUM>-1</PRIVNUM><ABOUT>A</ABOUT><AGEP_ID>I</AGEP_ID>"}});
    EXPECT_EQ(Engine().getVersion(), 0x0000C081u);
    EXPECT_EQ(Engine().getFlags(), 12u);
    EXPECT_EQ(Engine().getFlags2(), 0u);
    EXPECT_EQ(Engine().getPrivNum(), 0xFFFFFFFFu);
    EXPECT_EQ(Engine().getString(PluginString::Name), "Glow");
    EXPECT_EQ(Engine().getString(PluginString::About), "A");
    EXPECT_EQ(Engine().getString(PluginString::HostId), "I");
    EXPECT_EQ(Engine().getString(PluginString{3}), "");
}

TEST_F(FacadeGLTest, VersionFieldsAreCutToTheirWidth) {
    Start({{"fx.js", ""},
           {"config.xml", "<MAJOR_VERSION>64</MAJOR_VERSION><MINOR_VERSION>257</MINOR_VERSION>"
                          "<BUILD_VERSION>65537</BUILD_VERSION><STAGE_VERSION>7</STAGE_VERSION>"}});
    EXPECT_EQ(Engine().getVersion(), 1u << 6 | 1u << 14 | 3u << 30);
}

TEST_F(FacadeGLTest, PixelAspectsOutOfRangeBecomeOne) {
    Start({{"fx.js", ""}});
    for (const auto& [given, stored] :
         {std::pair{0.005f, 1.0f}, {5.0f, 1.0f}, {4.0f, 4.0f}, {0.01f, 0.01f}, {-1.0f, 1.0f}}) {
        Engine().setCompositionSize(3, 4, given);
        EXPECT_EQ(Context::Current().CompositionScale(), stored);
    }
}

TEST_F(FacadeGLTest, TheOutputSizeIsTheScriptsOrTheInputs) {
    Start({{"fx.js", "function setup() {} function draw() {}\n"
                     "function preRender(w, h, one) { if (w > 100) SV_setOutputExtent(800, one - 1); }"}});
    unsigned w = 7, h = 8;
    Engine().preRender(64, 36, w, h);
    EXPECT_EQ(std::pair(w, h), std::pair(64u, 36u));
    Engine().preRender(640, 360, w, h);
    EXPECT_EQ(std::pair(w, h), std::pair(800u, 360u));
    Engine().setSequenceData(nullptr);
    w = h = 5;
    Engine().preRender(640, 360, w, h);
    EXPECT_EQ(std::pair(w, h), std::pair(5u, 5u)) << "without an instance nothing is touched";
}

TEST_F(FacadeGLTest, InstancesKeepTheirValuesAndLayersAreNotSetFromOutside) {
    Start({{"fx.js",
            "function setup() { SV_initParam('x', SV_Type.FLOAT); SV_initParam('l', SV_Type.LAYER); }"}});
    void* const other = NewInstance();
    Parameter::Value one, two;
    one.SetFloat(0, 1);
    two.SetFloat(0, 2);
    Engine().setSequenceData(m_Instance);
    Engine().setParam(0, one);
    Engine().setSequenceData(other);
    Engine().setParam(0, two);
    Engine().setParam(1, two);
    Engine().setParam(2, two);
    EXPECT_EQ(Engine().getParam(0).value.Float(0), 2.0f);
    EXPECT_EQ(Engine().getParam(1).value.Float(0), 0.0f);
    EXPECT_EQ(&Engine().getParam(2), &Parameter::invalid);
    EXPECT_EQ(Parameter::invalid.value.Float(0), 0.0f);
    Engine().setSequenceData(m_Instance);
    EXPECT_EQ(Engine().getParam(0).value.Float(0), 1.0f);
    ReleaseInstance(other);
    Engine().releaseSequenceData(nullptr);
}

TEST_F(FacadeGLTest, ABrokenShaderStopsDrawAndShowsItsErrors) {
    Start({{"fx.js", OneShaderScript("function draw() { throw new Error('draw ran'); }")},
           {"pixel.frag", "void main() { gl_FragColor = oops; }"}});
    static int s_Draws;
    s_Draws = 0;
    Scripting::ErrorCallback = [](const ScriptError&) { ++s_Draws; };
    TestPicture<std::uint8_t> input(160, 64);
    std::fill(input.channels.begin(), input.channels.end(), std::uint8_t{77});
    auto output = Frame(input);
    Scripting::ErrorCallback = nullptr;
    EXPECT_EQ(s_Draws, 0);
    const std::string text = Engine().getErrorText();
    EXPECT_EQ(text.substr(0, text.find('\n', 21)), "Shader \"/pixel.frag\"\nShader compilation failed:");
    EXPECT_EQ(text.back(), '\n');
    // White letters on nothing: four lines of 16 pixels fit, the first one highest.
    const auto whiteIn = [&](unsigned top, unsigned bottom) {
        long white = 0;
        for (unsigned y = top; y < bottom; ++y)
            for (unsigned x = 0; x < 160; ++x) {
                const std::uint8_t* const p = output.At(x, y);
                const bool isWhite = p[0] == 255 && p[1] == 255 && p[2] == 255 && p[3] == 255;
                const bool isEmpty = p[0] == 0 && p[1] == 0 && p[2] == 0 && p[3] == 0;
                EXPECT_TRUE(isWhite || isEmpty);
                white += isWhite;
            }
        return white;
    };
    EXPECT_GT(whiteIn(0, 16), 60) << "the shader's name";
    EXPECT_GT(whiteIn(16, 32), 60) << "what went wrong";
    EXPECT_GT(whiteIn(32, 48), 60) << "the driver's line";
}

TEST_F(FacadeGLTest, ScriptsThatThrowEverywhereStillGiveFrames) {
    Start({{"fx.js", "function setup() { SV_initParam('x', SV_Type.FLOAT); throw 1; }\n"
                     "function preRender() { throw 2; }\nfunction draw() { throw 3; }\n"
                     "function updateUIFlags() { throw 4; }"}});
    static std::vector<std::string> s_Where;
    s_Where.clear();
    Scripting::ErrorCallback = [](const ScriptError& error) { s_Where.push_back(error.evaluated); };
    Engine().preUIUpdate();
    const auto output = Frame(TestPicture<std::uint16_t>(3, 3));
    {
        const ContextKeeper keeper;
        Engine().resetup();
    }
    Scripting::ErrorCallback = nullptr;
    EXPECT_EQ(output.width, 3u);
    EXPECT_EQ(Engine().getNumParams(), 1u);
    EXPECT_EQ(s_Where, (std::vector<std::string>{"updateUIFlags", "preRender", "draw", "fx.js"}));
}

} // namespace
