#pragma once

#include <string>

#include "toolkit/PictureFile.h"

namespace fxhost {

// What a file format can store. Formats are named as OpenImageIO does.

// The type that is stored for pictures of this depth: the wanted one, or else that of the depth, or the
// closest one that the format has. `isHalf`: true when the picture was read from half floats.
SampleType StoredType(const std::string& format, unsigned depth, SampleType wanted, bool isHalf);

// Bits that a channel keeps: 8, 10, 16 or 32. Half keeps 16.
unsigned BitsOf(SampleType type);

// True for formats with one colour channel, and with one colour channel and alpha.
bool HoldsGrey(const std::string& format, bool withAlpha);

// True when the format can compress like this without loss.
bool IsLossless(const std::string& format, const std::string& compression);

// Throws WrongUse that names the option when the format does not have it.
void RequireOptions(const std::string& format, const PictureWriting& writing);

} // namespace fxhost
