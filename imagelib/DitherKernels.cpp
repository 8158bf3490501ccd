#include "imagelib/DitherKernels.h"

#include <array>

namespace ImageLib {
namespace {

template <class... N>
constexpr std::array<Pixel32, sizeof...(N)> Weights(float divisor, N... numerators) {
    const auto all = [](float w) { return Pixel32{w, w, w, w}; };
    return {all(static_cast<float>(numerators) / divisor)...};
}

// Builds each Bayer matrix from the one M of half its size: 4M and 4M + 2 above 4M + 3 and 4M + 1.
template <unsigned Size>
constexpr std::array<unsigned, Size * Size> BayerIndex() {
    if constexpr (Size == 1) {
        return {0};
    } else {
        constexpr auto half = BayerIndex<Size / 2>();
        constexpr unsigned add[2][2] = {{0, 2}, {3, 1}};
        std::array<unsigned, Size * Size> index{};
        for (unsigned y = 0; y < Size; ++y)
            for (unsigned x = 0; x < Size; ++x)
                index[y * Size + x] = 4 * half[y % (Size / 2) * (Size / 2) + x % (Size / 2)] +
                                      add[y / (Size / 2)][x / (Size / 2)];
        return index;
    }
}

template <unsigned Size>
constexpr std::array<Pixel32, Size * Size> BayerWeights() {
    std::array<Pixel32, Size * Size> weights{};
    for (unsigned i = 0; i < Size * Size; ++i) {
        const float w = static_cast<float>(BayerIndex<Size>()[i] + 1) / static_cast<float>(Size * Size + 1);
        weights[i] = {w, w, w, w};
    }
    return weights;
}

// Surfaces hold mutable pixels, so these arrays are not const; nothing writes to them.
// clang-format off
constinit auto s_FloydSteinberg = Weights(16, 0, 1, 7,
                                              3, 5, 1);
constinit auto s_JarvisJudice = Weights(48, 0, 0, 1, 7, 5,
                                            3, 5, 7, 5, 3,
                                            1, 3, 5, 3, 1);
constinit auto s_Stucki = Weights(42, 0, 0, 1, 8, 4,
                                      2, 4, 8, 4, 2,
                                      1, 2, 4, 2, 1);
constinit auto s_Atkinson = Weights(8, 0, 1, 1, 1,
                                       1, 1, 1, 0,
                                       0, 1, 0, 0);
constinit auto s_Burkes = Weights(32, 0, 0, 1, 8, 4,
                                      2, 4, 8, 4, 2);
constinit auto s_Sierra = Weights(32, 0, 0, 1, 5, 3,
                                      2, 4, 5, 4, 2,
                                      0, 2, 3, 2, 0);
constinit auto s_Sierra2 = Weights(16, 0, 0, 1, 4, 3,
                                       1, 2, 3, 2, 1);
constinit auto s_Sierra3 = Weights(4, 0, 1, 2,
                                      1, 1, 0);
constinit auto s_StevensonArce = Weights(200, 0,  0,  0,  1,  0,  32, 0,
                                              12, 0,  26, 0,  30, 0,  16,
                                              0,  12, 0,  26, 0,  12, 0,
                                              5,  0,  12, 0,  12, 0,  5);
constinit auto s_Bayer3x3 = Weights(10, 3, 7, 4,
                                        6, 1, 9,
                                        2, 8, 5);
// clang-format on
constinit auto s_Bayer2x2 = Weights(4, 1, 3, 4, 2);
constinit auto s_Bayer4x4 = BayerWeights<4>();
constinit auto s_Bayer8x8 = BayerWeights<8>();

template <std::uint32_t Width, std::uint32_t Height, std::size_t N>
constexpr Surface<Pixel32> Wrap(std::array<Pixel32, N>& weights) {
    static_assert(Width * Height <= N);
    return {Width, Height, Width * sizeof(Pixel32), weights.data()};
}

} // namespace

constinit const Surface<Pixel32> FloydSteinbergKernel = Wrap<3, 2>(s_FloydSteinberg);
constinit const Surface<Pixel32> JarvisJudiceKernel = Wrap<4, 3>(s_JarvisJudice);
constinit const Surface<Pixel32> StuckiKernel = Wrap<4, 3>(s_Stucki);
constinit const Surface<Pixel32> AtkinsonKernel = Wrap<4, 3>(s_Atkinson);
constinit const Surface<Pixel32> BurkesKernel = Wrap<4, 2>(s_Burkes);
constinit const Surface<Pixel32> SierraKernel = Wrap<4, 3>(s_Sierra);
constinit const Surface<Pixel32> Sierra2Kernel = Wrap<4, 2>(s_Sierra2);
constinit const Surface<Pixel32> Sierra3Kernel = Wrap<3, 2>(s_Sierra3);
constinit const Surface<Pixel32> StevensonArceKernel = Wrap<7, 4>(s_StevensonArce);
constinit const Surface<Pixel32> Bayer2x2Kernel = Wrap<2, 2>(s_Bayer2x2);
constinit const Surface<Pixel32> Bayer3x3Kernel = Wrap<3, 3>(s_Bayer3x3);
constinit const Surface<Pixel32> Bayer4x4Kernel = Wrap<4, 4>(s_Bayer4x4);
constinit const Surface<Pixel32> Bayer8x8Kernel = Wrap<8, 8>(s_Bayer8x8);

} // namespace ImageLib
