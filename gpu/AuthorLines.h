#pragma once

#include <string>

// Replaces the line numbers in a driver's log by those of the author's text. Messages that have the number of
// a source string and of a line are known from Mesa, Apple, Intel, AMD and NVIDIA; others remain unchanged.
// inFront: lines that rewriting put before the author's text. preamble: lines of the source string before it,
// which drivers that join the strings count too; those call the whole string 0.
std::string ToAuthorLines(const std::string& log, unsigned inFront, unsigned preamble);
