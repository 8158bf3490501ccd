#include "tool/ContactSheet.h"

#include <algorithm>
#include <cmath>

#include "gpu/BitmapFont.h"
#include "toolkit/Downsampling.h"
#include "toolkit/Errors.h"

namespace fxhost {

namespace {

constexpr unsigned s_Gap = 8; // pixels around a cell
constexpr unsigned s_LabelHeight = 18;
constexpr unsigned s_BaseLine = 5; // of a label, from the bottom of its strip
constexpr unsigned s_Check = 8;    // a checkerboard field
constexpr std::uint8_t s_Paper = 40, s_Ink = 230;

// Value of a channel at full scale.
double FullScale(unsigned depth) {
    return depth == 8 ? 255 : depth == 16 ? 32768 : 1;
}

std::uint8_t ToByte(double unit) {
    return unit > 0 ? static_cast<std::uint8_t>(std::floor(std::min(unit, 1.0) * 255 + 0.5))
                    : std::uint8_t{0};
}

void Put(Picture& sheet, unsigned x, unsigned y, std::uint8_t grey) {
    std::uint8_t* pixel = sheet.Row(y) + std::size_t{x} * 4;
    pixel[0] = 255;
    pixel[1] = pixel[2] = pixel[3] = grey;
}

unsigned Step(const Picture& picture, unsigned cellWidth) {
    return (picture.width + cellWidth - 1) / cellWidth;
}
unsigned Shrunk(unsigned extent, unsigned step) {
    return (extent + step - 1) / step;
}

void PutPicture(Picture& sheet, const Picture& picture, unsigned left, unsigned top, unsigned step) {
    const double scale = FullScale(picture.depth);
    for (unsigned y = 0; y < Shrunk(picture.height, step); ++y)
        for (unsigned x = 0; x < Shrunk(picture.width, step); ++x) {
            const auto mean = BoxMean(picture, {x * step, y * step, std::min((x + 1) * step, picture.width),
                                                std::min((y + 1) * step, picture.height)});
            const double alpha = std::clamp(mean[0] / scale, 0.0, 1.0);
            const double behind = (x / s_Check + y / s_Check) % 2 ? 0.4 : 0.6;
            std::uint8_t* pixel = sheet.Row(top + y) + std::size_t{left + x} * 4;
            pixel[0] = 255;
            for (unsigned i = 0; i < 3; ++i)
                pixel[1 + i] = ToByte(mean[1 + i] / scale * alpha + behind * (1 - alpha));
        }
}

void PutGlyph(Picture& sheet, const BitmapGlyph& glyph, unsigned x, unsigned baseLine) {
    const int rowBytes = (glyph.width + 7) / 8;
    for (int row = 0; row < glyph.height; ++row)
        for (int column = 0; column < glyph.width; ++column) {
            const bool isInk = glyph.bitmap[row * rowBytes + column / 8] >> (7 - column % 8) & 1;
            const long atX = static_cast<long>(x) + column - static_cast<long>(glyph.xOrigin);
            const long atY = static_cast<long>(baseLine) - row + static_cast<long>(glyph.yOrigin);
            if (isInk && atX >= 0 && atY >= 0 && atX < static_cast<long>(sheet.width) &&
                atY < static_cast<long>(sheet.height))
                Put(sheet, static_cast<unsigned>(atX), static_cast<unsigned>(atY), s_Ink);
        }
}

void PutLabel(Picture& sheet, const std::string& label, unsigned left, unsigned bottom, unsigned width) {
    double x = left;
    for (const char c : label) {
        const int code = static_cast<unsigned char>(c) - Helvetica12.first;
        const BitmapGlyph* glyph = code >= 0 && code < Helvetica12.count ? Helvetica12.glyphs[code] : nullptr;
        if (!glyph)
            continue;
        if (x + static_cast<double>(glyph->advance) > left + width)
            return;
        PutGlyph(sheet, *glyph, static_cast<unsigned>(x), bottom - s_BaseLine);
        x += static_cast<double>(glyph->advance);
    }
}

} // namespace

Picture MakeContactSheet(const std::vector<SheetCell>& cells, unsigned columns, unsigned cellWidth) {
    unsigned width = 1, height = 1;
    for (const SheetCell& cell : cells) {
        const unsigned step = Step(cell.picture, cellWidth);
        width = std::max(width, Shrunk(cell.picture.width, step));
        height = std::max(height, Shrunk(cell.picture.height, step));
    }
    const unsigned across = width + s_Gap, down = height + s_LabelHeight + s_Gap;
    const auto rows = static_cast<unsigned>((cells.size() + columns - 1) / columns);
    if (columns * across + s_Gap > MaxExtent || rows * down + s_Gap > MaxExtent)
        throw WrongUse("the sheet would be larger than " + std::to_string(MaxExtent) +
                       " pixels; give fewer values or a smaller --cell");
    Picture sheet(columns * across + s_Gap, rows * down + s_Gap, 8);
    for (unsigned y = 0; y < sheet.height; ++y)
        for (unsigned x = 0; x < sheet.width; ++x)
            Put(sheet, x, y, s_Paper);
    for (unsigned i = 0; i < cells.size(); ++i) {
        const unsigned left = s_Gap + i % columns * across, top = s_Gap + i / columns * down;
        PutPicture(sheet, cells[i].picture, left, top, Step(cells[i].picture, cellWidth));
        PutLabel(sheet, cells[i].label, left, top + height + s_LabelHeight, width);
    }
    return sheet;
}

} // namespace fxhost
