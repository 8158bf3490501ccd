#pragma once

// Four floats; as a rectangle x and y are the lower left corner, z the width and w the height, in pixels.
struct Vector4 {
    float x = 0.0f;
    float y = 0.0f;
    float z = 0.0f;
    float w = 0.0f;
};
