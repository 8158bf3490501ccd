#include "toolkit/PictureFormats.h"

#include <algorithm>
#include <string_view>

#include "toolkit/Errors.h"
#include "toolkit/TextParsing.h"

namespace fxhost {

namespace {

struct FormatRow {
    std::string_view name;
    std::string_view types;           // of --bits, separated by blanks, in ascending order
    std::string_view lossless, lossy; // values of --compression
    bool hasQuality;
    bool holdsGrey, holdsGreyAlpha;
};

constexpr FormatRow s_Rows[] = {
    {"openexr", "half float", "none rle zip zips piz", "pxr24 b44 b44a dwaa dwab", false, true, true},
    {"tiff", "8 16 float", "none lzw zip packbits", "", false, true, true},
    {"png", "8 16", "", "", false, true, true},
    {"jpeg", "8", "", "", true, true, false},
    {"webp", "8", "", "", true, false, false},
    {"dpx", "8 10 16", "", "", false, false, false},
    {"jpeg2000", "8 16", "", "", false, false, false},
    {"pnm", "8 16", "", "", false, true, false},
    {"sgi", "8 16", "", "", false, false, false},
    {"hdr", "float", "", "", false, false, false},
    {"bmp", "8", "", "", false, false, false},
    {"targa", "8", "", "", false, false, false},
    {"gif", "8", "", "", false, false, false},
    {"ico", "8", "", "", false, false, false},
};
constexpr FormatRow s_Other = {"", "8 16 half float", "", "", false, false, false};

const FormatRow& RowOf(const std::string& format) {
    const auto* const found = std::find_if(std::begin(s_Rows), std::end(s_Rows),
                                           [&](const FormatRow& row) { return row.name == format; });
    return found == std::end(s_Rows) ? s_Other : *found;
}

bool Has(std::string_view list, std::string_view word) {
    return ContainsWord(std::string(list), std::string(word));
}

// In ascending order.
constexpr struct {
    SampleType type;
    const char* name;
    unsigned bits;
} s_Types[] = {{SampleType::Bits8, "8", 8},
               {SampleType::Bits10, "10", 10},
               {SampleType::Bits16, "16", 16},
               {SampleType::Half, "half", 16},
               {SampleType::Float, "float", 32}};

const char* NameOf(SampleType type) {
    for (const auto& row : s_Types)
        if (row.type == type)
            return row.name;
    return "";
}

SampleType NaturalType(unsigned depth, bool isHalf) {
    if (depth < 32)
        return depth == 8 ? SampleType::Bits8 : SampleType::Bits16;
    return isHalf ? SampleType::Half : SampleType::Float;
}

// A half stores all values of 8 bits, but not those of 16 bits. Integers store no floats.
bool Stores(SampleType larger, SampleType smaller) {
    if (smaller == SampleType::Half || smaller == SampleType::Float)
        return larger == smaller || larger == SampleType::Float;
    if (larger == SampleType::Half)
        return BitsOf(smaller) <= 10;
    return BitsOf(larger) >= BitsOf(smaller);
}

} // namespace

unsigned BitsOf(SampleType type) {
    for (const auto& row : s_Types)
        if (row.type == type)
            return row.bits;
    return 0;
}

SampleType StoredType(const std::string& format, unsigned depth, SampleType wanted, bool isHalf) {
    if (wanted != SampleType::Auto)
        return wanted;
    const SampleType natural = NaturalType(depth, isHalf);
    SampleType last = natural;
    for (const auto& row : s_Types) {
        if (!Has(RowOf(format).types, row.name))
            continue;
        last = row.type;
        if (row.type == natural || (row.type != SampleType::Bits10 && Stores(row.type, natural)))
            return row.type;
    }
    return last;
}

bool HoldsGrey(const std::string& format, bool withAlpha) {
    return withAlpha ? RowOf(format).holdsGreyAlpha : RowOf(format).holdsGrey;
}

bool IsLossless(const std::string& format, const std::string& compression) {
    return !compression.empty() && Has(RowOf(format).lossless, compression);
}

void RequireOptions(const std::string& format, const PictureWriting& writing) {
    const FormatRow& row = RowOf(format);
    const auto expected = [](std::string_view list) {
        return list.empty() ? "" : "; expected one of " + std::string(list);
    };
    if (writing.bits != SampleType::Auto && !Has(row.types, NameOf(writing.bits)))
        throw WrongUse(std::string("--bits ") + NameOf(writing.bits) + ": " + format +
                       " files have other types" + expected(row.types));
    const std::string name = writing.compression.substr(0, writing.compression.find(':'));
    if (!name.empty() && !Has(row.lossless, name) && !Has(row.lossy, name))
        throw WrongUse(
            "--compression " + writing.compression + ": not available in " + format + " files" +
            expected(std::string(row.lossless) + (row.lossy.empty() ? "" : " ") + std::string(row.lossy)));
    if (writing.quality && !row.hasQuality)
        throw WrongUse("--quality: " + format + " files have no quality; .jpg and .webp have one");
}

} // namespace fxhost
