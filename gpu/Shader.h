#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "parameters/Parameter.h"

// A GLSL program: a fixed vertex shader and one effect fragment shader, drawn as a rectangle over the whole
// viewport. Owns its GL names; needs the engine's GL context current for everything but plain getters.
// Failures are texts in errorText(): a shader that has one draws nothing until a load succeeds.
class Shader {
public:
    // Handles of shaders carry this type tag.
    static constexpr std::uint32_t Tag = 0x02000000u;
    class Factory; // the registry defines it

    Shader() = default;
    Shader(const Shader&) = delete;
    Shader& operator=(const Shader&) = delete;
    virtual ~Shader();

    // Makes the GL objects anew and compiles the vertex shader.
    virtual bool init();
    virtual void release();
    // From the effect's file, or from source text. False for empty input, or with an error text.
    virtual bool load(const std::wstring& path);
    virtual bool load(const std::string& source);
    // Makes everything anew from what was loaded before: the source text or the file.
    virtual bool reload(bool fromSource);
    // Installs the program; false when the shader is unusable. Always before render.
    virtual bool begin();
    virtual void end();
    // Uploads the parameters and fills the viewport of the bound framebuffer. The texture's t runs upwards,
    // with flip downwards. The texture on unit N also sets the uniforms s_TextureNParams and TextureNParams
    // to (width, height, 1 / width, 1 / height), whatever was stored for them.
    virtual void render(bool flip);

    // init, then load from source, or where it is empty from the file name + ".frag" of the resource
    // directory. UTF-8 name.
    bool init(const std::string& name, const std::string& source);

    // Uniforms by name: the GL location or -1 (both are remembered until the next load); the index in
    // parameters() or -1; the parameter, or an empty one of type UNKNOWN that is shared by all misses.
    int getUniformLocation(const char* name);
    int getParamLocation(const char* name);
    Parameter& getParameterInfo(const std::string& name);

    // True while all three GL objects exist, whatever the error text says.
    bool usable() const { return m_Program != 0 && m_VertexShader != 0 && m_FragmentShader != 0; }
    const std::wstring& name() const { return m_Name; }
    const std::wstring& filePath() const { return m_FilePath; } // empty for shaders made from text
    const std::string& errorText() const { return m_ErrorText; }
    const std::string& source() const { return m_Source; } // as given, not rewritten
    // One for each active uniform, in GL's order. A LAYER's value is a GL texture name in word 0.
    std::vector<Parameter>& parameters() { return m_Parameters; }
    unsigned program() const { return m_Program; }
    unsigned vertexShader() const { return m_VertexShader; }
    unsigned fragmentShader() const { return m_FragmentShader; }

    static bool reverseFlip; // turns every shader's picture upside down; flip changes nothing then
    static Shader invalid;   // what failed look-ups return
    // Set by who owns the effect's parameters and files. A uniform of a global parameter's name takes that
    // parameter's type. Null: no parameters; an empty directory.
    static ParametersHolder* s_GlobalParameters;
    static const std::wstring* s_ResourceDirectory;

private:
    bool compile(unsigned shader, const std::string& text);
    bool link();
    void gatherUniforms();
    Parameter describeUniform(unsigned index); // array size 0: not a uniform to keep
    void applyParameters();
    static void applyNumbers(const Parameter& parameter);
    void applyTexture(const Parameter& parameter);
    void applyTextureParameters(int width, int height);
    void deleteObjects();

    std::wstring m_Name;
    std::wstring m_FilePath;
    std::string m_ErrorText;
    std::string m_Source;
    unsigned m_VertexShader = 0;
    unsigned m_FragmentShader = 0;
    unsigned m_Program = 0;
    unsigned m_TextureUnit = 0; // the next unit for a sampler of the draw that runs
    std::map<int, Parameter> m_ParametersByNumber;
    std::vector<Parameter> m_Parameters;
    std::map<std::string, int> m_UniformLocations;
    std::map<std::string, int> m_ParameterIndices; // may be stale after a load; see getParameterInfo
};
