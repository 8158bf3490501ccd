#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "packaging/Diagnostic.h"
#include "packaging/EffectSource.h"
#include "parameters/Parameter.h"

class Shader;

namespace fxhost {

// True for uniforms that the engine sets at every draw call.
bool IsSetByEngine(const std::string& name);

// The warning about a uniform that nothing sets.
Diagnostic UnsetUniform(const EffectSource& source, const Shader& shader, const std::string& name);

// Records which uniforms an effect sets, and compares them with the types that the engine can upload. All
// calls are made between lockFrame and releaseFrame, while the engine's GL context is current.
class UniformChecks {
public:
    explicit UniformChecks(const EffectSource& source) : m_Source(source) {}

    // Call these before and after each frame. Uniforms that are zero get a marker value that no script sets;
    // a uniform that still has it after the frame was not set in that frame.
    void beforeFrame();
    void afterFrame();

    // Reports uniforms that no frame set and that the script does not name; uniforms of types that the engine
    // does not upload; and parameters whose uniform has another type. Call it after the last frame.
    std::vector<Diagnostic> findings(const std::vector<Parameter>& parameters) const;

private:
    using Key = std::pair<std::string, std::string>; // the shader's name or file, and the uniform's name

    std::vector<Diagnostic> shaderFindings(Shader& shader, const std::vector<Parameter>& parameters) const;

    const EffectSource& m_Source;
    std::map<Key, bool> m_IsSet;
};

} // namespace fxhost
