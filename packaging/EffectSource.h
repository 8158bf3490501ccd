#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "packaging/Archive.h"

namespace fxhost {

// Files of an effect. The source is a folder that contains fx.js, a package (a zip archive, scrambled or
// not), or a plug-in bundle with a package inside.
class EffectSource {
public:
    // Throws WrongUse when there is no effect at this path, and EffectFailure when config.xml is missing.
    static EffectSource Open(const std::string& path);

    // The path as the user gave it, and that path followed by the name of a file of the effect.
    const std::string& Path() const { return m_Path; }
    std::string DisplayPath(const std::string& file) const;

    bool IsPackage() const { return m_IsPackage; }

    // Reads a file as the engine finds it: in a folder by its relative path, in a package by its base name,
    // ignoring ASCII case.
    std::optional<std::string> ReadText(const std::string& name) const;
    bool Has(const std::string& name) const;

    using ScriptTransform = std::function<std::string(const std::string& script)>;

    // Makes the engine read its files from this effect. Call it before the engine is set up, and for one
    // effect per process only, because the engine keeps a package open. `transform`, unless null, changes the
    // text of fx.js that the engine receives.
    void Select(const ScriptTransform& transform = nullptr) const;

    // Files that the engine tried to read since Select and that do not exist in the folder, in order of the
    // first attempt. Always empty for packages.
    static std::vector<std::string> MissingFiles();

    // The path that is passed to globalSetup as the path of the bundle.
    const std::string& BundlePath() const { return m_Path; }

private:
    std::string m_Path;
    bool m_IsPackage = false;
    FileMap m_Files;   // of a package
    Bytes m_Scrambled; // bytes of the package in the form that the engine reads
};

// The part of a path after the last "/", which is the name of the file in a flat package.
std::string BaseName(const std::string& name);

// Converts ASCII letters to lower case. Names of package entries are compared in this form.
std::string FoldCase(std::string name);

// Reads a whole file; returns nothing when it cannot be opened.
std::optional<Bytes> ReadFileBytes(const std::string& path);

} // namespace fxhost
