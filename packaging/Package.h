#pragma once

#include <string>
#include <vector>

#include "packaging/Archive.h"
#include "packaging/Diagnostic.h"

namespace fxhost {

// The files of an effect folder in the flat layout of a package.
struct PackageContents {
    FileMap files;                    // by base name
    std::vector<Diagnostic> findings; // errors that prevent packing; empty when there are none
};

// Collects the files of a folder and its subfolders, except hidden files and packages ("blob.dat"). Errors
// are two files with the same base name (ignoring case), and files that the script names but the folder does
// not contain. Throws like EffectSource::Open.
PackageContents CollectPackage(const std::string& folder);

// Makes the package "blob.dat": zips the files, then scrambles the archive. Equal files give equal bytes.
Bytes ToPackage(const FileMap& files);

struct Package {
    FileMap files;
    Bytes scrambled; // bytes of the package in the form that the engine reads
};
// Reads a package file, scrambled or not. Throws WrongUse when the file is not a package.
Package ReadPackage(const std::string& path);

} // namespace fxhost
