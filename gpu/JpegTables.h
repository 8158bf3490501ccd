#pragma once

#include <vector>

// Returns true when a JPEG file has a Huffman table with more than 256 codes, which the JPEG standard (ITU-T
// T.81, B.2.4.2) does not allow. The image decoder writes beyond its own table when it reads such a file, so
// it must not be decoded. Returns false for all other files, also damaged ones.
bool HasOverlongHuffmanTable(const std::vector<unsigned char>& file);
