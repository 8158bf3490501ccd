#pragma once

#include "tests/imagelib/reference/Reference.h"

#include <string>

// Paints a deterministic picture with the properties of a photograph: gradients, clouds and textures of many
// scales, soft and hard edges, saturated and dull colours, grain. Channels are n / 255, alpha is 1.
Reference::Picture MakePhoto(int width, int height);

// Writes the picture as a binary PPM file. Returns false when the file cannot be written.
bool WritePpm(const Reference::Picture& picture, const std::string& file);
