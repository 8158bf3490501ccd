#pragma once

#include <string>
#include <string_view>

// Converts text from the interpreter to UTF-8. The interpreter stores characters above U+FFFF as surrogate
// pairs, each half encoded in three bytes (CESU-8). A half without its partner becomes U+FFFD.
std::string Utf8FromScript(std::string_view text);
