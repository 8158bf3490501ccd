#pragma once

#include <cstddef>
#include <string>

// Finds the first occurrence of a name, at or after start, that is a call or a declaration; npos when there
// is none. The character before the name must be white space or, in modes 1 and 2, one of ( * + - / =. The
// first character after the name that is not white space must be "(". In mode 2 it must be ".", or white
// space must follow the name directly.
// NOLINTNEXTLINE(readability-identifier-naming): like the functions of ShaderPitcher
std::size_t findRoutine(const std::string& text, const std::string& name, unsigned mode, std::size_t start);

// Rewrites the shaders of effects. Effects read and write red, green, blue, alpha, while textures store
// alpha, red, green, blue; and effects may use cube maps, which the engine replaces by equirectangular
// textures. The rewriting treats comments and preprocessor lines like all other text. The result needs the
// macro SWIZZLE to be defined.
class ShaderPitcher {
public:
    // Renames main and appends a new main that reorders gl_FragColor to the stored order.
    static std::string addOutputSwizzle(const std::string& text);
    // Replace calls of texture2D and texture2DLod by calls of functions that reorder what they read.
    static std::string addTextureFlip(const std::string& text);
    static std::string addTextureLodFlip(const std::string& text);
    // Replaces cube map look-ups by look-ups in an equirectangular texture, and samplerCube by sampler2D.
    static std::string replaceCubemaps(const std::string& text);

    // Does all of the above in this order. The result is what is compiled.
    static std::string rewrite(const std::string& text);
    // Returns the number of lines that rewrite inserts before the author's first line.
    static unsigned addedLines(const std::string& text);
};
