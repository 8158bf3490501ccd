#pragma once

#include "stricthost/StrictHost.h"

namespace validate {

// The values to try for a parameter: its default, its extremes and one between them. Empty for kinds without
// a value, and for layers and paths.
std::vector<stricthost::ParamValue> ValuesToTry(const stricthost::PublishedParam& param, double width,
                                                double height);

// Sets every parameter of the instance to a value that depends on the variant. Variant 0 leaves the defaults.
void SetVariant(const stricthost::StrictHost& host, stricthost::Instance& instance, unsigned variant);

} // namespace validate
