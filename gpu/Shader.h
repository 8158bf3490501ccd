#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "parameters/Parameter.h"

// A GLSL program of a fixed vertex shader and one fragment shader of the effect. It is drawn as a rectangle
// that fills the viewport. Owns its GL names. All functions but the plain getters need the engine's GL
// context to be current. errorText() describes the last failure; a shader with an error text draws nothing
// until a load succeeds.
class Shader {
public:
    // Handles of shaders carry this type tag.
    static constexpr std::uint32_t Tag = 0x02000000u;
    class Factory; // the registry defines it

    Shader() = default;
    Shader(const Shader&) = delete;
    Shader& operator=(const Shader&) = delete;
    virtual ~Shader();

    // Creates the GL objects, replacing earlier ones, and compiles the vertex shader.
    virtual bool init();
    // Deletes the GL objects and clears the error text.
    virtual void release();
    // Compiles a file of the effect, or source text. False for empty input or, with an error text, on
    // failure.
    virtual bool load(const std::wstring& path);
    virtual bool load(const std::string& source);
    // Creates the GL objects again and compiles what was loaded before: the source text or the file.
    virtual bool reload(bool fromSource);
    // Makes the program current. Call it before render. False when the shader cannot be used.
    virtual bool begin();
    virtual void end();
    // Uploads the parameters and fills the viewport of the bound framebuffer. Texture coordinate t is 0 at
    // the bottom, or with flip at the top. The texture on unit N also sets the uniforms s_TextureNParams and
    // TextureNParams to (width, height, 1 / width, 1 / height) in pixels, which overrides their stored
    // values.
    virtual void render(bool flip);

    // Calls init and loads the source text. An empty text loads the file name + ".frag" in the resource
    // directory. The name is UTF-8.
    bool init(const std::string& name, const std::string& source);

    // Returns the GL location of a uniform, or -1. Both results are cached until the next load.
    int getUniformLocation(const char* name);
    // Returns the index of a uniform in parameters(), or -1.
    int getParamLocation(const char* name);
    // Returns the parameter of a uniform. For unknown names this is an empty one of type UNKNOWN, which all
    // unknown names share.
    Parameter& getParameterInfo(const std::string& name);

    // True while all three GL objects exist, even when there is an error text.
    bool usable() const { return m_Program != 0 && m_VertexShader != 0 && m_FragmentShader != 0; }
    const std::wstring& name() const { return m_Name; }
    const std::wstring& filePath() const { return m_FilePath; } // empty for shaders made from text
    const std::string& errorText() const { return m_ErrorText; }
    std::string authorErrorText() const;                   // the same with the line numbers of source()
    const std::string& source() const { return m_Source; } // as given, not rewritten
    // One parameter for each active uniform, in OpenGL's order. Word 0 of a LAYER's value is a GL texture
    // name.
    std::vector<Parameter>& parameters() { return m_Parameters; }
    unsigned program() const { return m_Program; }
    unsigned vertexShader() const { return m_VertexShader; }
    unsigned fragmentShader() const { return m_FragmentShader; }

    static bool reverseFlip; // draws every shader as with flip
    static Shader invalid;   // returned by failed look-ups
    // The owner of the effect's parameters and files sets these. A uniform that has the name of a global
    // parameter gets that parameter's type. Null means no parameters, and an empty directory.
    static ParametersHolder* s_GlobalParameters;
    static const std::wstring* s_ResourceDirectory;

private:
    bool compile(unsigned shader, const std::string& text);
    bool link();
    void gatherUniforms();
    Parameter describeUniform(unsigned index); // its array size is 0 when the uniform is to be skipped
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
    unsigned m_TextureUnit = 0; // for the next sampler of the current draw
    std::map<int, Parameter> m_ParametersByNumber;
    std::vector<Parameter> m_Parameters;
    std::map<std::string, int> m_UniformLocations;
    std::map<std::string, int>
        m_ParameterIndices; // may be out of range after a load; getParameterInfo checks it
};
