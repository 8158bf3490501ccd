#include "stricthost/ParamValue.h"

namespace stricthost {

ColorValue ColorValue::FromBytes(unsigned red, unsigned green, unsigned blue, unsigned alpha) {
    const auto channel = [](unsigned byte) { return static_cast<float>(byte) / 255.0f; };
    return {channel(red), channel(green), channel(blue), channel(alpha)};
}

} // namespace stricthost
