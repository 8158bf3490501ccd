#pragma once

#include "parameters/Parameter.h"
#include "stricthost/ParamTable.h"

namespace fxhost {

// A value as the engine holds it, in the form that a host keeps for a parameter of the type. Layers and types
// without a value give none.
stricthost::ParamValue ToHostValue(Parameter::Type type, const Parameter::Value& value);

// What a published parameter tells, as the effect would declare it: its label is the name too.
Parameter DescribeParam(const stricthost::PublishedParam& param);

} // namespace fxhost
