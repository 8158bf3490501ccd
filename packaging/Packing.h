#pragma once

#include <string>
#include <vector>

#include "packaging/Archive.h"
#include "packaging/Diagnostic.h"

namespace fxhost {

// An effect folder as a flat package, before it is written.
struct Packing {
    FileMap files;                    // by base name
    std::vector<Diagnostic> findings; // why it must not be shipped; empty when it may
};

// Collects the files of a folder and of the folders in it, hidden ones and packages ("blob.dat") left out.
// Found wrong: two files of one base name (case does not count), a file that the script names and that is not
// there. Throws like EffectSource::Open.
Packing CollectPackage(const std::string& folder);

// The package "blob.dat" for these files: zipped, then scrambled. Equal files give equal bytes.
Bytes ToPackage(const FileMap& files);

struct Package {
    FileMap files;
    Bytes scrambled; // the package as the engine reads it
};
// Reads a package file, scrambled or not. Throws WrongUse when it is none.
Package ReadPackage(const std::string& path);

} // namespace fxhost
