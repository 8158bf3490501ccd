#pragma once

#include <optional>
#include <string>

#include "pictures/Picture.h"

namespace fxhost {

// Reads a picture file at `depth` bits per channel, or at the file's own depth (8, 16, else float). Colours
// and alpha come as the file has them: no colour management, straight alpha stays straight.
// Throws WrongUse naming the file and why it cannot be read.
Picture ReadPicture(const std::string& path, std::optional<unsigned> depth);

// Writes a picture; the file name's ending chooses the format. Depths stay where the format has them: PNG
// and TIFF keep 8 and 16 bits, EXR and TIFF keep float. The file appears under its name only when it is
// whole. Throws EffectFailure naming the file and why it cannot be written.
void WritePicture(const std::string& path, const Picture& picture);

// Throws WrongUse when no picture can be written under this name: unknown ending, or no such folder.
void RequireWritable(const std::string& path);

} // namespace fxhost
