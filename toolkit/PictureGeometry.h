#pragma once

#include "toolkit/PictureConversion.h"

namespace fxhost {

// Turns pixels with this Exif orientation (1 to 8) so that the first row is at the top. Other numbers count
// as 1.
FilePixels TurnedUpright(FilePixels pixels, int orientation);
// True for the orientations that exchange width and height.
bool ExchangesAxes(int orientation);

// A window into the pixels. `left` and `top` are the place of its corner in the pixels and may be negative;
// what is outside of the pixels is 0.
FilePixels CutWindow(const FilePixels& pixels, int left, int top, unsigned width, unsigned height);

// Keeps these channels, in this order. `alpha`: index of the alpha channel in the result, -1 when there is
// none.
FilePixels SelectedChannels(const FilePixels& pixels, const std::vector<int>& channels, int alpha);

} // namespace fxhost
