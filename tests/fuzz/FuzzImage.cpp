// The bytes of an image file.
#include <algorithm>

#include "gpu/ImageDecoder.h"
#include "tests/fuzz/FuzzInput.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const DecodedImage image = DecodeImage({bytes, bytes + size});
    if (!image.pixels) {
        const auto isPrintable = [](char c) { return c >= ' ' && c <= '~'; };
        Require(!image.errorText.empty() && std::ranges::all_of(image.errorText, isPrintable),
                "an image that cannot be decoded has a printable error text");
        return 0;
    }
    Require(image.width > 0 && image.height > 0, "a decoded image has pixels");
    Require(std::size_t{image.width} * image.height <= 10000 * size,
            "a picture is not larger than its file can hold");
    ReadAll(image.pixels.get(), std::size_t{image.width} * image.height * image.depth / 2);
    return 0;
}
