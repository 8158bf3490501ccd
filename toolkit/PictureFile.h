#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "pictures/Picture.h"
#include "toolkit/Alpha.h"

namespace fxhost {

// How a picture file is read.
struct PictureReading {
    std::optional<unsigned>
        depth; // bits per channel; the depth of the file (8, 16, otherwise float) by default
    AlphaMode alpha = AlphaMode::Auto; // how the file stores colours; premultiplied ones are divided by alpha
    std::string channels;              // a layer, or the names of 1 to 4 channels; empty for R, G, B and A
    std::string part;                  // name or number (from 0) of a part; empty for the first one
    bool overscan = false; // true to read the data window of an EXR file in place of its display window
};

// Reads a picture file. Values are not colour managed. The picture is turned upright, and has the pixels of
// the display window. Its `origin` keeps what else the file declares. Throws WrongUse with the file and the
// reason.
Picture ReadPicture(const std::string& path, const PictureReading& reading);
Picture ReadPicture(const std::string& path, std::optional<unsigned> depth,
                    AlphaMode alpha = AlphaMode::Auto);

// How a channel is stored in a file.
enum class SampleType { Auto, Bits8, Bits10, Bits16, Half, Float };

// How a picture file is written.
struct PictureWriting {
    AlphaMode alpha = AlphaMode::Auto;  // how the file stores colours; Auto multiplies them for EXR only
    SampleType bits = SampleType::Auto; // Auto keeps the depth of the picture where the format can
    std::string compression;            // OpenImageIO's name, such as "zip", "piz" or "lzw"; may be empty
    std::optional<int> quality;         // 1 to 100, for lossy formats
    bool reportsLoss = false;           // true to find out what the file does not keep
};

// Writes a picture in the format of the file name's extension. A picture from a file stays grey, without
// alpha or half where it can, and keeps the attributes of that file where the format can. The file appears
// under its name only when it is complete. With `reportsLoss`, returns texts for people about everything that
// is not kept. Throws EffectFailure with the file and the reason.
std::vector<std::string> WritePicture(const std::string& path, const Picture& picture,
                                      const PictureWriting& writing);
void WritePicture(const std::string& path, const Picture& picture, AlphaMode alpha = AlphaMode::Auto);

// Writes the file without giving it its name, removes it and returns its size in bytes. Throws like
// WritePicture.
std::uint64_t TryPicture(const std::string& path, const Picture& picture, const PictureWriting& writing);

// Throws WrongUse when no picture can be written under this name: unknown extension, missing folder, or
// options that the format does not have.
void RequireWritable(const std::string& path, const PictureWriting& writing = {});

} // namespace fxhost
