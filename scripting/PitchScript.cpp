#include "scripting/PitchScript.h"

#include <algorithm>

namespace {

constexpr char s_Prelude[] = R"script(

var SV_Type = { UNKNOWN : 0, FLOAT : 1, POINT : 2, COLOR : 3, LAYER : 4, POINT2D : 5, TEXTURE : 6, PATH : 7, BOOL : 8, POPUP : 9, GROUP_START : 10, GROUP_END : 11, ANGLE : 12 };

var SV_GL = {
  RED                   : 0x1903,
  GREEN                 : 0x1904,
  BLUE                  : 0x1905,
  ALPHA                 : 0x1906,

  NEAREST               : 0x2600,
  LINEAR                : 0x2601,
  NEAREST_MIPMAP_NEAREST: 0x2700,
  LINEAR_MIPMAP_NEAREST : 0x2701,
  NEAREST_MIPMAP_LINEAR : 0x2702,
  LINEAR_MIPMAP_LINEAR  : 0x2703,

  TEXTURE_MAG_FILTER    : 0x2800,
  TEXTURE_MIN_FILTER    : 0x2801,
  TEXTURE_WRAP_S        : 0x2802,
  TEXTURE_WRAP_T        : 0x2803,
  CLAMP                 : 0x2804,
  REPEAT                : 0x2805,

  CLAMP_TO_EDGE         : 0x812F,
  CLAMP_TO_BORDER       : 0x812D,
  MIRRORED_REPEAT       : 0x8370,

  TEXTURE_MIN_LOD       : 0x813A,
  TEXTURE_MAX_LOD       : 0x813B,
  TEXTURE_BASE_LEVEL    : 0x813C,
  TEXTURE_MAX_LEVEL     : 0x813D,

  TEXTURE_LOD_BIAS      : 0x8501,

  /* ------------------------- GL_ARB_texture_swizzle ------------------------ */
  TEXTURE_SWIZZLE_R     : 0x8E42,
  TEXTURE_SWIZZLE_G     : 0x8E43,
  TEXTURE_SWIZZLE_B     : 0x8E44,
  TEXTURE_SWIZZLE_A     : 0x8E45
};

var SV_ParamFlags = {
  NONE : 0,
  ScaleByWidth : 8,
  ScaleByHeight : 16,
  RemoveScale : 32
};

)script";
static_assert(sizeof s_Prelude - 1 == 1337);

constexpr char s_Tail[] = "\nsetup();\n";
constexpr char s_Import[] = "import S;";
constexpr char s_Namespace[] = "S.V.";
constexpr char s_NamespacePrefix[] = "SV_";

struct OptionalCallback {
    const char* name;
    const char* stub;
};
// A name counts as mentioned wherever it occurs in the text, also in comments and strings.
constexpr OptionalCallback s_OptionalCallbacks[] = {
    {"preRender", "function preRender(w,h) {};"},
    {"updateUIFlags", "function updateUIFlags() {};"},
};

} // namespace

std::string PitchScript(const std::string& source) {
    std::string text = s_Prelude + source + s_Tail;
    // Only the first import is removed. A second one is a syntax error of the author.
    if (const auto import = text.find(s_Import); import != std::string::npos)
        text.replace(import, sizeof s_Import - 1, " ");
    // Each search starts at the beginning, because a replacement can complete another occurrence.
    for (auto at = text.find(s_Namespace); at != std::string::npos; at = text.find(s_Namespace))
        text.replace(at, sizeof s_Namespace - 1, s_NamespacePrefix);
    for (const OptionalCallback& callback : s_OptionalCallbacks)
        if (text.find(callback.name) == std::string::npos)
            text += callback.stub;
    return text;
}

int AuthorLine(int line) {
    return line > ScriptPreludeLines() ? line - ScriptPreludeLines() : 0;
}

int ScriptPreludeLines() {
    static const auto s_Lines =
        static_cast<int>(std::count(s_Prelude, s_Prelude + sizeof s_Prelude - 1, '\n'));
    return s_Lines;
}
