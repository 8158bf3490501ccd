// Palette reduction of surfaces of any size with any arguments: every SIMD path must give the bytes of the
// scalar implementation and write nothing between the rows.
#include "imagelib/Convert.h"
#include "imagelib/Dither.h"
#include "imagelib/Quantize.h"
#include "imagelib/Settings.h"
#include "tests/fuzz/FuzzInput.h"

using namespace ImageLib;

namespace {

constexpr Pixel32 s_Gap{-7, -7, -7, -7};

// What one input asks for. A custom palette and kernel are used when the selector is 0.
struct Request {
    unsigned width, height, gap, selector;
    int mode;
    float threshold;
    bool serpentine;
    std::vector<Pixel32> palette;
    std::vector<Pixel32> kernel;
    unsigned kernelWidth;
};

Pixel32 AnyPixel(FuzzInput& input) {
    const auto channel = [&] { return static_cast<float>(input.Byte()) / 255.0f; };
    if (input.Below(8) == 0)
        return {input.Float(), input.Float(), input.Float(), input.Float()};
    return {input.Below(4) ? 1.0f : channel(), channel(), channel(), channel()};
}

Request ReadRequest(FuzzInput& input) {
    Request request{};
    request.width = input.Below(2) ? input.Below(20) : 3 * input.Byte();
    request.height = input.Below(21);
    request.gap = input.Below(3);
    request.selector = input.Below(24);
    request.mode = static_cast<int>(input.Below(17)) - 1;
    request.threshold = input.Below(2) ? input.Float() : 0.5f;
    request.serpentine = input.Below(2);
    if (request.selector == 0) {
        request.palette.resize(1 + input.Below(64));
        for (Pixel32& colour : request.palette)
            colour = AnyPixel(input);
        request.kernelWidth = 1 + input.Below(8);
        request.kernel.resize(std::size_t{request.kernelWidth} * (1 + input.Below(6)));
        for (Pixel32& weight : request.kernel)
            weight.alpha = weight.red = weight.green = weight.blue =
                static_cast<float>(input.Below(16)) / 16.0f;
    }
    return request;
}

// Pixels of the input, repeated, with gaps between the rows.
std::vector<Pixel32> ReadPixels(FuzzInput& input, const Request& request) {
    std::vector<Pixel32> some(1 + input.Below(64));
    for (Pixel32& pixel : some)
        pixel = AnyPixel(input);
    const std::size_t stride = request.width + request.gap;
    std::vector<Pixel32> pixels(stride * request.height, s_Gap);
    for (std::size_t i = 0; i < pixels.size(); ++i)
        if (i % stride < request.width)
            pixels[i] = some[i * 31 % some.size()];
    return pixels;
}

void Reduce(Surface<Pixel32>& surface, Request& request) {
    if (request.selector != 0)
        return Quantize(surface, request.selector, static_cast<DitheringMode>(request.mode),
                        request.threshold, request.serpentine);
    const ColourSet colours{request.palette.data(), static_cast<unsigned>(request.palette.size()), false, 0};
    const auto rows = static_cast<unsigned>(request.kernel.size()) / request.kernelWidth;
    const Surface<Pixel32> kernel(request.kernelWidth, rows, request.kernelWidth * sizeof(Pixel32),
                                  request.kernel.data());
    if (request.mode % 3 == 0)
        Quantizers::Process(surface, colours);
    else
        Dither::ErrorDiffusion(surface, kernel, colours, request.serpentine);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    FuzzInput input(bytes, size);
    Request request = ReadRequest(input);
    const std::vector<Pixel32> pixels = ReadPixels(input, request);
    const std::size_t stride = (request.width + request.gap) * sizeof(Pixel32);
    SetThreadCount(1);
    std::vector<Pixel32> scalar;
    for (const SimdPath path : SupportedSimdPaths()) {
        SetSimdPath(path);
        std::vector<Pixel32> reduced = pixels;
        Surface<Pixel32> surface(request.width, request.height, stride, reduced.data());
        Reduce(surface, request);
        for (std::size_t i = 0; i < reduced.size(); ++i)
            Require(i % (request.width + request.gap) < request.width || reduced[i] == s_Gap,
                    "nothing is written between the rows");
        if (path == SimdPath::Scalar)
            scalar = reduced;
        Require(reduced.empty() ||
                    std::memcmp(scalar.data(), reduced.data(), reduced.size() * sizeof(Pixel32)) == 0,
                "a SIMD path gives the bytes of the scalar implementation");
        std::vector<unsigned char> rows(std::size_t{request.width} * request.height * 8);
        StoreSurface(surface, rows.data(), rows.size(), 16, std::size_t{request.width} * 8);
    }
    return 0;
}
