#pragma once

#include <memory>
#include <variant>

#include "pictures/Picture.h"

namespace stricthost {

struct PointValue {
    double x = 0; // pixels of the layer at full resolution, from its top left corner
    double y = 0;
};

struct Point3DValue {
    double x = 0; // pixels at full resolution; z towards the back
    double y = 0;
    double z = 0;
};

// Straight colour; nominally 0..1.
struct ColorValue {
    float red = 0;
    float green = 0;
    float blue = 0;
    float alpha = 1;
    static ColorValue FromBytes(unsigned red, unsigned green, unsigned blue, unsigned alpha); // 0..255
};

// A layer parameter's picture at the resolution of the frame, as A, R, G, B; null: none.
using LayerValue = std::shared_ptr<const fxhost::Picture>;

// Value of a parameter, by kind:
//   double        slider; angle in degrees
//   int           check box (0, 1), pop-up (from 1), path (its id, 0 for none)
//   PointValue, Point3DValue, ColorValue, LayerValue
//   monostate     groups and buttons
using ParamValue =
    std::variant<std::monostate, double, int, PointValue, Point3DValue, ColorValue, LayerValue>;

} // namespace stricthost
