#include "tests/fuzz/ScriptGenerator.h"

namespace {

// The kinds of arguments and results. Handles are kept by kind, in the script's object `kept`.
enum class Kind : char {
    Parameter = 'p',
    Shader = 's',
    Target = 'r',
    Texture = 't',
    Surface = 'u',
    Handle = 'h', // of any type
    Text = 'x',
    Type = 'T',
    Extent = 'e',
    Depth = 'd',
    Number = 'n',
    Value = 'v',
    Rectangle = 'R',
    Enum = 'g', // of OpenGL
};

// A native function: the kinds of its arguments, and the kind of its result (' ' when it is no handle).
struct Function {
    const char* name;
    const char* arguments;
    char result;
};

constexpr Function s_Functions[] = {
    {"SV_initParam", "xTx", 'p'},
    {"SV_getParamValue", "p", 'h'},
    {"SV_setParamValue", "pv", ' '},
    {"SV_setParamMinMax", "pnn", ' '},
    {"SV_setParamChoices", "px", ' '},
    {"SV_setParamPrecision", "pn", ' '},
    {"SV_setParamEnabled", "pn", ' '},
    {"SV_setParamFlags", "pn", ' '},
    {"SV_getParamFlags", "p", ' '},
    {"SV_initRenderTarget", "eed", 'r'},
    {"SV_blitRenderTarget", "rrnn", ' '},
    {"SV_getSurfaceDim", "h", ' '},
    {"SV_getSequenceRT", "", 'r'},
    {"SV_getSequenceTexture", "", 't'},
    {"SV_getTime", "", ' '},
    {"SV_release", "h", ' '},
    {"SV_setOutputExtent", "ee", ' '},
    {"SV_getContextExtent", "", ' '},
    {"SV_getInputOrigin", "", ' '},
    {"SV_initShader", "xx", 's'},
    {"SV_setShaderParam", "sp", ' '},
    {"SV_getShaderParamType", "sx", ' '},
    {"SV_renderShader", "srnR", ' '},
    {"SV_setShaderParamVal", "sxv", ' '},
    {"SV_getShaderError", "s", ' '},
    {"SV_initSurface", "eed", 'u'},
    {"SV_textureToSurface", "t", 'u'},
    {"SV_surfaceToTexture", "u", 't'},
    {"SV_surfaceQuantize", "unTTnn", ' '},
    {"SV_surfaceCopyTo", "urn", ' '},
    {"SV_initTexture", "xx", 't'},
    {"SV_setTextureParam", "tgg", ' '},
};
static_assert(std::size(s_Functions) == 32);

// Values that are wrong for most arguments.
constexpr const char* s_Hostile[] = {
    "0",
    "-1",
    "NaN",
    "Infinity",
    "-Infinity",
    "2147483647",
    "-2147483648",
    "4294967295",
    "1e308",
    "-1e-320",
    "undefined",
    "null",
    "true",
    "''",
    "'7'",
    "'a\\u0000b'",
    "'\\ud83d\\ude00'",
    "[]",
    "[1]",
    "[1,2,3,4,5,6,7,8,9]",
    "[NaN,Infinity,-1]",
    "{}",
    "{length: 4}",
    "{length: 4294967295}",
    "function () {}",
    "kept",
    "0x01000001",
    "0x02000001",
    "0x03000001",
    "0x04000001",
    "0x05000001",
    "0x00ffffff",
    "new Uint8Array(2)",
    "Math",
    "convert(0)",
    "convert(1)",
    "[convert(0), convert(1), 1, 1]",
    "failing",
};

constexpr const char* s_Texts[] = {"'good'",    "'broken'", "'cube'",    "'image'",  "'amount'", "'tint'",
                                   "'other'",   "'time'",   "'width'",   "'p0'",     "'p1'",     "''",
                                   "'One|Two'", "'|||'",    "'missing'", "'../good'"};
constexpr const char* s_Types[] = {"0", "1", "2",  "3",  "4",  "5",  "6",  "7",
                                   "8", "9", "10", "11", "12", "13", "14", "21"};
constexpr const char* s_Extents[] = {"1",  "2",  "3", "8",  "16",     "17",
                                     "33", "64", "0", "-5", "100000", "2147483647"};
constexpr const char* s_Depths[] = {"8", "16", "32", "8", "16", "32", "1", "4", "12", "15", "0", "-8", "64"};
constexpr const char* s_Numbers[] = {"0", "1", "0.5", "-0.25", "2", "100", "255", "true", "false"};
constexpr const char* s_Values[] = {"0.5",  "[1, 0]", "[1, 2, 3]", "[1, 0, 0, 1]",
                                    "true", "3",      "-2.5",      "handle('t', 0)"};
constexpr const char* s_Rectangles[] = {"undefined", "[0, 0, 8, 8]", "[2, 2, 4, 4]", "[-4, -4, 1e9, 1e9]",
                                        "[1, 2]"};
constexpr const char* s_Enums[] = {"0x2800", "0x2801", "0x2802", "0x2803", "0x2600", "0x2601", "0x2703",
                                   "0x812f", "0x2901", "0x8370", "0x1903", "0x8191", "1",      "0"};

constexpr char s_HandleKinds[] = "prstu";

// Helpers of the script, and objects to begin with. `depth` ends the recursion of conversions that call back
// in.
constexpr char s_Prelude[] = R"js(
var kept = {p: [], r: [], s: [], t: [], u: []}, depth = 0;
function keep(kind, value) { if (kept[kind].length < 24) kept[kind].push(value); return value; }
function handle(kind, n) { return kept[kind].length ? kept[kind][n % kept[kind].length] : 0; }
function again(f) { if (depth > 1) return 1; ++depth; try { f(); } catch (e) {} --depth; return 5; }
function convert(n) {
    var f = function () { return again(n ? converted1 : converted0); };
    return {valueOf: f, toString: f};
}
var failing = {valueOf: function () { throw new Error('no number'); }, toString: function () { throw 1; }};
function begin() {
    keep('p', SV_initParam('amount', SV_Type.FLOAT, 'Amount'));
    keep('p', SV_initParam('other', SV_Type.LAYER, 'Other'));
    keep('p', SV_initParam('tint', SV_Type.COLOR, 'Tint'));
    keep('s', SV_initShader('good'));
    keep('r', SV_initRenderTarget(8, 8, 8));
    keep('u', SV_initSurface(6, 5, 32));
    keep('t', SV_initTexture('image'));
}
function frame() {
    keep('r', SV_getSequenceRT());
    keep('t', SV_getSequenceTexture());
    SV_setShaderParamVal(handle('s', 0), 'image', SV_getSequenceTexture());
    SV_renderShader(handle('s', 0), SV_getSequenceRT(), true);
}
)js";

