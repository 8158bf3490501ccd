#pragma once

#include <string>
#include <vector>

namespace fxhost {

// The pixel formats that an encoder of FFmpeg supports, in its order. Empty when it lists none or does not
// exist.
std::vector<std::string> EncoderPixelFormats(const std::string& encoder);

// The most common of these formats for pictures of more than 8 bits (`deep`), with alpha, or with an odd
// width or height. YUV is preferred to RGB, subsampled chroma to full chroma. Depth and alpha are kept where
// the encoder can. Empty for an empty list.
std::string PreferredPixelFormat(const std::vector<std::string>& formats, bool deep, bool alpha, bool odd);

} // namespace fxhost
