#pragma once

#include <map>
#include <string>
#include <vector>

namespace fxhost {

using Bytes = std::vector<unsigned char>;
// An effect's files by name.
using FileMap = std::map<std::string, Bytes>;

// Unpacks a zip archive in memory. Throws std::runtime_error with the reason when the bytes are not a zip
// archive, are damaged or would unpack to more than 1 GiB.
FileMap ReadZip(const Bytes& archive);

// Makes a zip archive. Equal files give equal bytes: names are sorted and time stamps are constant.
Bytes WriteZip(const FileMap& files);

} // namespace fxhost
