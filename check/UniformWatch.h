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

// Watches which uniforms an effect sets, and compares them with what the engine can upload. All calls between
// lockFrame and releaseFrame, with the engine's GL context current.
class UniformWatch {
public:
    explicit UniformWatch(const EffectSource& source) : m_Source(source) {}

    // Around a frame: uniforms that are still zero get a value that no script sets, and after the frame those
    // that kept it have not been set by it.
    void beforeFrame();
    void afterFrame();

    // Uniforms that no frame set and that the script does not name either; uniforms that the engine never
    // uploads; parameters that meet a uniform of another type. Once, after the frames.
    std::vector<Diagnostic> findings(const std::vector<Parameter>& parameters) const;

private:
    using Key = std::pair<std::string, std::string>; // the shader's name or file, and the uniform's name

    std::vector<Diagnostic> shaderFindings(Shader& shader, const std::vector<Parameter>& parameters) const;

    const EffectSource& m_Source;
    std::map<Key, bool> m_IsSet;
};

} // namespace fxhost
