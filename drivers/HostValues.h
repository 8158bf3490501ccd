#pragma once

#include "parameters/Parameter.h"
#include "stricthost/ParamTable.h"

namespace fxhost {

// Converts a value of the engine to the form that a host keeps for a parameter of this type. Returns an empty
// value for layers and for types without a value.
stricthost::ParamValue ToHostValue(Parameter::Type type, const Parameter::Value& value);

// Describes a published parameter as an effect would declare it. Its name is its label.
Parameter DescribeParam(const stricthost::PublishedParam& param);

} // namespace fxhost
