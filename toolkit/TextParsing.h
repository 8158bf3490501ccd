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

// The line of a position in a text, from 1.
int LineAt(const std::string& text, std::size_t position);

// True when the text contains the word with no letter, digit or "_" beside it.
bool ContainsWord(const std::string& text, const std::string& word);

// The word that differs from `word` in the fewest letters (inserted, deleted, replaced or two swapped), if at
// most a third of them differ; case is ignored. Empty when no word is that close.
std::string ClosestWord(const std::string& word, const std::vector<std::string>& words);

struct PixelSize {
    unsigned width = 0, height = 0;
};

// Reads "WIDTHxHEIGHT", each from 1 to MaxExtent pixels. Throws WrongUse, which names the option.
PixelSize ParsePixelSize(const std::string& option, const std::string& text);

} // namespace fxhost