class Generator {
public:
    explicit Generator(FuzzInput& input) : m_Input(input) {}

    std::string Run() {
        m_Text = s_Prelude;
        Callback("converted0", "", 3);
        Callback("converted1", "", 3);
        Callback("preRender", "", 3);
        Callback("setup", "begin();", 5);
        Callback("updateUIFlags", "", 3);
        Callback("draw", "frame();", 12);
        return m_Text;
    }

private:
    void Callback(const std::string& name, const std::string& first, unsigned mostCalls) {
        m_Text += "function " + name + "() {\n" + first + "\n";
        for (unsigned calls = m_Input.Below(mostCalls + 1); calls > 0; --calls)
            Call(m_Input.Pick(s_Functions));
        m_Text += "}\n";
    }

    void Call(const Function& function) {
        std::string call = function.name;
        call += '(';
        for (const char* kind = function.arguments; *kind; ++kind)
            call += (kind == function.arguments ? "" : ", ") + Argument(static_cast<Kind>(*kind));
        call += ')';
        if (function.result != ' ')
            call =
                std::string("keep('") + (function.result == 'h' ? 't' : function.result) + "', " + call + ")";
        m_Text += "try { " + call + "; } catch (e) {}\n";
    }

    // A quarter of the arguments is hostile.
    std::string Argument(Kind kind) {
        const unsigned choice = m_Input.Byte();
        if (choice % 4 == 3)
            return m_Input.Pick(s_Hostile);
        const auto pick = [&](const auto& items) {
            return std::string(items[choice / 4 % std::size(items)]);
        };
        switch (kind) {
        case Kind::Text:
            return pick(s_Texts);
        case Kind::Type:
            return pick(s_Types);
        case Kind::Extent:
            return pick(s_Extents);
        case Kind::Depth:
            return pick(s_Depths);
        case Kind::Number:
            return pick(s_Numbers);
        case Kind::Value:
            return pick(s_Values);
        case Kind::Rectangle:
            return pick(s_Rectangles);
        case Kind::Enum:
            return pick(s_Enums);
        case Kind::Handle:
            return HandleOf(s_HandleKinds[m_Input.Below(sizeof s_HandleKinds - 1)], choice / 4);
        default:
            return HandleOf(static_cast<char>(kind), choice / 4);
        }
    }

    static std::string HandleOf(char kind, unsigned number) {
        return std::string("handle('") + kind + "', " + std::to_string(number) + ")";
    }

    FuzzInput& m_Input;
    std::string m_Text;
};

} // namespace

std::string GenerateScript(FuzzInput& input) {
    return Generator(input).Run();
}
