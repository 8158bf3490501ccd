#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "pictures/Picture.h"
#include "toolkit/Alpha.h"

namespace fxhost {

// Reads a picture file at `depth` bits per channel, or at the depth of the file (8, 16, otherwise float).
// Values are not colour managed. `alpha`: how the file stores colours; premultiplied ones are divided by
// alpha. Throws WrongUse with the file and the reason.
Picture ReadPicture(const std::string& path, std::optional<unsigned> depth,
                    AlphaMode alpha = AlphaMode::Auto);

// Writes a picture in the format of the file name's extension. The depth is kept where the format supports
// it: PNG and TIFF have 8 and 16 bits, EXR and TIFF have float. `alpha`: how the file stores colours; Auto
// multiplies them by alpha for EXR only. The file appears under its name only when it is complete. Throws
// EffectFailure with the file and the reason.
void WritePicture(const std::string& path, const Picture& picture, AlphaMode alpha = AlphaMode::Auto);

// Writes the file without giving it its name, removes it and returns its size in bytes. Throws like
// WritePicture.
std::uint64_t TryPicture(const std::string& path, const Picture& picture, AlphaMode alpha = AlphaMode::Auto);

// The most bits per channel that files with this name hold: 8, 16 or 32. 32 when the format is unknown.
unsigned LargestDepth(const std::string& path);

// Throws WrongUse when no picture can be written under this name: unknown extension, or missing folder.
void RequireWritable(const std::string& path);

} // namespace fxhost
