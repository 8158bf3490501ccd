#pragma once

#include <filesystem>

#include "pictures/Picture.h"

namespace fxhost {

// A frame in which the effect reported an error has no file under its final name, so that nothing takes it
// for a good one. These functions keep it as "NAME.failed.png" in the same folder.

// Removes the file at `path` and writes the picture beside it. Failing to write it is not an error.
void KeepFailedPicture(const std::filesystem::path& path, const Picture& picture);

// Removes the failed picture of an earlier run.
void RemoveFailedPicture(const std::filesystem::path& path);

} // namespace fxhost
