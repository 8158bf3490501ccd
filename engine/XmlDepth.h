#pragma once

#include <string>

// Throws rapidxml::parse_error when the elements of an XML text are nested deeper than the limit. The parser
// calls itself for each level, so unlimited depth would overflow the stack. Malformed XML is left to the
// parser.
void CheckXmlDepth(const std::string& xml, int limit);
