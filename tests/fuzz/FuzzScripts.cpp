// Generated scripts, run through the engine's interface with OpenGL as a host would: several instances,
// frames of several sizes and depths, values, layers, and the script started again. FUZZ_PRINT=1 prints the
// script of each input.
#include <utility>

#include "engine/FrameLock.h"
#include "engine/IPlugin.h"
#include "platform/CGL.h"
#include "tests/fuzz/ScriptGenerator.h"
#include "utils/Utils.h"

namespace {

constexpr char s_GoodShader[] = R"glsl(
uniform sampler2D image, other;
uniform float amount, time, width;
uniform vec4 tint;
uniform vec2 p0;
uniform int p1;
void main() {
    vec2 at = gl_TexCoord[0].xy;
    gl_FragColor = texture2D(image, at) * amount + texture2D(other, at) + tint + vec4(p0, time, width + float(p1));
}
)glsl";
constexpr char s_CubeShader[] = R"glsl(
uniform samplerCube image;
uniform float p0[4];
void main() { gl_FragColor = textureCube(image, vec3(gl_TexCoord[0].xy, p0[1])); }
)glsl";
constexpr char s_Picture[] = "P6 2 2 255\nabcdefghijkl";

std::string s_Script;

bool Contains(const std::wstring& name, const wchar_t* part) {
    return name.find(part) != std::wstring::npos;
}

std::string TextFile(const std::wstring& name) {
    if (name == L"config.xml")
        return "<FXNAME>Fuzz</FXNAME>";
    if (name == L"fx.js")
        return s_Script;
    return Contains(name, L"good")   ? s_GoodShader
           : Contains(name, L"cube") ? s_CubeShader
                                     : "void main() { broken }";
}

std::vector<unsigned char> BinaryFile(const std::wstring& name) {
    if (!Contains(name, L"image"))
        return {};
    return {s_Picture, s_Picture + sizeof s_Picture - 1};
}

// The OpenGL of the host: a context with one texture, current between the calls of the engine.
class HostContext {
public:
    HostContext() {
        const CGLPixelFormatAttribute attributes[] = {kCGLPFAAccelerated, CGLPixelFormatAttribute(0)};
        CGLPixelFormatObj format = nullptr;
        GLint count = 0;
        CGLChoosePixelFormat(attributes, &format, &count);
        CGLCreateContext(format, nullptr, &m_Context);
        CGLDestroyPixelFormat(format);
        CGLSetCurrentContext(m_Context);
        glGenTextures(1, &m_Texture);
        glBindTexture(GL_TEXTURE_2D, m_Texture);
        glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 1, 1, 0, GL_RGBA, GL_UNSIGNED_BYTE, nullptr);
    }

    void RequireUntouched() const {
        Require(CGLGetCurrentContext() == m_Context, "the host's GL context is current after a call");
        Require(glIsTexture(m_Texture), "the host's texture still exists");
    }
    void MakeCurrent() const { CGLSetCurrentContext(m_Context); }

private:
    CGLContextObj m_Context = nullptr;
    GLuint m_Texture = 0;
};

class Host {
public:
    explicit Host(FuzzInput& input) : m_Input(input) {
        StartScript();
        AddInstance();
        AddInstance();
    }

    ~Host() {
        for (void* const instance : m_Instances)
            WithoutLock([&] { m_Engine.releaseSequenceData(instance); });
    }
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    void Run() {
        RenderFrame();
        for (int i = 0; i < s_MostActions && !m_Input.IsEmpty(); ++i)
            Act();
        m_Current = m_Instances.empty() ? nullptr : m_Instances.back();
        RenderFrame();
    }

private:
    static constexpr int s_MostActions = 10;
    static constexpr std::size_t s_MostInstances = 4;
    static constexpr unsigned s_LargestFrame = 64; // pixels along each side that are rendered
    static constexpr unsigned s_BeyondOpenGL = 1u << 20;

    template <class Work>
    void WithLock(Work work) {
        {
            const FrameLock lock(m_Engine);
            Require(static_cast<bool>(lock), "the frame lock can be taken");
            work();
        }
        Context().RequireUntouched();
    }

    // For operations that take the lock themselves.
    template <class Work>
    void WithoutLock(Work work) {
        work();
        Context().RequireUntouched();
    }

    static HostContext& Context() {
        static HostContext context;
        return context;
    }

    void StartScript() {
        static const bool s_IsSetUp = SetUp();
        Require(s_IsSetUp, "there is OpenGL: install libegl-mesa0 libgl1-mesa-dri");
        Context().MakeCurrent();
        WithoutLock([&] { m_Engine.resetup(); });
    }

    bool SetUp() {
        Context().MakeCurrent();
        return m_Engine.globalSetup(nullptr, nullptr);
    }

    // Ends the engine and sets it up again, as when the host's last effect is removed and another one
    // applied.
    void SetUpAgain() {
        m_Engine.release();
        Require(SetUp(), "the engine can be set up again");
        Context().RequireUntouched();
    }

