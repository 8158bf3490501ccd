#include "tests/imagelib/reference/Reference.h"

#include <cstdlib>
#include <sstream>
#include <string>

namespace Reference {
namespace {

const char* const s_Palettes[13] = {
    "000000 0027FB 00F92C 00FCFE FF3016 FF3FFC FFFD33 FFFFFF",
    "000000 001290 008F15 009092 9B1708 9A2091 949119 B8B8B8 686868 0027FB 00F92C 00FCFE FF3016 FF3FFC "
    "FFFD33 FFFFFF",
    "000000 722640 40337F E434FE 0E5940 CCCCCC 1B9AFE BFB3FF 404C00 E46501 CCCCCC F1A6BF 1BCB01 BFCC80 "
    "8DD9BF FFFFFF",
    "000000 FFFFFF 8D3E37 72C1C8 80348B 55A049 40318D AAB95D 8B5429 D59F74 B86962 87D6DD AA5FB6 94E089 "
    "8071CC BFCE72",
    "000000 FFFFFF 883932 67B6BD 8B3F96 55A049 40318D BFCE72 8B5429 574200 B86962 505050 787878 94E089 "
    "7869C4 9F9F9F",
    "000000 00AAAA AA00AA AAAAAA",
    "000000 55FFFF FF55FF FFFFFF",
    "000000 00AA00 AA0000 AA5500",
    "000000 55FF55 FF5555 FFFF55",
    "000000 00AAAA AA0000 AAAAAA",
    "000000 55FFFF FF5555 FFFFFF",
    "000000 0000AA 00AA00 00AAAA AA0000 AA00AA AA5500 AAAAAA 555555 5555FF 55FF55 55FFFF FF5555 FF55FF "
    "FFFF55 FFFFFF",
    "000000 000000 3EB849 74D07D 5955E0 8076F1 B95E51 65DBEF DB6559 FF897D CCC35E DED087 3AA241 B766B5 "
    "CCCCCC FFFFFF",
};

// Matrices with the declared width of four, also where the published matrix has five columns.
struct DiffusionRow {
    int width, height, divisor;
    std::vector<int> numerators;
};

const DiffusionRow s_Diffusion[] = {
    {3, 2, 16, {0, 1, 7, 3, 5, 1}},
    {4, 3, 48, {0, 0, 1, 7, 5, 3, 5, 7, 5, 3, 1, 3}},
    {4, 3, 42, {0, 0, 1, 8, 4, 2, 4, 8, 4, 2, 1, 2}},
    {4, 3, 8, {0, 1, 1, 1, 1, 1, 1, 0, 0, 1, 0, 0}},
    {4, 2, 32, {0, 0, 1, 8, 4, 2, 4, 8}},
    {4, 3, 32, {0, 0, 1, 5, 3, 2, 4, 5, 4, 2, 0, 2}},
    {4, 2, 16, {0, 0, 1, 4, 3, 1, 2, 3}},
    {3, 2, 4, {0, 1, 2, 1, 1, 0}},
    {7, 4, 200, {0, 0,  0, 1,  0, 32, 0, 12, 0, 26, 0, 30, 0, 16,
                 0, 12, 0, 26, 0, 12, 0, 5,  0, 12, 0, 12, 0, 5}},
};

// The rank of a cell in the Bayer order: the interleaved bits of x ^ y and y.
int BayerRank(int x, int y, int bits) {
    int rank = 0;
    for (int bit = 0; bit < bits; ++bit)
        rank = rank * 4 + ((x ^ y) >> bit & 1) * 2 + (y >> bit & 1);
    return rank;
}

} // namespace

Palette FixedPalette(int number) {
    Palette palette;
    std::istringstream digits(s_Palettes[number - 1]);
    for (std::string hex; digits >> hex;) {
        const auto channel = [&](int at) {
            const long byte = std::strtol(hex.substr(static_cast<std::size_t>(at), 2).c_str(), nullptr, 16);
            return static_cast<float>(byte) / 255.0f;
        };
        palette.push_back({1.0f, channel(0), channel(2), channel(4)});
    }
    return palette;
}

Matrix DiffusionMatrix(int mode) {
    const DiffusionRow& row = s_Diffusion[mode - 2];
    Matrix matrix{row.width, row.height, {}};
    for (const int numerator : row.numerators)
        matrix.weights.push_back(static_cast<float>(numerator) / static_cast<float>(row.divisor));
    return matrix;
}

Matrix BayerMatrix(int mode) {
    const int bits = mode - 11, size = 1 << bits;
    const int divisor = mode == 12 ? 4 : size * size + 1;
    Matrix matrix{size, size, {}};
    for (int y = 0; y < size; ++y)
        for (int x = 0; x < size; ++x)
            matrix.weights.push_back(static_cast<float>(BayerRank(x, y, bits) + 1) /
                                     static_cast<float>(divisor));
    return matrix;
}

} // namespace Reference
