#pragma once

#include <cstddef>
#include <string>

// The first occurrence of name in text at or after start that stands as a call or declaration; npos when
// there is none. Before the name must stand white space, in modes 1 and 2 also one of ( * + - / =, and no
// other character. After it and any white space must come "(", in mode 2 instead "." or white space.
std::size_t findRoutine(const std::string& text, const std::string& name, unsigned mode, std::size_t start);

// Rewrites effect shaders, which read and write red, green, blue, alpha, for textures that hold alpha, red,
// green, blue, and for the lack of cube maps. Works on raw text: comments and preprocessor lines are not told
// apart. The macro SWIZZLE must be defined in front of the result.
class ShaderPitcher {
public:
    // Renames main and appends one that turns gl_FragColor into stored order.
    static std::string addOutputSwizzle(const std::string& text);
    // Send texture2D and texture2DLod through functions that swizzle what they read.
    static std::string addTextureFlip(const std::string& text);
    static std::string addTextureLodFlip(const std::string& text);
    // Turns cube lookups into lookups in an equirectangular picture, and samplerCube into sampler2D.
    static std::string replaceCubemaps(const std::string& text);

    // All of the above in this order: what is compiled.
    static std::string Rewrite(const std::string& text);
    // How many lines Rewrite puts in front of the author's first one.
    static unsigned AddedLines(const std::string& text);
};
