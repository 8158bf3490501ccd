#pragma once

#include <map>
#include <string>
#include <vector>

namespace fxhost {

using Bytes = std::vector<unsigned char>;
// An effect's files by name.
using FileMap = std::map<std::string, Bytes>;

// Every file of a zip archive in memory. Throws std::runtime_error with the reason when it is none, is
// damaged or would unpack to more than 1 GiB.
FileMap ReadZip(const Bytes& archive);

// A zip archive of these files. Equal files give equal bytes: names are sorted, times fixed.
Bytes WriteZip(const FileMap& files);

} // namespace fxhost
