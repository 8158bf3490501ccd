#include "gpu/Shader.h"

#include <algorithm>

#include "gpu/AuthorLines.h"
#include "gpu/GLErrors.h"
#include "gpu/ShaderPitcher.h"
#include "platform/GL.h"
#include "platform/ShaderPrologue.h"
#include "utils/Utils.h"

bool Shader::reverseFlip = false;
Shader Shader::invalid;
ParametersHolder* Shader::s_GlobalParameters = nullptr;
const std::wstring* Shader::s_ResourceDirectory = nullptr;

namespace {

// Precedes every source. SWIZZLE is the order in which the texture wrappers read the channels. VEXEL lets
// effects detect this engine.
constexpr const char* s_Preamble = "#define SWIZZLE gbar\n#define VEXEL 1\n";

constexpr const char* s_VertexSource =
    "void main() { gl_Position = gl_Vertex; gl_TexCoord[0] = gl_MultiTexCoord0; "
    "gl_TexCoord[1] = gl_MultiTexCoord1; gl_TexCoord[2] = gl_MultiTexCoord2; "
    "gl_TexCoord[3] = gl_MultiTexCoord3; gl_FrontColor = gl_Color; }";

std::string Preamble(const std::string& text) {
    return PlatformShaderPrologue(text) + std::string(s_Preamble);
}

constexpr GLsizei s_LogLength = 4096;

struct Corner {
    GLint x, y;
};
constexpr Corner s_Corners[] = {{-1, -1}, {1, -1}, {1, 1}, {-1, 1}};

// Fills the viewport with texture coordinates from 0 to 1. The current matrices have no influence.
void DrawQuad(bool flipped) {
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
    glLoadIdentity();
    glMatrixMode(GL_PROJECTION);
    glPushMatrix();
    glLoadIdentity();
    glBegin(GL_QUADS);
    for (const Corner& corner : s_Corners) {
        glTexCoord2i(corner.x > 0, (corner.y > 0) != flipped);
        glVertex3i(corner.x, corner.y, 0);
    }
    glEnd();
    glPopMatrix();
    glMatrixMode(GL_MODELVIEW);
    glPopMatrix();
}

} // namespace

Shader::~Shader() {
    deleteObjects();
}

void Shader::deleteObjects() {
    if (m_VertexShader)
        glDeleteShader(m_VertexShader);
    if (m_FragmentShader)
        glDeleteShader(m_FragmentShader);
    if (m_Program)
        glDeleteProgram(m_Program);
    m_VertexShader = m_FragmentShader = m_Program = 0;
}

void Shader::release() {
    deleteObjects();
    m_ErrorText.clear();
}

bool Shader::init() {
    release();
    m_VertexShader = glCreateShader(GL_VERTEX_SHADER);
    m_FragmentShader = glCreateShader(GL_FRAGMENT_SHADER);
    m_Program = glCreateProgram();
    if (!usable()) {
        m_ErrorText = "OpenGL cannot create a shader";
        return false;
    }
    glAttachShader(m_Program, m_VertexShader);
    glAttachShader(m_Program, m_FragmentShader);
    GLErrors::Check("Shader::init");
    return compile(m_VertexShader, s_VertexSource);
}

bool Shader::init(const std::string& name, const std::string& source) {
    init();
    m_Name = Utils::ToWide(name);
    if (!source.empty())
        return load(source);
    const std::wstring directory = s_ResourceDirectory ? *s_ResourceDirectory : std::wstring();
    return load(directory + L"/" + m_Name + L".frag");
}

bool Shader::compile(unsigned shader, const std::string& text) {
    // One string holds all that precedes the text, so that compilers report the text's lines as those of
    // string 1.
    const std::string preamble = Preamble(text);
    const GLchar* sources[] = {preamble.c_str(), text.c_str()};
    glShaderSource(shader, 2, sources, nullptr);
    glCompileShader(shader);
    GLint compiled = GL_FALSE;
    glGetShaderiv(shader, GL_COMPILE_STATUS, &compiled);
    if (compiled) {
        m_ErrorText.clear();
        return true;
    }
    GLchar log[s_LogLength] = "";
    glGetShaderInfoLog(shader, s_LogLength, nullptr, log);
    m_ErrorText = std::string("Shader compilation failed:\n") + log;
    return false;
}

bool Shader::link() {
    glLinkProgram(m_Program);
    GLint linked = GL_FALSE;
    glGetProgramiv(m_Program, GL_LINK_STATUS, &linked);
    if (linked)
        return true;
    GLchar log[s_LogLength] = "";
    glGetProgramInfoLog(m_Program, s_LogLength, nullptr, log);
    m_ErrorText = std::string("Program linking failed:\n") + log;
    return false;
}

std::string Shader::authorErrorText() const {
    const std::string preamble = Preamble(ShaderPitcher::rewrite(m_Source));
    return ToAuthorLines(m_ErrorText, ShaderPitcher::addedLines(m_Source),
                         static_cast<unsigned>(std::count(preamble.begin(), preamble.end(), '\n')));
}

bool Shader::load(const std::wstring& path) {
    if (path.empty())
        return false;
    m_FilePath = path;
    const std::string text = Utils::ReadWholeTextFile(path);
    if (text.empty()) {
        m_ErrorText = "Shader file not found or shader is empty!";
        return false;
    }
    return load(text);
}

bool Shader::load(const std::string& source) {
    if (source.empty())
        return false;
    m_Parameters.clear();
    m_UniformLocations.clear();
    m_Source = source;
    if (!usable())
        return false; // init has set the error text
    if (!compile(m_FragmentShader, ShaderPitcher::rewrite(source)) || !link())
        return false;
    gatherUniforms();
    // Uniforms of unsupported types do not keep the shader from working, so their messages are dropped.
    m_ErrorText.clear();
    GLErrors::Check("Shader::load");
    return true;
}

bool Shader::reload(bool fromSource) {
    const bool initialised = init();
    // These are copies because loading replaces the members.
    const bool loaded = fromSource ? load(std::string(m_Source)) : load(std::wstring(m_FilePath));
    return initialised && loaded;
}

bool Shader::begin() {
    if (!m_ErrorText.empty() || !usable())
        return false;
    glUseProgram(m_Program);
    m_TextureUnit = 0;
    return true;
}

void Shader::end() {
    // The program stays installed.
}

void Shader::render(bool flip) {
    if (!m_ErrorText.empty())
        return;
    applyParameters();
    GLErrors::Ignore(); // a parameter's type may differ from that of the uniform with its name
    glDisable(GL_SCISSOR_TEST);
    glDisable(GL_DEPTH_TEST);
    DrawQuad(reverseFlip || flip);
    GLErrors::Check("Shader::render");
}
