#pragma once

#include "tests/imagelib/model/Model.h"

#include <string>

// A deterministic picture with what photographs have: sky and ground gradients, clouds and texture of many
// scales, soft and hard edges, saturated and dull colours, grain. Channels are n / 255, alpha is 1.
Model::Picture MakePhoto(int width, int height);

// Writes it as a binary PPM. False when the file cannot be written.
bool WritePpm(const Model::Picture& picture, const std::string& file);
