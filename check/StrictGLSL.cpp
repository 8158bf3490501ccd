#include "check/StrictGLSL.h"

#include <glslang/Public/ResourceLimits.h>
#include <glslang/Public/ShaderLang.h>

#include "packaging/ShaderLog.h"

namespace fxhost {

namespace {

// What the engine puts before the source, and the extension that it enables.
constexpr char s_Preamble[] = "#extension GL_ARB_shader_texture_lod : enable\n"
                              "#define SWIZZLE gbar\n"
                              "#define VEXEL 1\n";
constexpr int s_Version = 110;
constexpr int s_SourceString = 1; // index of the author's text among the strings

struct FrontEnd {
    FrontEnd() { glslang::InitializeProcess(); }
    ~FrontEnd() { glslang::FinalizeProcess(); }
};

} // namespace

std::vector<Diagnostic> CheckStrictly(const std::string& file, const std::string& source) {
    static const FrontEnd s_FrontEnd;
    const char* const strings[] = {s_Preamble, source.c_str()};
    glslang::TShader shader(EShLangFragment);
    shader.setStrings(strings, 2);
    std::vector<Diagnostic> found;
    if (shader.parse(GetDefaultResources(), s_Version, ENoProfile, false, false, EShMsgDefault))
        return found;
    for (const LogMessage& message : ParseShaderLog(shader.getInfoLog()))
        if (message.string == s_SourceString && message.line > 0 &&
            message.text.find("compilation terminated") == std::string::npos)
            found.push_back(
                {file,
                 message.line,
                 Severity::Warning,
                 "this driver accepts the line, but others refuse it, as shaders are GLSL 1.10: " +
                     message.text,
                 {}});
    return found;
}

} // namespace fxhost
