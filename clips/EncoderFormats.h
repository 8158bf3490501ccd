#pragma once

#include <string>
#include <vector>

namespace fxhost {

// The pixel formats that an encoder of FFmpeg takes, in its order; empty when it names none or is not there.
std::vector<std::string> EncoderFormats(const std::string& encoder);

// The most usual of these formats for pictures of more than 8 bits (`deep`), with alpha, of a size that is
// odd: YUV before RGB, halved chroma before full, depth and alpha kept where the encoder can. Empty for an
// empty list.
std::string UsualFormat(const std::vector<std::string>& formats, bool deep, bool alpha, bool odd);

} // namespace fxhost
