#include "gpu/ShaderPitcher.h"

#include <algorithm>
#include <string_view>

namespace {

constexpr std::string_view s_White = " \t\n\v\f\r";
constexpr std::string_view s_CallStarts = "(*+-/=";

// A read function whose calls are replaced by calls of a wrapper, which is inserted before the text.
struct ReadRoutine {
    const char* name;
    const char* replacement;
    const char* wrapper;
};
constexpr ReadRoutine s_Texture2D = {
    "texture2D", "repl_texture2D",
    "vec4 repl_texture2D(sampler2D a,vec2 b) { return texture2D(a,b).SWIZZLE; }"};
constexpr ReadRoutine s_Texture2DLod = {
    "texture2DLod", "repl_texture2DLod",
    "vec4 repl_texture2DLod(sampler2D a,vec2 b,float c) { return texture2DLod(a,b,c).SWIZZLE; }"};
// Converts a direction to longitude and latitude. The constants differ slightly from pi and twice pi; effects
// are tuned to them.
constexpr ReadRoutine s_TextureCube = {
    "textureCube", "repl_textureCube",
    "vec4 repl_textureCube(sampler2D a,vec3 b) { vec2 uv = vec2( (atan( b.x, b.z ) + 3.141526f)/6.283052f, "
    "acos(b.y)/3.141526f ); return texture2D(a,uv).SWIZZLE; }"};

bool IsWhite(char c) {
    return s_White.find(c) != std::string_view::npos;
}

bool BeginsIdentifier(const std::string& text, std::size_t position, unsigned mode) {
    if (position == 0)
        return false;
    const char before = text[position - 1];
    return IsWhite(before) || (mode != 0 && s_CallStarts.find(before) != std::string_view::npos);
}

bool EndsIdentifier(const std::string& text, std::size_t end, unsigned mode) {
    const std::size_t next = text.find_first_not_of(s_White, end);
    const char follower = next == std::string::npos ? '\0' : text[next];
    if (mode == 2)
        return follower == '.' || (end < text.size() && IsWhite(text[end]));
    return follower == '(';
}

// Replaces every accepted occurrence from the second character on. Returns whether there was one.
bool ReplaceAll(std::string& text, const std::string& name, const char* replacement, unsigned mode) {
    bool replaced = false;
    for (std::size_t p = 0; (p = findRoutine(text, name, mode, p + 1)) != std::string::npos; replaced = true)
        text.replace(p, name.size(), replacement);
    return replaced;
}

std::string Redirect(const std::string& text, const ReadRoutine& routine) {
    std::string result = text;
    if (!ReplaceAll(result, routine.name, routine.replacement, 1))
        return result;
    return routine.wrapper + ("\n" + result);
}

std::ptrdiff_t CountLineBreaks(const std::string& text) {
    return std::count(text.begin(), text.end(), '\n');
}

std::string RewriteReads(const std::string& text) {
    return ShaderPitcher::replaceCubemaps(
        ShaderPitcher::addTextureLodFlip(ShaderPitcher::addTextureFlip(text)));
}

} // namespace

std::size_t findRoutine(const std::string& text, const std::string& name, unsigned mode, std::size_t start) {
    for (std::size_t p = text.find(name, start); p != std::string::npos; p = text.find(name, p + 1))
        if (BeginsIdentifier(text, p, mode) && EndsIdentifier(text, p + name.size(), mode))
            return p;
    return std::string::npos;
}

std::string ShaderPitcher::addOutputSwizzle(const std::string& text) {
    const std::string name = "main";
    const std::size_t p = findRoutine(text, name, 0, 0);
    if (p == std::string::npos)
        return text;
    std::string result = text;
    result.replace(p, name.size(), "repl_main");
    return result + "\nvoid main() { repl_main(); gl_FragColor = gl_FragColor.argb; }";
}

std::string ShaderPitcher::addTextureFlip(const std::string& text) {
    return Redirect(text, s_Texture2D);
}

std::string ShaderPitcher::addTextureLodFlip(const std::string& text) {
    return Redirect(text, s_Texture2DLod);
}

std::string ShaderPitcher::replaceCubemaps(const std::string& text) {
    std::string result = Redirect(text, s_TextureCube);
    ReplaceAll(result, "samplerCube", "sampler2D", 2);
    return result;
}

std::string ShaderPitcher::rewrite(const std::string& text) {
    return RewriteReads(addOutputSwizzle(text));
}

unsigned ShaderPitcher::addedLines(const std::string& text) {
    const std::string swizzled = addOutputSwizzle(text);
    return static_cast<unsigned>(CountLineBreaks(RewriteReads(swizzled)) - CountLineBreaks(swizzled));
}
