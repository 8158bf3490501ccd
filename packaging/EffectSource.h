#pragma once

#include <optional>
#include <string>
#include <vector>

#include "packaging/Archive.h"

namespace fxhost {

// Where an effect lies: a folder that holds fx.js, a package (a zip archive, scrambled or not), or a plug-in
// bundle with a package inside.
class EffectSource {
public:
    // Throws WrongUse when there is no such effect, and EffectFailure when it lacks config.xml.
    static EffectSource Open(const std::string& path);

    // The path as the user gave it, and the same for one of the effect's files.
    const std::string& Path() const { return m_Path; }
    std::string Shown(const std::string& file) const;

    bool IsPackage() const { return m_IsPackage; }

    // A file of the effect as the engine would find it: in a folder by its path from there, in a package by
    // its base name without regard to ASCII case.
    std::optional<std::string> ReadText(const std::string& name) const;
    bool Has(const std::string& name) const;

    // Points the engine's file reading at this effect; before the engine is set up, and for one effect in a
    // process, since a package stays open.
    void Select() const;

    // Files that the engine asked for since Select and that the folder does not have, in order of first
    // asking. For packages always empty.
    static std::vector<std::string> MissingFiles();

    // What globalSetup is given as the bundle's path.
    const std::string& BundlePath() const { return m_Path; }

private:
    std::string m_Path;
    bool m_IsPackage = false;
    FileMap m_Files;   // of a package
    Bytes m_Scrambled; // the package in the form that the engine reads
};

// The name of a file in a flat package: what follows the last "/".
std::string BaseName(const std::string& name);

// ASCII letters in lower case, others as they are: how package entries are compared.
std::string FoldCase(std::string name);

// A whole file; empty optional when it cannot be opened.
std::optional<Bytes> ReadFileBytes(const std::string& path);

} // namespace fxhost
