#pragma once

#include <optional>
#include <string>
#include <vector>

namespace fxhost {

// The text without blanks and tabs at either end.
std::string Trimmed(const std::string& text);

// The pieces between separators; one piece, perhaps empty, when there is no separator.
std::vector<std::string> Split(const std::string& text, char separator);

// A finite decimal number that is the whole text, apart from blanks around it and a "+" before it; nothing
// for any other text. The decimal point is "." in every locale.
std::optional<double> ParseNumber(const std::string& text);

struct PixelSize {
    unsigned width = 0, height = 0;
};

// Reads "WIDTHxHEIGHT", each from 1 to MaxExtent pixels. Throws WrongUse, which names the option.
PixelSize ParsePixelSize(const std::string& option, const std::string& text);

} // namespace fxhost