    void AddInstance() {
        if (m_Instances.size() < s_MostInstances)
            WithoutLock([&] { m_Instances.push_back(m_Current = m_Engine.initSequenceData()); });
    }

    void Act() {
        if (!m_Instances.empty())
            m_Current = m_Instances[m_Input.Below(static_cast<unsigned>(m_Instances.size()))];
        switch (m_Input.Below(16)) {
        case 0:
            return AddInstance();
        case 1:
            return RemoveInstance();
        case 2:
            return WithoutLock([&] { m_Engine.resetup(); });
        case 3:
        case 4:
            return UpdateControls();
        case 5:
            return Inspect();
        case 6:
            return SaveInstance();
        case 7:
            if (!std::exchange(m_WasSetUpAgain,
                               true)) // once, as OpenGL takes long to compile the shaders again
                SetUpAgain();
            return;
        default:
            return RenderFrame();
        }
    }

    void SaveInstance() {
        WithLock([&] { m_Engine.setSequenceData(m_Current); });
        WithoutLock([&] { m_Engine.flatten(nullptr); });
    }

    void RemoveInstance() {
        if (m_Instances.empty())
            return;
        WithoutLock([&] { m_Engine.releaseSequenceData(m_Current); });
        std::erase(m_Instances, m_Current);
        m_Current = nullptr;
    }

    void UpdateControls() {
        WithLock([&] {
            m_Engine.setSequenceData(m_Current);
            m_Engine.preUIUpdate();
        });
    }

    void Inspect() {
        WithLock([&] {
            for (unsigned i = 0; i <= m_Engine.getNumParams(); ++i)
                ReadAll(m_Engine.getParam(i).label.data(), m_Engine.getParam(i).label.size());
            m_Engine.getErrorText();
        });
    }

    void SetParameters() {
        for (unsigned i = 0; i <= m_Engine.getNumParams(); ++i) {
            Parameter::Value value;
            for (unsigned word = 0; word < 4; ++word)
                value.SetFloat(word,
                               m_Input.Below(4) ? static_cast<float>(m_Input.Byte()) / 16 : m_Input.Float());
            m_Engine.setParam(i, value);
        }
    }

    // Uploads a layer with a row stride that is a little more than a row.
    void Upload(unsigned index, unsigned width, unsigned height, unsigned depth) {
        const std::size_t stride = std::size_t{width} * depth / 2 + m_Input.Below(3) * 4;
        std::vector<unsigned char> pixels(stride * height, m_Input.Byte());
        m_Engine.grabIntoTexture(index, pixels.data(), width, height, depth,
                                 static_cast<std::ptrdiff_t>(stride));
    }

    unsigned Extent(unsigned asked) const {
        return asked > s_BeyondOpenGL ? asked : std::min(asked, s_LargestFrame);
    }

    void RenderFrame() {
        static constexpr unsigned s_Depths[] = {8, 16, 32};
        const unsigned inWidth = 1 + m_Input.Below(24), inHeight = 1 + m_Input.Below(24);
        const unsigned depth = m_Input.Pick(s_Depths);
        WithLock([&] {
            m_Engine.setSequenceData(m_Current);
            m_Engine.begin(true);
            m_Engine.setCompositionSize(inWidth, inHeight, 1.0f);
            m_Engine.setInputOrigin(m_Input.Byte(), -1);
            unsigned width = inWidth, height = inHeight;
            m_Engine.preRender(inWidth, inHeight, width, height);
            SetParameters();
            Upload(m_Input.Below(4), inWidth, 1 + m_Input.Below(8), depth);
            Upload(IPlugin::InputLayer, inWidth, inHeight, depth);
            width = Extent(width);
            height = Extent(height);
            m_Engine.render(0.25, width, height, depth, 1.0f);
            ReadFrame(std::size_t{width} * height * depth / 2);
            m_Engine.end();
        });
    }

    void ReadFrame(std::size_t bytes) {
        if (void* const pixels = m_Engine.grabResultBegin()) {
            ReadAll(pixels, bytes);
            m_Engine.grabResultEnd(pixels);
        }
        GLint packBuffer = 0;
        glGetIntegerv(GL_PIXEL_PACK_BUFFER_BINDING, &packBuffer);
        Require(packBuffer == 0, "no pack buffer is bound after a frame");
    }

    IPlugin& m_Engine = *GetPlugin();
    FuzzInput& m_Input;
    std::vector<void*> m_Instances;
    void* m_Current = nullptr;
    bool m_WasSetUpAgain = false;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    Utils::ReadWholeTextFileCallback = TextFile;
    Utils::ReadWholeFileCallback = BinaryFile;
    FuzzInput input(bytes, size);
    s_Script = GenerateScript(input);
    if (std::getenv("FUZZ_PRINT"))
        std::fputs(s_Script.c_str(), stderr);
    Host(input).Run();
    return 0;
}
