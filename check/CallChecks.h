#pragma once

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "check/CallRecorder.h"
#include "guard/Stage.h"
#include "packaging/Diagnostic.h"
#include "packaging/EffectSource.h"

class RenderTarget;
class Shader;

namespace fxhost {

// The effect of the calls of one frame.
struct FrameCalls {
    bool reachesFrame = false; // something was drawn into the sequence's render target
    unsigned flips = 0;        // number of passes, copies and uploads that flipped vertically
};

// Examines the calls of native functions while a script runs. All calls are made with the frame lock held.
class CallChecks {
public:
    // `file` is the path of the script in diagnostics. `mayGrow`: config.xml has the flag for outputs that
    // are larger than the input.
    CallChecks(std::string file, bool mayGrow) : m_File(std::move(file)), m_MayGrow(mayGrow) {}

    // Lines that were reported for another reason, and are not reported again.
    void ignoreLine(int line) { m_Ignored.insert(line); }

    // A frame of this size begins. Calls before the first frame belong to setup(). At a preview resolution
    // lengths are smaller too, so targets of other sizes may be right.
    void beginFrame(unsigned width, unsigned height, bool isPreview);
    void enter(Stage stage) { m_Stage = stage; }
    void onCall(const ScriptCall& call);
    FrameCalls endFrame();

    // The diagnostics since the last call of take().
    std::vector<Diagnostic> take();
    // Uniforms of the shaders that were drawn which no call has set. All calls since setup() must have been
    // passed.
    std::vector<Diagnostic> unsetUniforms(const EffectSource& source) const;
    // The line that created the entity with this handle; 0 when unknown.
    int lineOf(unsigned handle) const;

private:
    struct Creation {
        int line = 0;
        unsigned frameWidth = 0, frameHeight = 0; // of the frame; 0 during setup()
    };

    void warn(int line, const std::string& text);
    void noteCreation(const ScriptCall& call);
    void noteUniform(const ScriptCall& call);
    void noteDrawing(const ScriptCall& call);
    void checkPass(const ScriptCall& call);
    void checkTargetSize(unsigned handle, const RenderTarget& target);
    void checkFragCoord(const ScriptCall& call, const Shader& shader);
    void checkOutputExtent(const ScriptCall& call);

    const std::string m_File;
    const bool m_MayGrow;
    Stage m_Stage = Stage::Setup;
    unsigned m_Width = 0, m_Height = 0;
    bool m_IsPreview = false;
    FrameCalls m_Frame;
    std::map<unsigned, Creation> m_Created;
    std::set<std::pair<unsigned, std::string>> m_SetUniforms; // by shader
    std::set<unsigned> m_DrawnShaders;
    std::set<int> m_Ignored;
    std::vector<Diagnostic> m_Found;
};

} // namespace fxhost
