#include "clips/PictureHeader.h"

#include <OpenImageIO/imageio.h>

namespace fxhost {

std::optional<PictureHeader> ReadPictureHeader(const std::string& path) {
    const auto input = OIIO::ImageInput::open(path);
    if (!input) {
        OIIO::geterror(); // Unread errors would accumulate.
        return std::nullopt;
    }
    const OIIO::ImageSpec& spec = input->spec();
    if (spec.width < 1 || spec.height < 1)
        return std::nullopt;
    return PictureHeader{static_cast<unsigned>(spec.width), static_cast<unsigned>(spec.height),
                         spec.alpha_channel >= 0};
}

} // namespace fxhost
